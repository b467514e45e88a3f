#include "platform/linux/display_choice.h"

#include <wayland-client.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <system_error>

namespace orvalle::platform::linuxos {
namespace {

/// A variable, and a text of ours for it that no user would write.
struct Choice {
  const char* variable;
  const char* text;
};
constexpr Choice kDisplay = {"GDK_BACKEND", "x11,*"};
// Whatever is not "0" turns it off.
constexpr Choice kNoSharedMemoryOfTheCard = {"WEBKIT_DISABLE_DMABUF_RENDERER", "nvidia"};
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

void make(const Choice& choice) {
  ::setenv(choice.variable, choice.text, 0);
}

void hide(const Choice& choice, GAppLaunchContext* context) {
  if (g_strcmp0(std::getenv(choice.variable), choice.text) == 0)
    g_app_launch_context_unsetenv(context, choice.variable);
}

}  // namespace

void chooseDisplay() {
  // Without an X server to turn to there is no choice, and without its variable no compositor worth a look.
  if (!std::getenv("DISPLAY") || !std::getenv("WAYLAND_DISPLAY") || std::getenv(kDisplay.variable)) return;
  if (compositorLacksLayers()) make(kDisplay);
}

void chooseGraphics(const std::filesystem::path& modules) {
  // The free driver's module has another name.
  std::error_code error;
  if (std::filesystem::exists(modules / "nvidia", error)) make(kNoSharedMemoryOfTheCard);
}

void hideChoices(GAppLaunchContext* context) {
  hide(kDisplay, context);
  hide(kNoSharedMemoryOfTheCard, context);
}

}  // namespace orvalle::platform::linuxos
