#include "configuration/ConfigDefaults.h"

#include "config/SettingsTable.h"

namespace quorl {

void PutConfigDefaults(SettingsStore& store) {
  constexpr char kKey[] = "KBDSupport";
  if (store.GetSetting(kMainSection, kKey, "").empty()) store.SaveSetting(kMainSection, kKey, "True");
}

}  // namespace quorl
