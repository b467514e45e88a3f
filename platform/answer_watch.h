#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "base/liveness.h"
#include "base/subscription.h"
#include "platform/main_loop.h"
#include "platform/web_window.h"

namespace orvalle::platform {

/// How often a page is asked whether it answers.
inline constexpr std::chrono::seconds kAnswerQuestion{5};

/// Asks a page time and again whether it answers, and tells the window's owner what WebWindowDelegate says of
/// that.
class AnswerWatch {
 public:
  /// Asks the page for something. `answered` is to be called when it has answered or there is no page, from
  /// inside the call or later; it is not when the page does not answer.
  using Ask = std::function<void(std::function<void()> answered)>;

  /// `loop` and `delegate` outlive this.
  AnswerWatch(MainLoop& loop, WebWindowDelegate& delegate, Ask ask);
  AnswerWatch(const AnswerWatch&) = delete;
  AnswerWatch& operator=(const AnswerWatch&) = delete;

  /// The page waits for the user and so answers nobody else, as long as the subscription lives.
  [[nodiscard]] base::Subscription hold();
  /// Another page takes the place of the one that was asked.
  void startAgain();

 private:
  void ask();
  void answered();
  void wait();
  void tellThatItAnswers();

  MainLoop& loop_;
  WebWindowDelegate& delegate_;
  Ask ask_;
  /// The last question's; answers to others are not waited for any more.
  std::uint64_t number_ = 0;
  bool awaited_ = false;
  bool silent_ = false;
  int held_ = 0;
  base::Subscription questions_;
  base::Subscription patience_;
  base::Liveness liveness_;
};

}  // namespace orvalle::platform
