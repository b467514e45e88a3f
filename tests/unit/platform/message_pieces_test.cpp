#include "platform/message_pieces.h"

#include <gtest/gtest.h>

namespace orvalle::platform {
namespace {

TEST(MessagePieces, aWholeMessageIsThereAtOnce) {
  MessagePieces pieces;
  EXPECT_EQ(pieces.take("={}"), "{}");
  EXPECT_EQ(pieces.take("="), "");
}

TEST(MessagePieces, aLongMessageIsThereWithItsEnd) {
  MessagePieces pieces;
  EXPECT_EQ(pieces.take("<{\"a\""), std::nullopt);
  EXPECT_EQ(pieces.take("+:"), std::nullopt);
  EXPECT_EQ(pieces.take(">1}"), "{\"a\":1}");
}

TEST(MessagePieces, whatAPageLeftUnfinishedIsDropped) {
  MessagePieces pieces;
  pieces.take("<[1,");
  EXPECT_EQ(pieces.take("={}"), "{}");
  EXPECT_EQ(pieces.take(">2]"), std::nullopt);
  pieces.take("<[1,");
  pieces.take("<[3,");
  EXPECT_EQ(pieces.take(">4]"), "[3,4]");
}

TEST(MessagePieces, piecesWithoutABeginningAreDropped) {
  MessagePieces pieces;
  EXPECT_EQ(pieces.take("+[1"), std::nullopt);
  EXPECT_EQ(pieces.take(">]"), std::nullopt);
  EXPECT_EQ(pieces.take(""), std::nullopt);
  EXPECT_EQ(pieces.take("=1"), "1");
}

}  // namespace
}  // namespace orvalle::platform
