#include "app/display.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "app/ring_image.h"

namespace orvalle::app {
namespace {

class DisplayTest : public ::testing::Test {
 protected:
  Display live(double rim) const { return describe({snapshot, true, rim, true, true}); }
  Display idle(bool paired, bool connected, double rim = 0) const {
    return describe({snapshot, false, rim, paired, connected});
  }

  link::Snapshot snapshot{true, false, 10, 15, 25, "Tesi", {}, {}};
};

TEST_F(DisplayTest, showsALiveSession) {
  const auto display = live(24 + 13.0 / 60);
  EXPECT_EQ(display.face.title, " 24:13 \u2022 Tesi");
  EXPECT_EQ(display.face.alpha, 1.0);
  EXPECT_EQ(display.face.imagePosition, platform::ImagePosition::Right);
  EXPECT_EQ(display.face.image, ringImage(0.4, false));
  EXPECT_EQ(display.statusLine, "Tesi \u00B7 24\u2032 al traguardo");
  EXPECT_EQ(display.overlayText, "24:13  \u2022  Tesi");
  EXPECT_FALSE(display.over);
}

TEST_F(DisplayTest, showsALiveSessionPastItsEnd) {
  const auto display = live(-3.25);
  EXPECT_EQ(display.face.title, " +3:15 \u2022 Tesi");
  EXPECT_EQ(display.face.alpha, 1.0);
  EXPECT_EQ(display.face.image, ringImage(0.4, true));
  EXPECT_EQ(display.statusLine, "Tesi \u00B7 +3\u2032 oltre");
  EXPECT_EQ(display.overlayText, "+3:15  \u2022  Tesi");
  EXPECT_TRUE(display.over);
}

TEST_F(DisplayTest, showsNoSession) {
  for (const double rim : {10.0, 0.0, -3.25}) {
    const auto display = idle(true, true, rim);
    EXPECT_EQ(display.face.title, " Orvalle");
    EXPECT_EQ(display.face.alpha, 0.55);
    EXPECT_EQ(display.face.imagePosition, platform::ImagePosition::Right);
    // An empty ring and no dot, even when the old state was past its end.
    EXPECT_EQ(display.face.image, ringImage(0, false));
  }
}

TEST_F(DisplayTest, writesTheOverlaysTextFromTheOldStateToo) {
  EXPECT_EQ(idle(true, true, 10).overlayText, "10:00  \u2022  Tesi");
  EXPECT_FALSE(idle(true, true, 10).over);
  EXPECT_EQ(idle(true, true, -3.25).overlayText, "+3:15  \u2022  Tesi");
  EXPECT_TRUE(idle(true, true, -3.25).over);
}

TEST_F(DisplayTest, saysWhyThereIsNoSession) {
  EXPECT_EQ(idle(true, true).statusLine, "Nessuna sessione in corso");
  EXPECT_EQ(idle(true, false).statusLine, "Cerco il canale\u2026");
  EXPECT_EQ(idle(false, false).statusLine, "Non abbinata: apri \u00ABAbbina\u2026\u00BB");
  // Whether a channel is connected does not matter without pairing.
  EXPECT_EQ(idle(false, true).statusLine, "Non abbinata: apri \u00ABAbbina\u2026\u00BB");
}

TEST_F(DisplayTest, showsALiveSessionWithoutPairing) {
  EXPECT_EQ(describe({snapshot, true, 12, false, false}).statusLine, "Tesi \u00B7 12\u2032 al traguardo");
}

TEST_F(DisplayTest, labelsTheSession) {
  struct Row {
    bool isBreak;
    std::string project;
    std::string label;
  };
  for (const auto& row :
       {Row{false, "Tesi", "Tesi"}, Row{false, "", "Focus"}, Row{false, " ", " "}, Row{true, "Tesi", "Pausa"},
        Row{true, "", "Pausa"}, Row{false, "<b>&_amp; •\n🎯", "<b>&_amp; •\n🎯"}}) {
    snapshot.isBreak = row.isBreak;
    snapshot.projectTitle = row.project;
    const auto display = live(12);
    EXPECT_EQ(display.face.title, " 12:00 \u2022 " + row.label);
    EXPECT_EQ(display.statusLine, row.label + " \u00B7 12\u2032 al traguardo");
    EXPECT_EQ(display.overlayText, "12:00  \u2022  " + row.label);
  }
}

TEST_F(DisplayTest, roundsTheMinutesOfTheStatusLineHalvesAwayFromZero) {
  struct Row {
    double rim;
    std::string line;
  };
  for (const auto& row : {
           Row{0, "Tesi · 0′ al traguardo"},
           Row{-0.0, "Tesi · 0′ al traguardo"},
           Row{0.4, "Tesi · 0′ al traguardo"},
           Row{0.5, "Tesi · 1′ al traguardo"},
           Row{1.49, "Tesi · 1′ al traguardo"},
           Row{1.5, "Tesi · 2′ al traguardo"},
           Row{2.5, "Tesi · 3′ al traguardo"},
           Row{11.6, "Tesi · 12′ al traguardo"},
           Row{125, "Tesi · 125′ al traguardo"},
           Row{-0.4, "Tesi · +0′ oltre"},
           Row{-0.5, "Tesi · +1′ oltre"},
           Row{-2.5, "Tesi · +3′ oltre"},
           Row{-3.2, "Tesi · +3′ oltre"},
       }) {
    EXPECT_EQ(live(row.rim).statusLine, row.line) << row.rim;
  }
}

TEST_F(DisplayTest, countsAnyTimePastTheEndAsOver) {
  EXPECT_EQ(live(-0.4).face.title, " +0:24 • Tesi");
  EXPECT_TRUE(live(-0.4).over);
  EXPECT_TRUE(live(-1e-9).over);
  EXPECT_EQ(live(-1e-9).face.title, " +0:00 • Tesi");
  EXPECT_FALSE(live(0).over);
  EXPECT_FALSE(live(-0.0).over);
  EXPECT_EQ(live(0).face.title, " 0:00 • Tesi");
}

TEST_F(DisplayTest, fillsTheRingByTheStateAlone) {
  struct Row {
    double elapsed, planned, progress;
  };
  for (const auto& row : {Row{5, 25, 0.2}, Row{25, 25, 1}, Row{30, 25, 1.2}, Row{0, 25, 0}, Row{-5, 25, -0.2},
                          Row{5, 0, 0}, Row{0, 0, 0}, Row{5, -25, 0}, Row{-5, -25, 0},
                          Row{1e300, 1e-300, std::numeric_limits<double>::infinity()}}) {
    snapshot.elapsedMin = row.elapsed;
    snapshot.plannedMin = row.planned;
    // The time that is left plays no part in it.
    for (const double rim : {15.0, 1.0}) {
      EXPECT_EQ(live(rim).face.image, ringImage(row.progress, false)) << row.elapsed << "/" << row.planned;
    }
  }
}

TEST_F(DisplayTest, showsAbsurdTimesAsTheGreatestItCan) {
  EXPECT_EQ(live(1e12).face.title, " 16666666666:40:00 • Tesi");
  EXPECT_EQ(live(1e12).statusLine, "Tesi · 1000000000000′ al traguardo");
  const auto greatest = live(1e18);
  const auto greatestOver = live(-1e18);
  EXPECT_EQ(greatestOver.face.title, " +" + greatest.face.title.substr(1));
  for (const double rim : {1e19, 1e300, std::numeric_limits<double>::max()}) {
    EXPECT_EQ(live(rim).face, greatest.face) << rim;
    EXPECT_EQ(live(rim).statusLine, greatest.statusLine) << rim;
    EXPECT_EQ(live(rim).overlayText, greatest.overlayText) << rim;
    EXPECT_FALSE(live(rim).over);

    EXPECT_EQ(live(-rim).face, greatestOver.face) << rim;
    EXPECT_EQ(live(-rim).statusLine, greatestOver.statusLine) << rim;
    EXPECT_TRUE(live(-rim).over);
    EXPECT_EQ(idle(true, true, -rim).statusLine, "Nessuna sessione in corso");
  }
}

}  // namespace
}  // namespace orvalle::app
