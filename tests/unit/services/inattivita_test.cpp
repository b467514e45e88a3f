#include "services/inattivita.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_diary.h"

namespace orvalle::services {
namespace {

class InattivitaTest : public ::testing::Test {
 protected:
  platform::memory::MemoryInputIdle idle;
  Inattivita inattivita{idle};
};

TEST_F(InattivitaTest, hasAThresholdOfAnHour) {
  EXPECT_EQ(inattivita.sogliaSecondi(), 3600.0);
}

TEST_F(InattivitaTest, isWhatTheSystemMeasures) {
  idle.seconds = 12.5;
  EXPECT_EQ(inattivita.fermoDa(), 12.5);
}

TEST_F(InattivitaTest, closesFromTheThresholdOn) {
  idle.seconds = 3599.9;
  EXPECT_FALSE(inattivita.daChiudere(true));
  idle.seconds = 3600.0;
  EXPECT_TRUE(inattivita.daChiudere(true));
  idle.seconds = 1e9;
  EXPECT_TRUE(inattivita.daChiudere(true));
}

TEST_F(InattivitaTest, closesAgainAtEveryLook) {
  idle.seconds = 4000;
  EXPECT_TRUE(inattivita.daChiudere(true));
  EXPECT_TRUE(inattivita.daChiudere(true));
  idle.seconds = 0.1;
  EXPECT_FALSE(inattivita.daChiudere(true));
}

TEST_F(InattivitaTest, neverClosesWhereNoSessionRunsAndDoesNotMeasureThen) {
  idle.seconds = 1e9;
  EXPECT_FALSE(inattivita.daChiudere(false));
  EXPECT_EQ(idle.measurements, 0);
}

TEST_F(InattivitaTest, takesAnotherThreshold) {
  const Inattivita soon(idle, 2);
  idle.seconds = 1.9;
  EXPECT_FALSE(soon.daChiudere(true));
  idle.seconds = 2;
  EXPECT_TRUE(soon.daChiudere(true));
}

}  // namespace
}  // namespace orvalle::services
