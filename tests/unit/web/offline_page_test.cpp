#include "web/offline_page.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalle::web {
namespace {

class OfflinePageTest : public ::testing::Test {};

TEST_F(OfflinePageTest, isWrittenByteForByte) {
  const std::string expected =
      "<!doctype html><meta charset=utf-8>\n"
      "<style>\n"
      "  body{font:600 15px/1.5 -apple-system,system-ui;margin:0;height:100vh;\n"
      "       display:grid;place-items:center;text-align:center;color:#3a3a4a;\n"
      "       background:#fff}\n"
      "  @media (prefers-color-scheme:dark){body{background:#1c1c22;color:#d8d8e0}}\n"
      "  p{max-width:34ch;margin:.4rem 0}\n"
      "  b{font-size:19px}\n"
      "</style>\n"
      "<div>\n"
      "  <p><b>Non riesco a raggiungere Orvalle</b></p>\n"
      "  <p>Controlla la connessione. Le schermate che hai gi\xC3\xA0 aperto restano\n"
      "     disponibili offline: riprova fra un momento.</p>\n"
      "  <p style=\"opacity:.6;font-size:13px\">"
      "Could not connect: Connection refused"
      "</p>\n"
      "</div>";
  EXPECT_EQ(offlinePage("Could not connect: Connection refused"), expected);
}

TEST_F(OfflinePageTest, holdsTheDescriptionAsItIs) {
  const std::string description = "a < b & \"c\" 'è' $0\n";
  const auto page = offlinePage(description);
  EXPECT_EQ(page.size(), offlinePage("").size() + description.size());
  EXPECT_NE(page.find(">" + description + "</p>\n</div>"), std::string::npos);
}

}  // namespace
}  // namespace orvalle::web
