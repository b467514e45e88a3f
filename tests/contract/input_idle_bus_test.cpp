// The desktops' own services, played on the private bus.

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/linux/glib_ptr.h"
#include "platform/linux/input_idle_sources.h"
#include "tests/contract/own_bus.h"

namespace orvalle::platform::linuxos {
namespace {

/// A desktop's service on a thread and a connection of its own, as another process would have it.
class Service {
 public:
  Service(const char* name, const char* path, const char* interface, const char* method, GVariant* answer)
      : answer_(g_variant_ref_sink(answer)),
        context_(g_main_context_new(), g_main_context_unref),
        loop_(g_main_loop_new(context_.get(), FALSE), g_main_loop_unref) {
    g_main_context_push_thread_default(context_.get());
    bus_ = contract::ownBus();
    const std::string description = std::string("<node><interface name='") + interface + "'><method name='" +
                                    method + "'><arg type='" + g_variant_get_type_string(answer) +
                                    "' direction='out'/></method></interface></node>";
    node_ = g_dbus_node_info_new_for_xml(description.c_str(), nullptr);
    static constexpr GDBusInterfaceVTable kTable = {
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
           GDBusMethodInvocation* call, gpointer self) {
          GVariant* value = static_cast<Service*>(self)->answer_.get();
          g_dbus_method_invocation_return_value(call, g_variant_new_tuple(&value, 1));
        },
        nullptr,
        nullptr,
        {}};
    g_dbus_connection_register_object(bus_.get(), path, node_->interfaces[0], &kTable, this, nullptr,
                                      nullptr);
    g_main_context_pop_thread_default(context_.get());
    const GlibPtr<GVariant> owned(g_dbus_connection_call_sync(
        bus_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", name, 0u), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    thread_ = g_thread_new(
        "service",
        [](gpointer self) -> gpointer {
          auto& service = *static_cast<Service*>(self);
          g_main_context_push_thread_default(service.context_.get());
          g_main_loop_run(service.loop_.get());
          g_main_context_pop_thread_default(service.context_.get());
          return nullptr;
        },
        this);
  }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  ~Service() {
    g_main_loop_quit(loop_.get());
    g_thread_join(thread_);
    g_dbus_connection_close_sync(bus_.get(), nullptr, nullptr);
    g_dbus_node_info_unref(node_);
  }

 private:
  GlibPtr<GVariant> answer_;
  std::unique_ptr<GMainContext, decltype(&g_main_context_unref)> context_;
  std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop_;
  GObjectPtr<GDBusConnection> bus_;
  GDBusNodeInfo* node_ = nullptr;
  GThread* thread_ = nullptr;
};

class InputIdleBus : public ::testing::Test {
 protected:
  static std::unique_ptr<Service> gnome(GVariant* answer) {
    return std::make_unique<Service>("org.gnome.Mutter.IdleMonitor", "/org/gnome/Mutter/IdleMonitor/Core",
                                     "org.gnome.Mutter.IdleMonitor", "GetIdletime", answer);
  }
  static std::unique_ptr<Service> kde(GVariant* answer) {
    return std::make_unique<Service>("org.freedesktop.ScreenSaver", "/ScreenSaver",
                                     "org.freedesktop.ScreenSaver", "GetSessionIdleTime", answer);
  }
  std::unique_ptr<InputIdle> idle = makeBusInputIdle();
};

TEST_F(InputIdleBus, isNothingWhereNoServiceRuns) {
  EXPECT_EQ(idle->secondsSinceInput(), 0);
}

TEST_F(InputIdleBus, asksGnomesService) {
  const auto service = gnome(g_variant_new_uint64(3'600'250));
  EXPECT_EQ(idle->secondsSinceInput(), 3600.25);
}

TEST_F(InputIdleBus, asksKdesServiceWhereGnomesDoesNotRun) {
  const auto service = kde(g_variant_new_uint32(90'500));
  EXPECT_EQ(idle->secondsSinceInput(), 90.5);
}

TEST_F(InputIdleBus, findsAServiceThatComesLaterAndMissesOneThatWent) {
  auto service = kde(g_variant_new_uint32(1000));
  EXPECT_EQ(idle->secondsSinceInput(), 1);
  service.reset();
  EXPECT_EQ(idle->secondsSinceInput(), 0);
}

TEST_F(InputIdleBus, takesAnAnswerOfAnotherKindForNone) {
  const auto service = gnome(g_variant_new_string("molto"));
  EXPECT_EQ(idle->secondsSinceInput(), 0);
}

}  // namespace
}  // namespace orvalle::platform::linuxos
