#include "platform/linux/sound/PulseDefaults.h"

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>

#include <memory>

namespace quorl {
namespace {

struct Question {
  bool Answered = false, HasBoth = false;
};

void OnServer(pa_context*, const pa_server_info* info, void* user) {
  auto& question = *static_cast<Question*>(user);
  question.Answered = true;
  question.HasBoth =
      info != nullptr && info->default_sink_name != nullptr && info->default_source_name != nullptr;
}

void OnState(pa_context* context, void* user) {
  const pa_context_state_t state = pa_context_get_state(context);
  if (!PA_CONTEXT_IS_GOOD(state)) static_cast<Question*>(user)->Answered = true;
  if (state != PA_CONTEXT_READY) return;
  if (pa_operation* asked = pa_context_get_server_info(context, &OnServer, user)) pa_operation_unref(asked);
}

}  // namespace

bool HasPulseDefaults() {
  const std::unique_ptr<pa_mainloop, void (*)(pa_mainloop*)> loop(pa_mainloop_new(), &pa_mainloop_free);
  const std::unique_ptr<pa_context, void (*)(pa_context*)> context(
      pa_context_new(pa_mainloop_get_api(loop.get()), "QUORLSDR"), &pa_context_unref);
  Question question;
  pa_context_set_state_callback(context.get(), &OnState, &question);
  bool runs = pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOFLAGS, nullptr) >= 0;
  while (runs && !question.Answered) runs = pa_mainloop_iterate(loop.get(), 1, nullptr) >= 0;
  pa_context_set_state_callback(context.get(), nullptr, nullptr);
  pa_context_disconnect(context.get());
  return question.HasBoth;
}

}  // namespace quorl
