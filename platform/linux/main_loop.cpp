#include "platform/main_loop.h"

#include <glib.h>

#include <cassert>
#include <utility>

#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

using Task = std::function<void()>;

struct Timer {
  Task task;
  /// When to run next, on the monotonic clock, in microseconds.
  gint64 due = 0;
  /// Microseconds; 0 for a timer that runs once.
  gint64 interval = 0;
};

gboolean runTimer(gpointer data) {
  static_cast<Timer*>(data)->task();
  return G_SOURCE_CONTINUE;
}

/// Repeating timers keep to their first rhythm: a tick's own lateness never adds up, so that a countdown by
/// the second does not drift across the turn of its seconds, and timers started together go on waking the
/// process together. GLib's own timers count each interval from the moment of the last tick.
gboolean dispatchTimer(GSource* source, GSourceFunc callback, gpointer data) {
  auto& timer = *static_cast<Timer*>(data);
  if (timer.interval == 0) {
    callback(data);
    return G_SOURCE_REMOVE;
  }
  const gint64 periods = (g_source_get_time(source) - timer.due) / timer.interval + 1;
  timer.due += periods * timer.interval;
  g_source_set_ready_time(source, timer.due);
  return callback(data);
}

GSourceFuncs timerFunctions = {nullptr, nullptr, dispatchTimer, nullptr, nullptr, nullptr};

gint64 microseconds(std::chrono::milliseconds duration) {
  return std::chrono::duration_cast<std::chrono::microseconds>(duration).count();
}

base::Subscription start(std::chrono::milliseconds delay, std::chrono::milliseconds interval, Task task) {
  auto* timer =
      new Timer{std::move(task), g_get_monotonic_time() + microseconds(delay), microseconds(interval)};
  GSource* source = g_source_new(&timerFunctions, sizeof(GSource));
  g_source_set_ready_time(source, timer->due);
  // The source keeps the timer until the callback that runs has returned, even when that one cancels it.
  g_source_set_callback(source, runTimer, timer, [](gpointer data) { delete static_cast<Timer*>(data); });
  g_source_attach(source, nullptr);
  return base::Subscription([source] {
    g_source_destroy(source);
    g_source_unref(source);
  });
}

class GlibMainLoop final : public MainLoop {
 public:
  void post(Task task) override {
    g_idle_add_full(
        G_PRIORITY_DEFAULT,
        [](gpointer data) -> gboolean {
          (*static_cast<Task*>(data))();
          return G_SOURCE_REMOVE;
        },
        new Task(std::move(task)), [](gpointer data) { delete static_cast<Task*>(data); });
  }

  base::Subscription after(std::chrono::milliseconds delay, Task task) override {
    return start(delay, std::chrono::milliseconds(0), std::move(task));
  }

  base::Subscription every(std::chrono::milliseconds interval, Task task) override {
    assert(interval.count() > 0);
    return start(interval, interval, std::move(task));
  }
};

}  // namespace

std::unique_ptr<MainLoop> makeMainLoop() {
  return std::make_unique<GlibMainLoop>();
}

}  // namespace orvalle::platform::linuxos
