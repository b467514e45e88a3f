#include "platform/linux/display_choice.h"

#include <wayland-client.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace orvalle::platform::linuxos {
namespace {

constexpr const char* kVariable = "GDK_BACKEND";
constexpr const char* kChoice = "x11,*";
constexpr std::string_view kLayers = "zwlr_layer_shell_v1";

/// Whether a Wayland compositor answers that has no layers.
bool compositorLacksLayers() {
  const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(wl_display_connect(nullptr),
                                                                              wl_display_disconnect);
  if (!display) return false;
  const std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)> registry(
      wl_display_get_registry(display.get()), wl_registry_destroy);
  bool layers = false;
  constexpr wl_registry_listener kListener = {
      [](void* data, wl_registry*, std::uint32_t, const char* interface, std::uint32_t) {
        if (interface == kLayers) *static_cast<bool*>(data) = true;
      },
      [](void*, wl_registry*, std::uint32_t) {}};
  wl_registry_add_listener(registry.get(), &kListener, &layers);
  return wl_display_roundtrip(display.get()) >= 0 && !layers;
}

}  // namespace

void chooseDisplay() {
  // Without an X server to turn to there is no choice, and without its variable no compositor worth a look.
  if (!std::getenv("DISPLAY") || !std::getenv("WAYLAND_DISPLAY") || std::getenv(kVariable)) return;
  if (compositorLacksLayers()) ::setenv(kVariable, kChoice, 0);
}

void hideDisplayChoice(GAppLaunchContext* context) {
  if (g_strcmp0(std::getenv(kVariable), kChoice) == 0) g_app_launch_context_unsetenv(context, kVariable);
}

}  // namespace orvalle::platform::linuxos
