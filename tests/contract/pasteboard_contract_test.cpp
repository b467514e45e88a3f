#include <gtest/gtest.h>

#include <string>

#include "tests/contract/pasteboard_rigs.h"

namespace orvalle::contract {
namespace {

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

}  // namespace
}  // namespace orvalle::contract
