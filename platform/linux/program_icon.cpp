#include "platform/linux/program_icon.h"

#include <gtk/gtk.h>

#include <filesystem>
#include <system_error>

#include "platform/linux/running_instance.h"

namespace orvalle::platform::linuxos {

void showProgramIcon() {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto icons = program.parent_path().parent_path() / "share" / "icons";
  gtk_icon_theme_append_search_path(gtk_icon_theme_get_default(), icons.c_str());
  gtk_window_set_default_icon_name(kApplicationId);
}

}  // namespace orvalle::platform::linuxos
