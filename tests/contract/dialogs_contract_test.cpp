#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/contract/dialog_rigs.h"

namespace orvalle::contract {
namespace {

using Answer = std::optional<std::vector<std::string>>;

template <typename Rig>
class AlertsContract : public ::testing::Test {
 protected:
  void show(const std::string& message, const std::vector<std::string>& buttons) {
    rig.alerts().show({message, "", buttons}, [this, message](std::size_t button) {
      answers.push_back(message + " " + std::to_string(button));
    });
  }

  Rig rig;
  std::vector<std::string> answers;
};

using AlertsRigs = ::testing::Types<MemoryAlertsRig, NativeAlertsRig>;
TYPED_TEST_SUITE(AlertsContract, AlertsRigs);

TYPED_TEST(AlertsContract, answerIsTheButtonPressed) {
  for (std::size_t button = 0; button < 3; ++button) {
    this->show("Prova", {"Uno", "Due", "Tre"});
    this->rig.press(button);
  }
  EXPECT_EQ(this->answers, (std::vector<std::string>{"Prova 0", "Prova 1", "Prova 2"}));
  EXPECT_FALSE(this->rig.open());
}

TYPED_TEST(AlertsContract, areShownOneAtATimeInOrder) {
  this->show("Prima", {"Va bene"});
  this->show("Seconda", {"Va bene", "Annulla"});
  EXPECT_EQ(this->answers, std::vector<std::string>());
  EXPECT_EQ(this->rig.message(), "Prima");
  this->rig.press(0);
  EXPECT_EQ(this->rig.message(), "Seconda");
  this->rig.press(1);
  EXPECT_EQ(this->answers, (std::vector<std::string>{"Prima 0", "Seconda 1"}));
}

TYPED_TEST(AlertsContract, answerMayAskAgain) {
  this->rig.alerts().show({"Prima", "", {"Va bene"}}, [this](std::size_t) { this->show("Ultima", {"Sì"}); });
  this->show("Seconda", {"Va bene"});
  this->rig.press(0);
  EXPECT_EQ(this->rig.message(), "Seconda");
  this->rig.press(0);
  EXPECT_EQ(this->rig.message(), "Ultima");
  this->rig.press(0);
  EXPECT_EQ(this->answers, (std::vector<std::string>{"Seconda 0", "Ultima 0"}));
}

TYPED_TEST(AlertsContract, aProgressAlertIsAnsweredLikeAnyOther) {
  const auto progress = this->rig.alerts().showProgress(
      {"Scarico", "", {"Annulla"}},
      [this](std::size_t button) { this->answers.push_back(std::to_string(button)); });
  EXPECT_EQ(this->rig.message(), "Scarico");
  this->rig.press(0);
  EXPECT_EQ(this->answers, std::vector<std::string>{"0"});
  EXPECT_FALSE(this->rig.open());
}

TYPED_TEST(AlertsContract, aProgressAlertGoesWithItsSubscription) {
  auto progress = this->rig.alerts().showProgress({"Scarico", "", {"Annulla"}},
                                                  [](std::size_t) { ADD_FAILURE() << "answered"; });
  this->show("Dopo", {"Va bene"});
  EXPECT_EQ(this->rig.message(), "Scarico");
  progress.reset();
  EXPECT_EQ(this->rig.message(), "Dopo");
  progress = this->rig.alerts().showProgress({"Ancora", "", {"Annulla"}},
                                             [](std::size_t) { ADD_FAILURE() << "answered"; });
  progress.reset();
  this->rig.press(0);
  EXPECT_FALSE(this->rig.open());
  EXPECT_EQ(this->answers, std::vector<std::string>{"Dopo 0"});
}

template <typename Rig>
class OpenPanelContract : public ::testing::Test {
 protected:
  OpenPanelContract() { std::ofstream(path) << "contenuto"; }
  ~OpenPanelContract() override { std::filesystem::remove(path); }

  void ask(bool several) {
    rig.panel().choose({"Scegli un modello 3D", "Scegli", several},
                       [this](const Answer& answer) { answers.push_back(answer); });
  }

  const std::filesystem::path path = std::filesystem::temp_directory_path() / "orvalle modello_1.txt";
  Rig rig;
  std::vector<Answer> answers;
};

using OpenPanelRigs = ::testing::Types<MemoryOpenPanelRig, NativeOpenPanelRig>;
TYPED_TEST_SUITE(OpenPanelContract, OpenPanelRigs);

TYPED_TEST(OpenPanelContract, givesThePathsChosen) {
  if (!TypeParam::kChooses) GTEST_SKIP() << "nobody but the user can choose here";
  for (const bool several : {false, true}) {
    this->ask(several);
    EXPECT_TRUE(this->answers.empty());
    this->rig.choose(this->path);
    this->rig.settle();
    EXPECT_EQ(this->answers, std::vector<Answer>{std::vector{this->path.string()}});
    this->answers.clear();
  }
}

TYPED_TEST(OpenPanelContract, givesNothingWhenCancelled) {
  this->ask(false);
  this->rig.cancel();
  this->rig.settle();
  EXPECT_EQ(this->answers, std::vector<Answer>{std::nullopt});
}

}  // namespace
}  // namespace orvalle::contract
