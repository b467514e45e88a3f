#include <gdk/gdkx.h>

#include <X11/Xatom.h>

#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/linux/application_names.h"
#include "platform/linux/frontmost_sources.h"

namespace orvalle::platform::linuxos {
namespace {

/// More than any title that a person reads; the rest of a longer one is left out.
constexpr long kLongestText = 4096;

struct Property {
  Atom type = 0;
  int format = 0;
  /// For format 32 an array of `long`, as the library has it.
  std::string bytes;
};

/// Owns what the library hands out.
using XData = std::unique_ptr<unsigned char, decltype(&XFree)>;

class X11Frontmost final : public Frontmost {
 public:
  explicit X11Frontmost(GdkDisplay* display)
      : display_(display),
        activeWindow_(gdk_atom_intern_static_string("_NET_ACTIVE_WINDOW")),
        windowName_(atom("_NET_WM_NAME")),
        processId_(atom("_NET_WM_PID")),
        utf8String_(atom("UTF8_STRING")) {}

  std::optional<std::string> applicationName() override {
    window_ = activeWindow();
    if (window_ == 0) return {};
    const auto [instance, windowClass] = windowClassOf(window_);
    if (auto name = names_.ofWindows(instance, windowClass)) return name;
    const auto process = number(window_, processId_, XA_CARDINAL);
    return process ? names_.ofProcess(static_cast<pid_t>(*process)) : std::nullopt;
  }

  std::optional<std::string> focusedWindowTitle() override {
    if (window_ == 0) return {};
    const auto modern = textOf(window_, windowName_);
    return modern ? modern : textOf(window_, XA_WM_NAME);
  }

 private:
  Atom atom(const char* name) const { return gdk_x11_get_xatom_by_name_for_display(display_, name); }

  /// Absent when the window has no such property or is gone, which happens at any time.
  std::optional<Property> read(Window window, Atom name, long longs) const {
    Display* server = gdk_x11_display_get_xdisplay(display_);
    Property property;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    gdk_x11_display_error_trap_push(display_);
    const int status = XGetWindowProperty(server, window, name, 0, longs, False, AnyPropertyType,
                                          &property.type, &property.format, &count, &left, &data);
    const bool failed = gdk_x11_display_error_trap_pop(display_) != 0 || status != 0;
    const XData owned(data, XFree);
    if (failed || !data || property.type == 0) return {};
    const std::size_t size =
        property.format == 32 ? sizeof(long) : static_cast<std::size_t>(property.format) / 8;
    property.bytes.assign(reinterpret_cast<const char*>(data), count * size);
    return property;
  }

  std::optional<unsigned long> number(Window window, Atom name, Atom type) const {
    const auto property = read(window, name, 1);
    unsigned long value = 0;
    if (!property || property->type != type || property->format != 32 ||
        property->bytes.size() < sizeof value)
      return {};
    std::memcpy(&value, property->bytes.data(), sizeof value);
    return value;
  }

  Window activeWindow() const {
    GdkScreen* screen = gdk_display_get_default_screen(display_);
    // What a window manager that has gone, or that does not keep to the hints, left there is long past.
    if (!gdk_x11_screen_supports_net_wm_hint(screen, activeWindow_)) return 0;
    const auto root = gdk_x11_window_get_xid(gdk_screen_get_root_window(screen));
    return number(root, gdk_x11_atom_to_xatom_for_display(display_, activeWindow_), XA_WINDOW).value_or(0);
  }

  /// The two words of a window's class.
  std::pair<std::string, std::string> windowClassOf(Window window) const {
    const auto property = read(window, XA_WM_CLASS, kLongestText / 4);
    if (!property || property->format != 8) return {};
    const std::string_view words = property->bytes;
    const auto end = words.find('\0');
    const auto instance = words.substr(0, end);
    auto rest = end == std::string_view::npos ? std::string_view() : words.substr(end + 1);
    return {utf8(instance), utf8(rest.substr(0, rest.find('\0')))};
  }

  /// Latin-1 by the rules; many programs write UTF-8.
  static std::string utf8(std::string_view word) {
    const auto length = static_cast<gssize>(word.size());
    if (g_utf8_validate(word.data(), length, nullptr)) return std::string(word);
    const GlibPtr<char> converted(
        g_convert(word.data(), length, "UTF-8", "ISO-8859-1", nullptr, nullptr, nullptr));
    return converted ? converted.get() : std::string();
  }

  /// A text property's first text, whatever its encoding.
  std::optional<std::string> textOf(Window window, Atom name) const {
    const auto property = read(window, name, kLongestText / 4);
    if (!property || property->format != 8) return {};
    if (property->type == utf8String_) return validText(property->bytes);
    char** list = nullptr;
    const int count = gdk_text_property_to_utf8_list_for_display(
        display_, gdk_x11_xatom_to_atom_for_display(display_, property->type), property->format,
        reinterpret_cast<const guchar*>(property->bytes.data()), static_cast<int>(property->bytes.size()),
        &list);
    const std::unique_ptr<char*, decltype(&g_strfreev)> texts(list, g_strfreev);
    if (count < 1 || !*texts.get()[0]) return {};
    return texts.get()[0];
  }

  static std::optional<std::string> validText(const std::string& bytes) {
    std::string text = bytes.c_str();
    const char* end = nullptr;
    g_utf8_validate(text.data(), static_cast<gssize>(text.size()), &end);
    // Left out in the middle of a character.
    constexpr std::size_t kLongestCharacter = 4;
    const auto valid = static_cast<std::size_t>(end - text.data());
    if (bytes.size() >= kLongestText && text.size() - valid < kLongestCharacter) text.resize(valid);
    const GlibPtr<char> made(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
    return *made ? std::optional<std::string>(made.get()) : std::nullopt;
  }

  GdkDisplay* display_;
  GdkAtom activeWindow_;
  Atom windowName_;
  Atom processId_;
  Atom utf8String_;
  ApplicationNames names_;
  /// The window that was in front at the last look; 0 for none.
  Window window_ = 0;
};

}  // namespace

std::unique_ptr<Frontmost> makeX11Frontmost(GdkDisplay* display) {
  return std::make_unique<X11Frontmost>(display);
}

}  // namespace orvalle::platform::linuxos
