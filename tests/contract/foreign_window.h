#pragma once

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "tests/contract/loop.h"

namespace orvalle::contract {

/// What a window of another program says of itself; empty parts are left unsaid.
struct ForeignFace {
  /// X11's two words, each with its final zero.
  std::string windowClass;
  std::optional<std::string> name;
  std::optional<unsigned long> process;
  /// The name that programs give that know no other.
  std::optional<std::string> oldName;
};

/// A window of another program: it has a connection to the X server of its own.
class ForeignWindow {
 public:
  explicit ForeignWindow(const ForeignFace& face) : display_(XOpenDisplay(nullptr), XCloseDisplay) {
    if (!display_) throw std::runtime_error("no X server");
    window_ = XCreateSimpleWindow(server(), root(), 0, 0, 300, 200, 0, 0, 0);
    if (!face.windowClass.empty()) set("WM_CLASS", XA_STRING, face.windowClass);
    if (face.name) rename(*face.name);
    if (face.oldName) set("WM_NAME", XA_STRING, *face.oldName);
    if (face.process) {
      XChangeProperty(server(), window_, atom("_NET_WM_PID"), XA_CARDINAL, 32, PropModeReplace,
                      reinterpret_cast<const unsigned char*>(&*face.process), 1);
    }
    XWMHints hints{};
    hints.flags = InputHint;
    hints.input = True;
    XSetWMHints(server(), window_, &hints);
    XMapWindow(server(), window_);
    XSync(server(), False);
    if (!runUntil([this] { return isInFront(); })) throw std::runtime_error("not brought to the front");
  }
  ForeignWindow(const ForeignWindow&) = delete;
  ForeignWindow& operator=(const ForeignWindow&) = delete;

  void rename(const std::string& name) {
    set("_NET_WM_NAME", atom("UTF8_STRING"), name);
    XSync(server(), False);
  }
  /// The program dies: its windows go at once.
  void die() { display_.reset(); }
  bool isInFront() const { return active() == window_; }
  Window window() const { return window_; }

  /// Has the root window say that this one is in front, whether or not there is such a window.
  void claimActive(Window claimed) {
    XChangeProperty(server(), root(), atom("_NET_ACTIVE_WINDOW"), XA_WINDOW, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&claimed), 1);
    XSync(server(), False);
  }
  /// What window managers leave on the root window to say which hints they keep to; sets it, too.
  Window managerCheck() const { return windowOnRoot("_NET_SUPPORTING_WM_CHECK"); }
  void setManagerCheck(std::optional<Window> window) {
    if (window) {
      XChangeProperty(server(), root(), atom("_NET_SUPPORTING_WM_CHECK"), XA_WINDOW, 32, PropModeReplace,
                      reinterpret_cast<const unsigned char*>(&*window), 1);
    } else {
      XDeleteProperty(server(), root(), atom("_NET_SUPPORTING_WM_CHECK"));
    }
    XSync(server(), False);
  }

 private:
  Display* server() const { return display_.get(); }
  Window root() const { return DefaultRootWindow(server()); }
  Atom atom(const char* name) const { return XInternAtom(server(), name, False); }
  Window active() const { return windowOnRoot("_NET_ACTIVE_WINDOW"); }

  Window windowOnRoot(const char* name) const {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(server(), root(), atom(name), 0, 1, False, XA_WINDOW, &type, &format, &count, &left,
                       &data);
    const Window window = data && count == 1 ? *reinterpret_cast<const Window*>(data) : 0;
    if (data) XFree(data);
    return window;
  }

  void set(const char* property, Atom type, const std::string& bytes) {
    XChangeProperty(server(), window_, atom(property), type, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
  }

  std::unique_ptr<Display, int (*)(Display*)> display_;
  Window window_ = 0;
};

}  // namespace orvalle::contract
