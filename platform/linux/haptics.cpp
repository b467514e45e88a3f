#include "platform/haptics.h"

#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

/// Taps through the feedback daemon that phones and tablets run. Its events are the nearest to the patterns:
/// a light tap and a firmer one.
class FeedbackDaemon final : public Haptics {
 public:
  explicit FeedbackDaemon(GtkApplication* application) : application_(application) {}

  void perform(HapticPattern pattern) override {
    GDBusConnection* bus = g_application_get_dbus_connection(G_APPLICATION(application_));
    if (!bus) return;
    const char* event = pattern == HapticPattern::Alignment ? "button-pressed" : "button-released";
    constexpr int kEndsByItself = -1;
    // Never starts the daemon: a machine where it does not run has nothing to tap with. Nobody waits for the
    // answer.
    g_dbus_connection_call(bus, "org.sigxcpu.Feedback", "/org/sigxcpu/Feedback", "org.sigxcpu.Feedback",
                           "TriggerFeedback",
                           g_variant_new("(ssa{sv}i)", "app.orvalle.Orvalle", event, nullptr, kEndsByItself),
                           nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
  }

 private:
  GtkApplication* application_;
};

}  // namespace

std::unique_ptr<Haptics> makeHaptics(NativeApplication& application) {
  return std::make_unique<FeedbackDaemon>(application.gtk());
}

}  // namespace orvalle::platform::linuxos
