#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "tests/contract/pasteboard_rigs.h"

namespace orvalle::contract {
namespace {

/// What lies on the clipboard of another program: of one that has died, or that has no text.
class PasteboardSelections : public ::testing::Test {
 protected:
  NativeBoard board;
};

TEST_F(PasteboardSelections, doesNotReadWhatIsMerelySelected) {
  gtk_clipboard_set_text(gtk_clipboard_get(GDK_SELECTION_PRIMARY), "selected", -1);
  EXPECT_EQ(read(board.board()), "");
}

TEST_F(PasteboardSelections, leavesLineEndsAlone) {
  // As most programs copy: in every form there is.
  gtk_clipboard_set_text(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD), "uno\r\ndue\rtre\n", -1);
  EXPECT_EQ(read(board.board()), "uno\r\ndue\rtre\n");
}

TEST_F(PasteboardSelections, readsTextInOtherForms) {
  board.copy("uno", "STRING");
  EXPECT_EQ(read(board.board()), "uno");
  board.copy("citt\xC3\xA0", "text/plain;charset=utf-8");
  EXPECT_EQ(read(board.board()), "città");
}

TEST_F(PasteboardSelections, readsNoTextFromAPicture) {
  GdkPixbuf* picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 4, 4);
  gdk_pixbuf_fill(picture, 0);
  gtk_clipboard_set_image(gtk_clipboard_get(GDK_SELECTION_CLIPBOARD), picture);
  g_object_unref(picture);
  EXPECT_EQ(read(board.board()), "");
}

}  // namespace
}  // namespace orvalle::contract
