#include "platform/linux/edit_commands.h"

#include <webkit2/webkit2.h>

#include <algorithm>
#include <array>

#include "platform/menu.h"

namespace orvalle::platform::linuxos {
namespace {

struct Command {
  std::string_view action;
  const char* webCommand;
  /// The signal of text fields; null pointer for what they cannot do.
  const char* fieldSignal;
};

constexpr std::array kCommands = {
    Command{kActionUndo, WEBKIT_EDITING_COMMAND_UNDO, nullptr},
    Command{kActionRedo, WEBKIT_EDITING_COMMAND_REDO, nullptr},
    Command{kActionCut, WEBKIT_EDITING_COMMAND_CUT, "cut-clipboard"},
    Command{kActionCopy, WEBKIT_EDITING_COMMAND_COPY, "copy-clipboard"},
    Command{kActionPaste, WEBKIT_EDITING_COMMAND_PASTE, "paste-clipboard"},
    Command{kActionSelectAll, WEBKIT_EDITING_COMMAND_SELECT_ALL, "select-all"},
};

const Command* findCommand(std::string_view action) {
  const auto* found = std::find_if(kCommands.begin(), kCommands.end(),
                                   [&](const auto& command) { return command.action == action; });
  return found == kCommands.end() ? nullptr : found;
}

}  // namespace

bool canEdit(GtkWidget* widget, std::string_view action) {
  const auto* command = findCommand(action);
  if (!widget || !command) return false;
  if (WEBKIT_IS_WEB_VIEW(widget)) return true;
  return command->fieldSignal && (GTK_IS_ENTRY(widget) || GTK_IS_TEXT_VIEW(widget));
}

void edit(GtkWidget* widget, std::string_view action) {
  const auto* command = findCommand(action);
  if (WEBKIT_IS_WEB_VIEW(widget)) {
    webkit_web_view_execute_editing_command(WEBKIT_WEB_VIEW(widget), command->webCommand);
  } else if (action == kActionSelectAll && GTK_IS_ENTRY(widget)) {
    // Fields of one line have no signal for it.
    gtk_editable_select_region(GTK_EDITABLE(widget), 0, -1);
  } else if (action == kActionSelectAll) {
    g_signal_emit_by_name(widget, command->fieldSignal, TRUE);
  } else {
    g_signal_emit_by_name(widget, command->fieldSignal);
  }
}

}  // namespace orvalle::platform::linuxos
