#include "platform/shown_text.h"

#include <gtest/gtest.h>

namespace orvalle::platform {
namespace {

using namespace std::string_view_literals;

std::string repeated(int times, std::string_view text) {
  std::string all;
  for (int count = 0; count < times; ++count) all += text;
  return all;
}

TEST(ShownTextTest, isTheTextItselfWhereItFits) {
  EXPECT_EQ(shownText(""), "");
  EXPECT_EQ(shownText(" 24:12 • <b>R&D</b> 🎯"), " 24:12 • <b>R&D</b> 🎯");
  EXPECT_EQ(shownText(repeated(200, "è")), repeated(200, "è"));
}

TEST(ShownTextTest, endsInAnEllipsisWhereSomethingWasLeftOut) {
  EXPECT_EQ(shownText(repeated(201, "è")), repeated(199, "è") + "…");
  EXPECT_EQ(shownText(std::string(1 << 20, 'm')), std::string(199, 'm') + "…");
}

TEST(ShownTextTest, isOnOneLine) {
  EXPECT_EQ(shownText("uno\ndue\r\ntre\u2028quattro"), "uno due tre quattro");
}

TEST(ShownTextTest, isUtf8WithoutNul) {
  EXPECT_EQ(shownText("Perch\xe9"), "Perch\uFFFD");
  EXPECT_EQ(shownText("a\0b"sv), "ab");
}

TEST(ReadableTextTest, isTheTextItselfWhereItFits) {
  EXPECT_EQ(readableText(""), "");
  EXPECT_EQ(readableText("Prima riga\nè <b>così</b> 🎯\n"), "Prima riga\nè <b>così</b> 🎯\n");
  EXPECT_EQ(readableText(repeated(1'250, "già ")), repeated(1'250, "già "));
}

TEST(ReadableTextTest, goesOnForNoMoreThanAnybodyReads) {
  EXPECT_EQ(readableText(repeated(1'251, "già ")), repeated(1'250, "già ") + "…");
  EXPECT_EQ(readableText(repeated(499, "\n")), repeated(499, "\n"));
  EXPECT_EQ(readableText(repeated(500, "\n")), repeated(499, "\n") + "…");
}

TEST(ReadableTextTest, shortensWordsThatWouldTakeLongToLayOut) {
  EXPECT_EQ(readableText(repeated(200, "è") + " fine"), repeated(200, "è") + " fine");
  EXPECT_EQ(readableText(repeated(300, "è") + " fine"), repeated(200, "è") + "… fine");
  EXPECT_EQ(readableText(repeated(201, "è") + "\u2003fine"), repeated(200, "è") + "…\u2003fine");
}

TEST(ReadableTextTest, isUtf8WithoutNul) {
  EXPECT_EQ(readableText("Perch\xe9"), "Perch\uFFFD");
  EXPECT_EQ(readableText("a\0b"sv),
            "a\uFFFD"
            "b");
}

}  // namespace
}  // namespace orvalle::platform
