#include "remote/RigctlCommands.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "remote/RigctlModes.h"
#include "remote/RigctlState.h"
#include "support/NumberPicture.h"
#include "support/Text.h"

namespace quorl {

namespace {

using Parameters = RigctlParameters;

constexpr char kNoLetter = '\0';
constexpr std::string_view kVFO = "VFOA", kNo = "0", kYes = "1", kStrength = "STRENGTH", kVolume = "AF";

RigctlCode CodeOf(RemoteOutcome outcome) {
  switch (outcome) {
    case RemoteOutcome::OutOfRange:
      return RigctlCode::Invalid;
    case RemoteOutcome::Refused:
      return RigctlCode::Refused;
    case RemoteOutcome::Unreachable:
      return RigctlCode::Unreachable;
    case RemoteOutcome::Done:
      break;
  }
  return RigctlCode::Done;
}

std::string HertzText(const RemoteRadio& radio) {
  return FormatPicture(radio.Frequency(), "0");
}

RigctlCode GetFrequency(RemoteRadio& radio, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Frequency", HertzText(radio));
  return RigctlCode::Done;
}

RigctlCode SetFrequency(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer&) {
  const std::optional<double> hertz = ParseDouble(parameters[0]);
  return hertz ? CodeOf(radio.Tune(*hertz)) : RigctlCode::Invalid;
}

RigctlCode GetMode(RemoteRadio& radio, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Mode", RigctlModeName(radio.Mode()));
  answer.Value("Passband", std::to_string(radio.Passband()));
  return RigctlCode::Done;
}

RigctlCode SetMode(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer&) {
  const std::optional<RemoteMode> mode = ParseRigctlMode(parameters[0]);
  const std::optional<std::int32_t> width = ParseInt32(parameters[1]);
  if (!mode || !width || *width < RemoteRadio::kSameWidth) return RigctlCode::Invalid;
  return CodeOf(radio.SetMode(*mode, *width));
}

// A receiver has one VFO, by whatever name.
RigctlCode CodeOfVFO(std::string_view name) {
  if (name == kVFO || name == "Main" || name == "currVFO") return RigctlCode::Done;
  return name == "VFOB" || name == "Sub" ? RigctlCode::Unavailable : RigctlCode::Invalid;
}

RigctlCode GetVFO(RemoteRadio&, const Parameters&, RigctlAnswer& answer) {
  answer.Value("VFO", kVFO);
  return RigctlCode::Done;
}

RigctlCode SetVFO(RemoteRadio&, const Parameters& parameters, RigctlAnswer&) {
  return CodeOfVFO(parameters[0]);
}

RigctlCode GetSplit(RemoteRadio&, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Split", kNo);
  answer.Value("TX VFO", kVFO);
  return RigctlCode::Done;
}

RigctlCode GetVFOInfo(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer& answer) {
  if (const RigctlCode code = CodeOfVFO(parameters[0]); code != RigctlCode::Done) return code;
  answer.Value("Freq", HertzText(radio));
  answer.Value("Mode", RigctlModeName(radio.Mode()));
  answer.Value("Width", std::to_string(radio.Passband()));
  answer.Value("Split", kNo);
  answer.Value("SatMode", kNo);
  return RigctlCode::Done;
}

RigctlCode GetLevel(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer& answer) {
  if (parameters[0].empty()) return RigctlCode::Invalid;
  if (parameters[0] == kStrength) {
    answer.Value({}, std::to_string(radio.Strength()));
  } else if (parameters[0] == kVolume) {
    answer.Value({}, FormatPicture(radio.Volume(), "0.000000"));
  } else {
    return RigctlCode::Unavailable;
  }
  return RigctlCode::Done;
}

RigctlCode SetLevel(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer&) {
  const std::optional<double> value = ParseDouble(parameters[1]);
  if (!value) return RigctlCode::Invalid;
  if (parameters[0] != kVolume) return RigctlCode::Unavailable;
  if (*value < 0 || *value > 1) return RigctlCode::Invalid;
  radio.SetVolume(*value);
  return RigctlCode::Done;
}

// Nothing is sent, so nothing is keyed.
RigctlCode GetPTT(RemoteRadio&, const Parameters&, RigctlAnswer&) {
  return RigctlCode::Unavailable;
}

RigctlCode GetPower(RemoteRadio& radio, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Power Status", radio.IsOn() ? kYes : kNo);
  return RigctlCode::Done;
}

RigctlCode SetPower(RemoteRadio& radio, const Parameters& parameters, RigctlAnswer&) {
  if (parameters[0] != kYes && parameters[0] != kNo) return RigctlCode::Invalid;
  return CodeOf(radio.SwitchPower(parameters[0] == kYes));
}

// Clients that aren't told that the mode is free don't set it.
RigctlCode GetLockMode(RemoteRadio&, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Locked", kNo);
  return RigctlCode::Done;
}

RigctlCode GetInfo(RemoteRadio& radio, const Parameters&, RigctlAnswer& answer) {
  answer.Value("Info", radio.Description());
  return RigctlCode::Done;
}

// Clients don't have to name the VFO in each command.
RigctlCode CheckVFO(RemoteRadio&, const Parameters&, RigctlAnswer& answer) {
  answer.Value("ChkVFO", kNo);
  return RigctlCode::Done;
}

RigctlCode DumpState(RemoteRadio& radio, const Parameters&, RigctlAnswer& answer) {
  answer.Value({}, RigctlStateText(radio));
  return RigctlCode::Done;
}

RigctlCode Quit(RemoteRadio&, const Parameters&, RigctlAnswer&) {
  return RigctlCode::Done;
}

constexpr RigctlCommand kCommands[] = {
    {'f', "get_freq", 0, GetFrequency},
    {'F', "set_freq", 1, SetFrequency},
    {'m', "get_mode", 0, GetMode},
    {'M', "set_mode", 2, SetMode},
    {'v', "get_vfo", 0, GetVFO},
    {'V', "set_vfo", 1, SetVFO},
    {'s', "get_split_vfo", 0, GetSplit},
    {'t', "get_ptt", 0, GetPTT},
    {'l', "get_level", 1, GetLevel},
    {'L', "set_level", 2, SetLevel},
    {'_', "get_info", 0, GetInfo},
    {kNoLetter, "chk_vfo", 0, CheckVFO, false},
    {kNoLetter, "dump_state", 0, DumpState},
    {kNoLetter, "get_powerstat", 0, GetPower},
    {kNoLetter, "set_powerstat", 1, SetPower},
    {kNoLetter, "get_vfo_info", 1, GetVFOInfo},
    {kNoLetter, "get_lock_mode", 0, GetLockMode},
    {'q', "quit", 0, Quit, true, true},
};

template <typename Predicate>
const RigctlCommand* Find(Predicate predicate) {
  const auto* const found = std::find_if(std::begin(kCommands), std::end(kCommands), predicate);
  return found == std::end(kCommands) ? nullptr : found;
}

}  // namespace

const RigctlCommand* FindRigctlCommand(char letter) {
  if (letter == kNoLetter) return nullptr;
  return Find([letter](const RigctlCommand& command) { return command.Letter == letter; });
}

const RigctlCommand* FindRigctlCommand(std::string_view name) {
  return Find([name](const RigctlCommand& command) { return command.Name == name; });
}

}  // namespace quorl
