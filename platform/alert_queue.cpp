#include "platform/alert_queue.h"

#include <algorithm>

#include "platform/shown_text.h"

namespace orvalle::platform {

void AlertQueue::show(const Alert& alert, std::function<void(std::size_t)> done) {
  add(alert, false, std::move(done));
}

base::Subscription AlertQueue::showProgress(const Alert& alert, std::function<void(std::size_t)> done) {
  const auto number = add(alert, true, std::move(done));
  return base::Subscription(liveness_.guard([this, number] { withdraw(number); }));
}

std::uint64_t AlertQueue::add(const Alert& alert, bool progress, std::function<void(std::size_t)> done) {
  Alert shown = alert;
  shown.message = readableText(alert.message);
  shown.informative = readableText(alert.informative);
  waiting_.push_back({++count_, std::move(shown), progress, std::move(done)});
  // The next may be on show by the time this returns.
  const auto number = count_;
  showNext();
  return number;
}

void AlertQueue::withdraw(std::uint64_t number) {
  const auto found = std::find_if(waiting_.begin(), waiting_.end(),
                                  [&](const Waiting& each) { return each.number == number; });
  if (found == waiting_.end()) return;
  if (found == waiting_.begin()) dialog_.reset();
  waiting_.erase(found);
  showNext();
}

void AlertQueue::showNext() {
  if (dialog_ || waiting_.empty()) return;
  const auto& next = waiting_.front();
  dialog_ = present_(next.alert, next.progress, [this](std::size_t button) { answered(button); });
}

void AlertQueue::answered(std::size_t button) {
  dialog_.reset();
  const auto done = std::move(waiting_.front().done);
  waiting_.pop_front();
  done(button);
  showNext();
}

}  // namespace orvalle::platform
