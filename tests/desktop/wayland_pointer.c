// A mouse for compositors of wlroots and for KDE's: reads "move X Y WIDTH HEIGHT", "press" and "release", a
// line each, and answers each with a line as soon as the compositor has taken it. For KDE's it is a keyboard
// as well: "down CODE" and "up CODE". All is unplugged at the end of the input.
#define _POSIX_C_SOURCE 200809L

#include <linux/input-event-codes.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <time.h>

#include <fake-input.h>
#include <virtual-pointer.h>

// Whichever of the two the compositor has.
static struct zwlr_virtual_pointer_manager_v1* manager;
static struct zwlr_virtual_pointer_v1* pointer;
static struct org_kde_kwin_fake_input* input;

static void found(void* data, struct wl_registry* registry, uint32_t name, const char* interface,
                  uint32_t version) {
  (void)data;
  if (strcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0) {
    manager = wl_registry_bind(registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1);
  } else if (strcmp(interface, org_kde_kwin_fake_input_interface.name) == 0 && version >= 4) {
    input = wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, 4);
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

static void move(unsigned x, unsigned y, unsigned width, unsigned height) {
  if (input) {
    org_kde_kwin_fake_input_pointer_motion_absolute(input, wl_fixed_from_int((int)x),
                                                    wl_fixed_from_int((int)y));
  } else {
    zwlr_virtual_pointer_v1_motion_absolute(pointer, now(), x, y, width, height);
    zwlr_virtual_pointer_v1_frame(pointer);
  }
}

static void button(int pressed) {
  if (input) {
    org_kde_kwin_fake_input_button(input, BTN_LEFT, (uint32_t)pressed);
  } else {
    zwlr_virtual_pointer_v1_button(pointer, now(), BTN_LEFT, (uint32_t)pressed);
    zwlr_virtual_pointer_v1_frame(pointer);
  }
}

int main(void) {
  static const struct wl_registry_listener kListener = {found, gone};
  struct wl_display* display = wl_display_connect(NULL);
  if (!display) return 1;
  struct wl_registry* registry = wl_display_get_registry(display);
  wl_registry_add_listener(registry, &kListener, NULL);
  if (wl_display_roundtrip(display) < 0) return 1;
  if (input) {
    org_kde_kwin_fake_input_authenticate(input, "mouse", "plays the user's hand");
  } else if (manager) {
    pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager, NULL);
  } else {
    return 1;
  }

  char line[100];
  while (fgets(line, sizeof line, stdin)) {
    unsigned x, y, width, height, key;
    if (sscanf(line, "move %u %u %u %u", &x, &y, &width, &height) == 4) {
      move(x, y, width, height);
    } else if (input && sscanf(line, "down %u", &key) == 1) {
      org_kde_kwin_fake_input_keyboard_key(input, key, 1);
    } else if (input && sscanf(line, "up %u", &key) == 1) {
      org_kde_kwin_fake_input_keyboard_key(input, key, 0);
    } else {
      button(strcmp(line, "press\n") == 0);
    }
    if (wl_display_roundtrip(display) < 0) return 1;
    puts("done");
    fflush(stdout);
  }
  if (pointer) zwlr_virtual_pointer_v1_destroy(pointer);
  if (manager) zwlr_virtual_pointer_manager_v1_destroy(manager);
  if (input) org_kde_kwin_fake_input_destroy(input);
  wl_registry_destroy(registry);
  wl_display_disconnect(display);
  return 0;
}
