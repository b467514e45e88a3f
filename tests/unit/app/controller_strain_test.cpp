#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/unit/app/controller_fixture.h"

namespace orvalle::app {
namespace {

using namespace std::chrono_literals;

/// What nobody sends who means well.
class ControllerStrainTest : public ControllerFixture {
 protected:
  ControllerStrainTest() { launchWithPage(); }
};

TEST_F(ControllerStrainTest, showsMinutesOfAnySize) {
  for (const double minutes : {1e300, -1e300, 1.7e308, 1e18, -1e18, 1e-300, -1e-300}) {
    auto snapshot = session(minutes);
    snapshot.elapsedMin = minutes;
    snapshot.plannedMin = minutes;
    pushFromPage(snapshot);
    EXPECT_TRUE(controller->live());
    system.time.advance(5s);
    EXPECT_EQ(face().title.starts_with(minutes < 0 || minutes < 1 ? " +" : " "), true) << minutes;
    EXPECT_EQ(panel().colour == platform::TextColour::SystemRed, minutes < 1) << minutes;
  }
}

TEST_F(ControllerStrainTest, showsTenThousandTasks) {
  auto snapshot = session();
  snapshot.tasks.clear();
  for (int i = 0; i < 10'000; ++i)
    snapshot.tasks.push_back({std::to_string(i), "Task " + std::to_string(i), i % 2 == 0});
  pushFromPage(snapshot);
  EXPECT_EQ(taskTitles().size(), 10'000u);
  system.time.advance(3s);
  EXPECT_EQ(taskTitles().size(), 10'000u);
  window().scripts.clear();
  choose("Task 9999");
  EXPECT_EQ(window().scripts, Texts{commandScript("task", "'9999'")});
  system.time.advance(63s);
  EXPECT_TRUE(taskTitles().empty());
}

TEST_F(ControllerStrainTest, showsTitlesOfAMegabyte) {
  const std::string megabyte(1'000'000, 'x');
  auto snapshot = session();
  snapshot.projectTitle = megabyte;
  snapshot.tasks = {{megabyte, megabyte, false}};
  pushFromPage(snapshot);
  EXPECT_EQ(face().title, " 20:00 • " + megabyte);
  EXPECT_EQ(statusLine(), megabyte + " · 20′ al traguardo");
  EXPECT_EQ(panel().text, "20:00  •  " + megabyte);
  EXPECT_EQ(taskTitles(), Texts{megabyte});
}

TEST_F(ControllerStrainTest, passesStrangeCharactersOnAsTheyCame) {
  const std::string strange("a\0b\u202Ec\u2066d\ne", 14);
  auto snapshot = session();
  snapshot.projectTitle = strange;
  snapshot.tasks = {{strange, strange, false}};
  pushFromPage(snapshot);
  EXPECT_EQ(face().title, " 20:00 • " + strange);
  EXPECT_EQ(taskTitles(), Texts{strange});
}

TEST_F(ControllerStrainTest, takesAStateEveryMillisecondForTenSeconds) {
  const auto tasks = session().tasks.size();
  for (int i = 0; i < 10'000; ++i) {
    pushFromPage(session(20 + i));
    system.time.advance(1ms);
  }
  EXPECT_EQ(face().title.substr(0, 11), " 166:59:00 ");
  EXPECT_EQ(taskTitles().size(), tasks);
  EXPECT_EQ(menu().items().size(), 14 + tasks);
  EXPECT_EQ(system.time.timerCount(), 3u);
  EXPECT_EQ(system.defaults.writes, 0);
}

TEST_F(ControllerStrainTest, takesAChannelThatFlickers) {
  pairUp();
  pushFromChannel(session());
  for (int i = 0; i < 1000; ++i) channel.channel->onConnection(i % 2 == 0);
  EXPECT_FALSE(controller->live());
  EXPECT_EQ(statusLine(), "Cerco il canale…");
  channel.channel->onConnection(true);
  EXPECT_TRUE(controller->live());
}

}  // namespace
}  // namespace orvalle::app
