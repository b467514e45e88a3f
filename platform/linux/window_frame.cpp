#include "platform/linux/window_frame.h"

#include <gdk/gdkx.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "platform/linux/screen_space.h"
#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

/// A window that is being dragged tells its place many times a second.
constexpr guint kSettlingMilliseconds = 400;

constexpr int kOutOfTheOrdinary = GDK_WINDOW_STATE_WITHDRAWN | GDK_WINDOW_STATE_ICONIFIED |
                                  GDK_WINDOW_STATE_MAXIMIZED | GDK_WINDOW_STATE_FULLSCREEN |
                                  GDK_WINDOW_STATE_TILED;

bool placesWindows(GtkWindow* window) {
  return GDK_IS_X11_DISPLAY(gtk_widget_get_display(GTK_WIDGET(window)));
}

GdkRectangle usablePart(GdkMonitor* monitor) {
  GdkRectangle area = {0, 0, 0, 0};
  if (monitor) gdk_monitor_get_workarea(monitor, &area);
  return area;
}

/// "x y w h sx sy sw sh": the frame, and the usable part of its screen, which is of no further use to us.
std::optional<base::Rect> parseFrame(std::string_view text) {
  std::array<double, 8> numbers{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (double& number : numbers) {
    at = std::find_if(at, end, [](char c) { return c != ' '; });
    const auto [next, error] = std::from_chars(at, end, number);
    if (error != std::errc() || !std::isfinite(number)) return {};
    at = next;
  }
  if (std::any_of(at, end, [](char c) { return c != ' '; })) return {};
  if (numbers[2] <= 0 || numbers[3] <= 0) return {};
  return base::Rect{{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

/// All screens together are smaller.
int pixels(double length) {
  constexpr double kLongest = 16384;
  return static_cast<int>(std::lround(std::min(length, kLongest)));
}

/// Windows stand on whole points.
std::string rectText(const base::Rect& rect) {
  std::string text;
  for (const double number : {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height}) {
    if (!text.empty()) text += ' ';
    text += std::to_string(std::lround(number));
  }
  return text;
}

/// Whether enough of the frame's upper edge is there to take hold of.
bool isInReach(const GdkRectangle& frame, const GdkRectangle& area) {
  constexpr int hold = 80;
  const GdkRectangle grip = {frame.x, frame.y, frame.width, 1};
  GdkRectangle common;
  return gdk_rectangle_intersect(&grip, &area, &common) && common.width >= std::min(hold, frame.width);
}

}  // namespace

WindowFrame::WindowFrame(GtkWindow* window, base::Size contentSize, base::Size minimumSize,
                         Defaults& defaults)
    : window_(window),
      minimumSize_(minimumSize),
      defaults_(defaults),
      frame_{0, 0, static_cast<int>(contentSize.width), static_cast<int>(contentSize.height)},
      connections_{{{window, "configure-event", G_CALLBACK(changed), this},
                    {window, "window-state-event", G_CALLBACK(changed), this}}} {
  center();
}

WindowFrame::~WindowFrame() {
  if (settling_) g_source_remove(settling_);
  save();
}

void WindowFrame::center() {
  const auto area = usablePart(mainMonitor());
  const int width = std::min(frame_.width, area.width);
  const int height = std::min(frame_.height, area.height);
  place({area.x + (area.width - width) / 2, area.y + (area.height - height) / 2, width, height});
}

void WindowFrame::setAutosaveName(const std::string& name) {
  key_ = "NSWindow Frame " + name;
  stored_ = defaults_.text(key_);
  const auto frame = stored_ ? parseFrame(*stored_) : std::nullopt;
  if (!frame) return;
  const auto corner = toGdk(frame->origin, frame->size.height);
  place({corner.x, corner.y, pixels(frame->size.width), pixels(frame->size.height)});
}

void WindowFrame::place(GdkRectangle frame) {
  auto* monitor = gdk_display_get_monitor_at_point(gtk_widget_get_display(GTK_WIDGET(window_)),
                                                   frame.x + frame.width / 2, frame.y);
  const auto area = usablePart(monitor);
  frame.width = std::max(std::min(frame.width, area.width), static_cast<int>(minimumSize_.width));
  frame.height = std::max(std::min(frame.height, area.height), static_cast<int>(minimumSize_.height));
  if (!isInReach(frame, area)) {
    frame.x = std::max(area.x, std::min(frame.x, area.x + area.width - frame.width));
    frame.y = std::max(area.y, std::min(frame.y, area.y + area.height - frame.height));
  }
  frame_ = frame;
  placed_ = true;
  apply();
}

void WindowFrame::apply() {
  gtk_window_resize(window_, frame_.width, frame_.height);
  if (placed_ && placesWindows(window_)) gtk_window_move(window_, frame_.x, frame_.y);
}

void WindowFrame::open() {
  const bool hidden = !gtk_widget_get_visible(GTK_WIDGET(window_));
  if (hidden) apply();
  present(window_);
  if (hidden && zoomed_) gtk_window_maximize(window_);
}

void WindowFrame::close() {
  save();
  zoomed_ = gtk_window_is_maximized(window_);
  gtk_widget_hide(GTK_WIDGET(window_));
  // A window that is shown maximised forgets what it measured before.
  if (zoomed_) gtk_window_unmaximize(window_);
}

gboolean WindowFrame::changed(GtkWidget*, GdkEvent*, gpointer self) {
  auto& frame = *static_cast<WindowFrame*>(self);
  if (frame.settling_) g_source_remove(frame.settling_);
  frame.settling_ = g_timeout_add(kSettlingMilliseconds, settled, self);
  return FALSE;
}

gboolean WindowFrame::settled(gpointer self) {
  auto& frame = *static_cast<WindowFrame*>(self);
  frame.settling_ = 0;
  frame.save();
  return G_SOURCE_REMOVE;
}

void WindowFrame::look() {
  GdkWindow* surface = gtk_widget_get_window(GTK_WIDGET(window_));
  if (!gtk_widget_get_mapped(GTK_WIDGET(window_)) || gdk_window_get_state(surface) & kOutOfTheOrdinary)
    return;
  gtk_window_get_size(window_, &frame_.width, &frame_.height);
  if (!placesWindows(window_)) return;
  gtk_window_get_position(window_, &frame_.x, &frame_.y);
  placed_ = true;
}

void WindowFrame::save() {
  look();
  if (key_.empty()) return;
  auto now = text();
  if (stored_ == now) return;
  stored_ = std::move(now);
  defaults_.set(key_, *stored_);
}

std::string WindowFrame::text() const {
  GdkDisplay* display = gtk_widget_get_display(GTK_WIDGET(window_));
  const auto screen =
      usablePart(gdk_display_get_monitor_at_point(display, frame_.x + frame_.width / 2, frame_.y));
  return rectText(fromGdk(frame_)) + ' ' + rectText(fromGdk(screen));
}

}  // namespace orvalle::platform::linuxos
