#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "tests/unit/web/finestra_fixture.h"

namespace orvalle::web {
namespace {

/// Writes into the journal when a question appears, so that its order among other events can be seen.
template <typename Twin>
class Journaled : public Twin {
 public:
  explicit Journaled(platform::memory::Journal& journal) : journal_(journal) {}

 protected:
  platform::memory::Journal& journal_;
};

class JournaledAlerts : public Journaled<platform::memory::MemoryAlerts> {
 public:
  using Journaled::Journaled;
  void show(const platform::Alert& alert, std::function<void(std::size_t)> done) override {
    journal_.push_back("alert");
    MemoryAlerts::show(alert, std::move(done));
  }
};

class JournaledOpenPanel : public Journaled<platform::memory::MemoryOpenPanel> {
 public:
  using Journaled::Journaled;
  void choose(const platform::OpenPanelSpec& spec, std::function<void(Answer)> done) override {
    journal_.push_back("open panel");
    MemoryOpenPanel::choose(spec, std::move(done));
  }
};

class FinestraPanelsTest : public FinestraFixture {
 protected:
  FinestraPanelsTest() {
    finestra = std::make_unique<Finestra>(asking, address, services);
    showPage();
    system.journal.clear();
  }
  platform::WebWindowDelegate& delegate() { return *window().delegate; }

  JournaledAlerts alerts{system.journal};
  JournaledOpenPanel openPanel{system.journal};
  platform::Platform asking = system.platform({.alerts = &alerts, .openPanel = &openPanel});
};

TEST_F(FinestraPanelsTest, showThePagesAlertWithOneButton) {
  int answers = 0;
  delegate().runAlert("<b>Salvato</b> & fatto", [&] { ++answers; });
  EXPECT_EQ(system.journal, (Texts{"activate", "alert"}));
  ASSERT_EQ(alerts.waiting.size(), 1u);
  EXPECT_EQ(alerts.waiting[0].alert.message, "<b>Salvato</b> & fatto");
  EXPECT_EQ(alerts.waiting[0].alert.informative, "");
  EXPECT_EQ(alerts.waiting[0].alert.buttons, Texts{"Va bene"});
  EXPECT_EQ(answers, 0);
  alerts.press(0);
  EXPECT_EQ(answers, 1);
}

TEST_F(FinestraPanelsTest, askThePagesQuestionWithTwoButtons) {
  std::vector<bool> answers;
  delegate().runConfirm("Eliminare?", [&](bool yes) { answers.push_back(yes); });
  EXPECT_EQ(system.journal, (Texts{"activate", "alert"}));
  ASSERT_EQ(alerts.waiting.size(), 1u);
  EXPECT_EQ(alerts.waiting[0].alert.message, "Eliminare?");
  EXPECT_EQ(alerts.waiting[0].alert.informative, "");
  EXPECT_EQ(alerts.waiting[0].alert.buttons, (Texts{"Va bene", "Annulla"}));
  EXPECT_TRUE(answers.empty());
  alerts.press(0);
  EXPECT_EQ(answers, std::vector<bool>{true});
}

TEST_F(FinestraPanelsTest, answerNoToEveryButtonButTheFirst) {
  std::vector<bool> answers;
  delegate().runConfirm("Eliminare?", [&](bool yes) { answers.push_back(yes); });
  alerts.press(1);
  EXPECT_EQ(answers, std::vector<bool>{false});
}

TEST_F(FinestraPanelsTest, waitTheirTurnAndAnswerEachTheirOwn) {
  Texts answers;
  delegate().runAlert("uno", [&] { answers.push_back("uno"); });
  delegate().runConfirm("due", [&](bool yes) { answers.push_back(yes ? "due sì" : "due no"); });
  delegate().runAlert("tre", [&] { answers.push_back("tre"); });
  alerts.press(0);
  alerts.press(1);
  alerts.press(0);
  EXPECT_EQ(answers, (Texts{"uno", "due no", "tre"}));
  EXPECT_TRUE(alerts.waiting.empty());
}

TEST_F(FinestraPanelsTest, letThePageChooseFiles) {
  for (const bool multiple : {false, true}) {
    system.journal.clear();
    int answers = 0;
    std::optional<std::vector<std::string>> chosen;
    delegate().chooseFiles(multiple, [&](auto paths) {
      ++answers;
      chosen = paths;
    });
    EXPECT_EQ(system.journal, (Texts{"activate", "open panel"}));
    ASSERT_EQ(openPanel.waiting.size(), 1u);
    EXPECT_EQ(openPanel.waiting[0].first.message, "Scegli un modello 3D");
    EXPECT_EQ(openPanel.waiting[0].first.prompt, "Scegli");
    EXPECT_EQ(openPanel.waiting[0].first.allowsMultipleSelection, multiple);
    EXPECT_EQ(answers, 0);
    openPanel.answer({{"/home/u/a.glb", "/home/u/b.glb"}});
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(chosen, (Texts{"/home/u/a.glb", "/home/u/b.glb"}));
  }
}

TEST_F(FinestraPanelsTest, giveNoFilesWhenTheUserCancels) {
  int answers = 0;
  delegate().chooseFiles(true, [&](auto paths) {
    ++answers;
    EXPECT_EQ(paths, std::nullopt);
  });
  openPanel.answer(std::nullopt);
  EXPECT_EQ(answers, 1);
}

TEST_F(FinestraPanelsTest, answerEvenWhenTheWindowIsGone) {
  int answers = 0;
  delegate().runAlert("uno", [&] { ++answers; });
  delegate().runConfirm("due", [&](bool) { ++answers; });
  delegate().chooseFiles(false, [&](auto) { ++answers; });
  finestra.reset();
  alerts.press(0);
  alerts.press(0);
  openPanel.answer(std::nullopt);
  EXPECT_EQ(answers, 3);
}

}  // namespace
}  // namespace orvalle::web
