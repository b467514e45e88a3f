// A mouse for compositors of wlroots: reads "move X Y WIDTH HEIGHT", "press" and "release", a line each, and
// answers each with a line as soon as the compositor has taken it. The mouse is unplugged at the end of the
// input.
#define _POSIX_C_SOURCE 200809L

#include <linux/input-event-codes.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include <virtual-pointer.h>

static struct zwlr_virtual_pointer_manager_v1* manager;

static void found(void* data, struct wl_registry* registry, uint32_t name, const char* interface,
                  uint32_t version) {
  (void)data;
  (void)version;
  if (strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0) {
    manager = wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1);
  }
}

static void gone(void* data, struct wl_registry* registry, uint32_t name) {
  (void)data;
  (void)registry;
  (void)name;
}

static uint32_t now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (uint32_t)(time.tv_sec * 1000 + time.tv_nsec / 1000000);
}

int main(void) {
  static const struct wl_registry_listener kListener = {found, gone};
  struct wl_display* display = wl_display_connect(NULL);
  if (!display) return 1;
  struct wl_registry* registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &kListener, NULL);
  if (wl_display_roundtrip(display) < 0 || !manager) return 1;
  struct zwlr_virtual_pointer_v1* pointer =
      zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager, NULL);

  char line[100];
  while (fgets(line, sizeof line, stdin)) {
    unsigned x, y, width, height;
    if (sscanf(line, "move %u %u %u %u", &x, &y, &width, &height) == 4) {
      zwlr_virtual_pointer_v1_motion_absolute(pointer, now(), x, y, width, height);
    } else {
      zwlr_virtual_pointer_v1_button(pointer, now(), BTN_LEFT, strcmp(line, "press\n") == 0);
    }
    zwlr_virtual_pointer_v1_frame(pointer);
    if (wl_display_roundtrip(display) < 0) return 1;
    puts("done");
    fflush(stdout);
  }
  wl_display_disconnect(display);
  return 0;
}
