#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <optional>
#include <stdexcept>

#include "platform/linux/factory.h"
#include "platform/memory/memory_link.h"
#include "tests/contract/loop.h"

namespace orvalle::contract {
namespace {

class MemoryBoard {
 public:
  platform::Pasteboard& board() { return board_; }
  void copy(const std::string& text) { board_.text = text; }
  void empty() { board_.text.clear(); }

 private:
  platform::memory::MemoryPasteboard board_;
};

/// Bytes on the clipboard, as another program may put them there.
class NativeBoard {
 public:
  NativeBoard() {
    if (!gtk_init_check(nullptr, nullptr)) throw std::runtime_error("no display");
    board_ = platform::linuxos::makePasteboard();
    empty();
  }
  platform::Pasteboard& board() { return *board_; }
  void copy(const std::string& text, std::string form = "UTF8_STRING") {
    const GtkTargetEntry target = {form.data(), 0, 0};
    gtk_clipboard_set_with_data(clipboard(), &target, 1, give, forget, new std::string(text));
  }
  void empty() { gtk_clipboard_clear(clipboard()); }

 private:
  static void give(GtkClipboard*, GtkSelectionData* selection, guint, gpointer text) {
    const auto& bytes = *static_cast<std::string*>(text);
    gtk_selection_data_set(selection, gtk_selection_data_get_target(selection), 8,
                           reinterpret_cast<const guchar*>(bytes.data()), static_cast<int>(bytes.size()));
  }
  static void forget(GtkClipboard*, gpointer text) { delete static_cast<std::string*>(text); }
  static GtkClipboard* clipboard() { return gtk_clipboard_get(GDK_SELECTION_CLIPBOARD); }
  std::unique_ptr<platform::Pasteboard> board_;
};

std::string read(platform::Pasteboard& board) {
  int times = 0;
  std::string found;
  board.readText([&](const std::string& text) {
    found = text;
    ++times;
  });
  EXPECT_TRUE(runUntil([&] { return times > 0; }));
  runFor(std::chrono::milliseconds(20));
  EXPECT_EQ(times, 1);
  return found;
}

template <typename Board>
class PasteboardContract : public ::testing::Test {
 protected:
  Board board;
};

using Boards = ::testing::Types<MemoryBoard, NativeBoard>;
TYPED_TEST_SUITE(PasteboardContract, Boards);

TYPED_TEST(PasteboardContract, readsTheTextThatWasCopied) {
  for (const char* text : {"uno", "città → 🍅\r\nriga\tdue\n", ""}) {
    this->board.copy(text);
    EXPECT_EQ(read(this->board.board()), text);
  }
}

TYPED_TEST(PasteboardContract, readsNothingWhereThereIsNothing) {
  this->board.empty();
  EXPECT_EQ(read(this->board.board()), "");
}

TYPED_TEST(PasteboardContract, readsAGreatText) {
  const std::string text(10'000'000, 'x');
  this->board.copy(text);
  EXPECT_TRUE(read(this->board.board()) == text);
}

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
