#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

#include "base/liveness.h"
#include "platform/alerts.h"

namespace orvalle::platform {

/// Alerts that take turns, for systems that know how to show one. Their texts are cut to what can be read.
class AlertQueue final : public Alerts {
 public:
  /// One alert on the screen, which leaves it with this.
  class Dialog {
   public:
    Dialog() = default;
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    virtual ~Dialog() = default;
  };
  using Answered = std::function<void(std::size_t button)>;
  /// Shows an alert, with or without a bar that moves. `answered` is called at most once and not from inside
  /// this call; it does away with the dialog.
  using Present =
      std::function<std::unique_ptr<Dialog>(const Alert& alert, bool progress, Answered answered)>;

  explicit AlertQueue(Present present) : present_(std::move(present)) {}

  void show(const Alert& alert, std::function<void(std::size_t)> done) override;
  base::Subscription showProgress(const Alert& alert, std::function<void(std::size_t)> done) override;

 private:
  struct Waiting {
    std::uint64_t number;
    Alert alert;
    bool progress;
    std::function<void(std::size_t)> done;
  };

  std::uint64_t add(const Alert& alert, bool progress, std::function<void(std::size_t)> done);
  void withdraw(std::uint64_t number);
  void showNext();
  void answered(std::size_t button);

  Present present_;
  std::uint64_t count_ = 0;
  /// The first is the one on show.
  std::deque<Waiting> waiting_;
  std::unique_ptr<Dialog> dialog_;
  base::Liveness liveness_;
};

}  // namespace orvalle::platform
