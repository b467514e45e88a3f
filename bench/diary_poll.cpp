// One look of the diary on X11, name and title, against the bare round trips to the X server that it needs,
// in turns within one run. Prints the two medians in nanoseconds.

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <X11/Xatom.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "platform/linux/factory.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kRounds = 300;
constexpr int kLooksARound = 20;

/// What any program must ask: which window is in front, its class, its title.
class BareLook {
 public:
  explicit BareLook(Display* server)
      : server_(server),
        active_(XInternAtom(server, "_NET_ACTIVE_WINDOW", False)),
        name_(XInternAtom(server, "_NET_WM_NAME", False)) {}

  bool look() const {
    Window window = 0;
    const bool found = read(DefaultRootWindow(server_), active_, 1, &window) && window != 0;
    return found && read(window, XA_WM_CLASS, 1024, nullptr) && read(window, name_, 1024, nullptr);
  }

 private:
  bool read(Window window, Atom property, long longs, Window* value) const {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(server_, window, property, 0, longs, False, AnyPropertyType, &type,
                                          &format, &count, &left, &data);
    if (status == 0 && value && count == 1) *value = *reinterpret_cast<Window*>(data);
    if (data) XFree(data);
    return status == 0 && count > 0;
  }

  Display* server_;
  Atom active_;
  Atom name_;
};

template <typename Look>
double nanosecondsALook(Look look) {
  const auto begin = Clock::now();
  for (int i = 0; i < kLooksARound; ++i) look();
  return std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / kLooksARound;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  gtk_init(&argc, &argv);
  Display* server = XOpenDisplay(nullptr);
  const auto frontmost = orvalle::platform::linuxos::makeFrontmost();
  const BareLook bare(server);
  if (!bare.look() || !frontmost->applicationName() || !frontmost->focusedWindowTitle()) {
    std::fprintf(stderr, "diary_poll: no window is in front\n");
    return 1;
  }
  std::vector<double> ours;
  std::vector<double> floor;
  for (int round = 0; round < kRounds; ++round) {
    floor.push_back(nanosecondsALook([&] { bare.look(); }));
    ours.push_back(nanosecondsALook([&] {
      frontmost->applicationName();
      frontmost->focusedWindowTitle();
    }));
  }
  std::printf("%.0f %.0f\n", median(floor), median(ours));
  XCloseDisplay(server);
  return 0;
}
