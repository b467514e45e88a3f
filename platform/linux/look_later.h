#pragma once

#include <glib.h>

#include <functional>
#include <utility>

namespace orvalle::platform::linuxos {

/// Runs one piece of work at the next turn of the main loop, however often it is asked for in this one. It is
/// forgotten when this goes away.
class LookLater {
 public:
  explicit LookLater(std::function<void()> work) : work_(std::move(work)) {}
  LookLater(const LookLater&) = delete;
  LookLater& operator=(const LookLater&) = delete;
  ~LookLater() {
    if (source_ != 0) g_source_remove(source_);
  }

  void ask() {
    if (source_ == 0) source_ = g_idle_add_full(G_PRIORITY_DEFAULT, run, this, nullptr);
  }

 private:
  static gboolean run(gpointer data) {
    auto& self = *static_cast<LookLater*>(data);
    self.source_ = 0;
    self.work_();
    return G_SOURCE_REMOVE;
  }

  std::function<void()> work_;
  guint source_ = 0;
};

}  // namespace orvalle::platform::linuxos
