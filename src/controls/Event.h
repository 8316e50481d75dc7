// What a control tells: to the panel that handles it, and to any number of others who listen.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace quorl {

// A listener hears as long as this is kept; event and listener may end in any order.
using Listening = std::shared_ptr<void>;

// Handlers and listeners may leave out the arguments.
template <typename... Arguments>
class Event {
 public:
  using Handler = std::function<void(Arguments...)>;

  Event() = default;
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  // The handler of the panel that the control belongs to, in place of the one before; null for none.
  template <typename F>
  Event& operator=(F handler) {
    Handler adapted = Adapted(std::move(handler));
    handler_ = adapted ? std::make_shared<Handler>(std::move(adapted)) : nullptr;
    return *this;
  }
  // Whether the panel handles it; who only listens doesn't count.
  explicit operator bool() const { return handler_ != nullptr; }

  // `listener` is called after the handler from now on.
  template <typename F>
  [[nodiscard]] Listening Listen(F listener) {
    if (raising_ == 0) std::erase_if(listeners_, [](const auto& one) { return one.expired(); });
    auto kept = std::make_shared<Handler>(Adapted(std::move(listener)));
    listeners_.push_back(kept);
    return kept;
  }

  void operator()(Arguments... arguments) const {
    // Kept while it runs: it may put another one in its place.
    if (const auto handler = handler_) (*handler)(arguments...);
    const Raising raising(raising_);
    // By number, as a listener may bring others.
    for (std::size_t i = 0; i < listeners_.size(); ++i) {
      if (const auto listener = listeners_[i].lock()) (*listener)(arguments...);
    }
  }

 private:
  class Raising {
   public:
    explicit Raising(int& depth) : depth_(depth) { ++depth_; }
    Raising(const Raising&) = delete;
    Raising& operator=(const Raising&) = delete;
    ~Raising() { --depth_; }

   private:
    int& depth_;
  };

  template <typename F>
  static Handler Adapted(F handler) {
    if constexpr (sizeof...(Arguments) > 0 && std::is_invocable_v<F&>) {
      return [handler = std::move(handler)](Arguments...) mutable { handler(); };
    } else {
      return Handler(std::move(handler));
    }
  }

  std::shared_ptr<Handler> handler_;
  std::vector<std::weak_ptr<Handler>> listeners_;
  mutable int raising_ = 0;
};

// Calls an event, or a function that may be empty.
template <typename... Arguments, typename... Values>
void Raise(const Event<Arguments...>& event, Values&&... values) {
  event(std::forward<Values>(values)...);
}
template <typename... Arguments, typename... Values>
void Raise(const std::function<void(Arguments...)>& event, Values&&... values) {
  if (event) event(std::forward<Values>(values)...);
}

}  // namespace quorl
