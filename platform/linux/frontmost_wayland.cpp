#include <foreign-toplevels.h>

#include <algorithm>
#include <cstdint>
#include <list>
#include <utility>

#include "platform/linux/application_names.h"
#include "platform/linux/frontmost_sources.h"
#include "platform/linux/glib_ptr.h"
#include "platform/linux/wayland_connection.h"

namespace orvalle::platform::linuxos {
namespace {

/// Like any title that a person reads; the rest of a longer one is left out.
constexpr glong kLongestTitle = 1024;

class WindowList;

/// A window as the compositor tells of it: piece by piece, valid once it says that it has told everything.
struct Window {
  struct Face {
    std::string application;
    std::string title;
    bool activated = false;
  };
  WindowList* list;
  zwlr_foreign_toplevel_handle_v1* handle;
  Face next;
  Face face;
};

/// The compositor's list of windows. It sends all titles to whoever has the list: they are kept only for who
/// wants them.
class WindowList {
 public:
  WindowList(WaylandConnection& connection, bool keepTitles)
      : keepTitles_(keepTitles),
        manager_(
            connection.bind<zwlr_foreign_toplevel_manager_v1>(zwlr_foreign_toplevel_manager_v1_interface)) {
    static constexpr zwlr_foreign_toplevel_manager_v1_listener kListener = {
        [](void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle) {
          static_cast<WindowList*>(data)->add(handle);
        },
        [](void*, zwlr_foreign_toplevel_manager_v1*) {}};
    zwlr_foreign_toplevel_manager_v1_add_listener(manager_, &kListener, this);
    connection.waitForAnswers();
    // The windows are known now; what they are is told next.
    connection.waitForAnswers();
  }
  WindowList(const WindowList&) = delete;
  WindowList& operator=(const WindowList&) = delete;
  ~WindowList() {
    for (const auto& window : windows_) zwlr_foreign_toplevel_handle_v1_destroy(window.handle);
    zwlr_foreign_toplevel_manager_v1_stop(manager_);
    zwlr_foreign_toplevel_manager_v1_destroy(manager_);
  }

  bool keepsTitles() const { return keepTitles_; }
  const Window* front() const {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [](const Window& each) { return each.face.activated; });
    return found == windows_.end() ? nullptr : &*found;
  }

 private:
  void add(zwlr_foreign_toplevel_handle_v1* handle) {
    static constexpr zwlr_foreign_toplevel_handle_v1_listener kListener = {
        [](void* data, zwlr_foreign_toplevel_handle_v1*, const char* title) {
          auto& window = *static_cast<Window*>(data);
          if (window.list->keepTitles_) window.next.title = title;
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*, const char* application) {
          static_cast<Window*>(data)->next.application = application;
        },
        [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
        [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
        [](void* data, zwlr_foreign_toplevel_handle_v1*, wl_array* states) {
          const auto* first = static_cast<const std::uint32_t*>(states->data);
          const auto* last = first + states->size / sizeof *first;
          static_cast<Window*>(data)->next.activated =
              std::find(first, last, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != last;
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
          auto& window = *static_cast<Window*>(data);
          window.face = window.next;
        },
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
          auto& window = *static_cast<Window*>(data);
          window.list->remove(window);
        }};
    auto& window = windows_.emplace_back(Window{this, handle, {}, {}});
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &kListener, &window);
  }

  void remove(Window& gone) {
    zwlr_foreign_toplevel_handle_v1_destroy(gone.handle);
    windows_.remove_if([&](const Window& each) { return &each == &gone; });
  }

  const bool keepTitles_;
  zwlr_foreign_toplevel_manager_v1* manager_;
  /// A list, because listeners know the windows by their place.
  std::list<Window> windows_;
};

class WaylandFrontmost final : public Frontmost {
 public:
  explicit WaylandFrontmost(std::unique_ptr<WaylandConnection> connection)
      : connection_(std::move(connection)), windows_(std::make_unique<WindowList>(*connection_, false)) {}

  std::optional<std::string> applicationName() override {
    // Who did not ask for the title of the last look is not to have titles lie about here.
    if (!std::exchange(titleWanted_, false) && windows_->keepsTitles()) listWindows(false);
    connection_->handleArrived();
    const Window* front = inFront();
    application_ = front ? front->face.application : std::string();
    return names_.ofWindows(application_, application_);
  }

  std::optional<std::string> focusedWindowTitle() override {
    if (application_.empty()) return {};
    titleWanted_ = true;
    if (!windows_->keepsTitles()) listWindows(true);
    const Window* front = inFront();
    // The user may have gone on to another application meanwhile.
    if (!front || front->face.application != application_ || front->face.title.empty()) return {};
    const GlibPtr<char> valid(g_utf8_make_valid(front->face.title.c_str(), -1));
    const GlibPtr<char> shown(
        g_utf8_substring(valid.get(), 0, std::min(g_utf8_strlen(valid.get(), -1), kLongestTitle)));
    return shown.get();
  }

 private:
  /// What a compositor told before it went is true no more.
  const Window* inFront() const { return connection_->works() ? windows_->front() : nullptr; }

  void listWindows(bool keepTitles) {
    windows_.reset();
    windows_ = std::make_unique<WindowList>(*connection_, keepTitles);
  }

  std::unique_ptr<WaylandConnection> connection_;
  std::unique_ptr<WindowList> windows_;
  ApplicationNames names_;
  /// Of the window that was in front at the last look; empty for none.
  std::string application_;
  bool titleWanted_ = false;
};

}  // namespace

std::unique_ptr<Frontmost> makeWaylandFrontmost() {
  auto connection = WaylandConnection::open();
  if (!connection || !connection->offers(zwlr_foreign_toplevel_manager_v1_interface)) return nullptr;
  return std::make_unique<WaylandFrontmost>(std::move(connection));
}

}  // namespace orvalle::platform::linuxos
