#include "platform/linux/page_requests.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace orvalle::platform::linuxos {
namespace {

struct CloseDialog {
  void operator()(WebKitScriptDialog* dialog) const {
    webkit_script_dialog_close(dialog);
    webkit_script_dialog_unref(dialog);
  }
};

/// The page's script waits until the last copy is gone.
struct OpenDialog {
  std::shared_ptr<WebKitScriptDialog> dialog;
  std::shared_ptr<base::Subscription> hold;
};

OpenDialog keepOpen(WebKitScriptDialog* dialog, AnswerWatch& watch) {
  return {{webkit_script_dialog_ref(dialog), CloseDialog()},
          std::make_shared<base::Subscription>(watch.hold())};
}

void answer(WebKitFileChooserRequest* request, const std::optional<std::vector<std::string>>& paths) {
  if (!paths) return webkit_file_chooser_request_cancel(request);
  std::vector<const char*> names;
  names.reserve(paths->size() + 1);
  for (const auto& path : *paths) names.push_back(path.c_str());
  names.push_back(nullptr);
  webkit_file_chooser_request_select_files(request, names.data());
}

gboolean denyPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
  webkit_permission_request_deny(request);
  return TRUE;
}

gboolean tellDenied(WebKitWebView*, WebKitPermissionStateQuery* query, gpointer) {
  webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
  return TRUE;
}

/// Whether the item would open a window, save a file or show the inspector, none of which we have.
bool leadsOutside(WebKitContextMenuItem* item) {
  switch (webkit_context_menu_item_get_stock_action(item)) {
    case WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK_IN_NEW_WINDOW:
    case WEBKIT_CONTEXT_MENU_ACTION_OPEN_IMAGE_IN_NEW_WINDOW:
    case WEBKIT_CONTEXT_MENU_ACTION_OPEN_FRAME_IN_NEW_WINDOW:
    case WEBKIT_CONTEXT_MENU_ACTION_OPEN_VIDEO_IN_NEW_WINDOW:
    case WEBKIT_CONTEXT_MENU_ACTION_OPEN_AUDIO_IN_NEW_WINDOW:
    case WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_LINK_TO_DISK:
    case WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_IMAGE_TO_DISK:
    case WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_VIDEO_TO_DISK:
    case WEBKIT_CONTEXT_MENU_ACTION_DOWNLOAD_AUDIO_TO_DISK:
    case WEBKIT_CONTEXT_MENU_ACTION_INSPECT_ELEMENT:
      return true;
    default:
      return false;
  }
}

/// Whether the item would load a document again that has no address to be loaded from.
bool wouldEmptyPage(WebKitContextMenuItem* item, WebKitWebView* view) {
  return webkit_context_menu_item_get_stock_action(item) == WEBKIT_CONTEXT_MENU_ACTION_RELOAD &&
         g_strcmp0(webkit_web_view_get_uri(view), "about:blank") == 0;
}

/// Leaves the stock menu without those items, and without the separators that then separate nothing. Returns
/// whether nothing is left to show.
gboolean trimContextMenu(WebKitWebView* view, WebKitContextMenu* menu, GdkEvent*, WebKitHitTestResult*,
                         gpointer) {
  std::vector<WebKitContextMenuItem*> items;
  for (GList* each = webkit_context_menu_get_items(menu); each; each = each->next)
    items.push_back(WEBKIT_CONTEXT_MENU_ITEM(each->data));
  WebKitContextMenuItem* separator = nullptr;
  bool separates = false;
  for (auto* item : items) {
    if (webkit_context_menu_item_is_separator(item)) {
      if (separates && !separator) {
        separator = item;
      } else {
        webkit_context_menu_remove(menu, item);
      }
    } else if (leadsOutside(item) || wouldEmptyPage(item, view)) {
      webkit_context_menu_remove(menu, item);
    } else {
      separates = true;
      separator = nullptr;
    }
  }
  if (separator) webkit_context_menu_remove(menu, separator);
  return webkit_context_menu_get_n_items(menu) == 0;
}

}  // namespace

PageRequests::PageRequests(WebKitWebView* view, WebWindowDelegate& delegate, AnswerWatch& watch)
    : delegate_(delegate),
      watch_(watch),
      connections_{{{view, "script-dialog", G_CALLBACK(scriptDialog), this},
                    {view, "run-file-chooser", G_CALLBACK(chooseFiles), this},
                    {view, "permission-request", G_CALLBACK(denyPermission), nullptr},
                    {view, "query-permission-state", G_CALLBACK(tellDenied), nullptr},
                    {view, "context-menu", G_CALLBACK(trimContextMenu), nullptr}}} {}

gboolean PageRequests::scriptDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer self) {
  auto& delegate = static_cast<PageRequests*>(self)->delegate_;
  auto& watch = static_cast<PageRequests*>(self)->watch_;
  const char* text = webkit_script_dialog_get_message(dialog);
  const std::string message = text ? text : "";
  switch (webkit_script_dialog_get_dialog_type(dialog)) {
    case WEBKIT_SCRIPT_DIALOG_ALERT:
      delegate.runAlert(message, [open = keepOpen(dialog, watch)]() mutable { open = {}; });
      break;
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      delegate.runConfirm(message, [open = keepOpen(dialog, watch)](bool agreed) mutable {
        webkit_script_dialog_confirm_set_confirmed(open.dialog.get(), agreed);
        open = {};
      });
      break;
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
      webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
      break;
    case WEBKIT_SCRIPT_DIALOG_PROMPT:
      break;
  }
  return TRUE;
}

gboolean PageRequests::chooseFiles(WebKitWebView*, WebKitFileChooserRequest* request, gpointer self) {
  static_cast<PageRequests*>(self)->delegate_.chooseFiles(
      webkit_file_chooser_request_get_select_multiple(request),
      [kept = GObjectPtr<WebKitFileChooserRequest>::share(request)](const auto& paths) {
        answer(kept.get(), paths);
      });
  return TRUE;
}

}  // namespace orvalle::platform::linuxos
