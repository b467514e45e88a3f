#include "platform/linux/permissions_window.h"

#include <utility>

#include "platform/linux/window_front.h"

namespace orvalle::platform::linuxos {
namespace {

constexpr int kMargin = 24;
constexpr int kGap = 6;
constexpr int kWidth = 44;

GtkLabel* makeLabel(const std::string& text) {
  GtkWidget* label = gtk_label_new(text.c_str());
  gtk_label_set_xalign(GTK_LABEL(label), 0);
  gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
  // A folder's name may be longer than a line.
  gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
  gtk_label_set_max_width_chars(GTK_LABEL(label), kWidth);
  return GTK_LABEL(label);
}

GtkWidget* makeWindow(GtkApplication* application) {
  GtkWidget* widget = gtk_window_new(GTK_WINDOW_TOPLEVEL);
  auto* window = GTK_WINDOW(widget);
  gtk_window_set_title(window, "Permessi di Orvalle");
  gtk_window_set_resizable(window, FALSE);
  gtk_window_set_type_hint(window, GDK_WINDOW_TYPE_HINT_DIALOG);
  gtk_window_set_position(window, GTK_WIN_POS_CENTER);
  gtk_application_add_window(application, window);
  g_signal_connect(widget, "delete-event", G_CALLBACK(gtk_widget_hide_on_delete), nullptr);
  return widget;
}

}  // namespace

PermissionsWindow::PermissionsWindow(GtkApplication* application, const std::string& folder,
                                     std::function<void(bool)> changed)
    : changed_(std::move(changed)), window_(makeWindow(application)) {
  GtkWidget* content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2 * kGap);
  gtk_container_set_border_width(GTK_CONTAINER(content), kMargin);
  gtk_container_add(GTK_CONTAINER(content), makeRow(folder));
  gtk_container_add(GTK_CONTAINER(window_.get()), content);
  gtk_widget_show_all(content);
  g_signal_connect(window_.get(), "key-press-event", G_CALLBACK(keyPressed), nullptr);
  g_signal_connect(switch_, "state-set", G_CALLBACK(switched), this);
}

GtkWidget* PermissionsWindow::makeRow(const std::string& folder) {
  GtkLabel* name = makeLabel("Titoli delle finestre");
  gtk_style_context_add_class(gtk_widget_get_style_context(GTK_WIDGET(name)), "heading");
  PangoAttrList* bold = pango_attr_list_new();
  pango_attr_list_insert(bold, pango_attr_weight_new(PANGO_WEIGHT_BOLD));
  gtk_label_set_attributes(name, bold);
  pango_attr_list_unref(bold);
  GtkLabel* reason = makeLabel(
      "Con il tuo consenso il diario delle attività annota, accanto al nome dell’applicazione che hai "
      "davanti, "
      "anche il titolo della sua finestra. Senza, i titoli non vengono letti.");
  GtkLabel* place = makeLabel("Il diario resta su questo computer, in " + folder + ", e lo leggi solo tu.");
  state_ = makeLabel("");

  switch_ = GTK_SWITCH(gtk_switch_new());
  gtk_widget_set_valign(GTK_WIDGET(switch_), GTK_ALIGN_CENTER);
  atk_object_set_name(gtk_widget_get_accessible(GTK_WIDGET(switch_)), "Titoli delle finestre");

  GtkWidget* texts = gtk_box_new(GTK_ORIENTATION_VERTICAL, kGap);
  for (auto* label : {name, reason, place, state_})
    gtk_container_add(GTK_CONTAINER(texts), GTK_WIDGET(label));
  GtkWidget* row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, kMargin);
  gtk_box_pack_start(GTK_BOX(row), texts, TRUE, TRUE, 0);
  gtk_box_pack_end(GTK_BOX(row), GTK_WIDGET(switch_), FALSE, FALSE, 0);
  return row;
}

void PermissionsWindow::show(bool consent) {
  g_signal_handlers_block_by_func(switch_, reinterpret_cast<gpointer>(switched), this);
  gtk_switch_set_active(switch_, consent);
  g_signal_handlers_unblock_by_func(switch_, reinterpret_cast<gpointer>(switched), this);
  gtk_label_set_text(state_, consent ? "Consentito" : "Non consentito");
}

void PermissionsWindow::present() {
  linuxos::present(window_.get());
}

gboolean PermissionsWindow::switched(GtkSwitch*, gboolean on, gpointer self) {
  auto& window = *static_cast<PermissionsWindow*>(self);
  window.show(on);
  window.changed_(on);
  return FALSE;
}

gboolean PermissionsWindow::keyPressed(GtkWidget* window, GdkEventKey* event, gpointer) {
  if (event->keyval != GDK_KEY_Escape || event->state & gtk_accelerator_get_default_mod_mask()) return FALSE;
  gtk_widget_hide(window);
  return TRUE;
}

}  // namespace orvalle::platform::linuxos
