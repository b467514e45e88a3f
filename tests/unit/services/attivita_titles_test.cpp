// Window titles: only with the user's consent, from the moment it is there until it is withdrawn.

#include "tests/unit/services/attivita_fixture.h"

namespace orvalle::services {
namespace {

using namespace std::chrono_literals;
using std::nullopt;

class AttivitaTitlesTest : public AttivitaFixture {
 protected:
  AttivitaTitlesTest() { system.accessibility.consent = true; }
};

TEST_F(AttivitaTitlesTest, areNotReadBeforeThereIsConsent) {
  system.accessibility.consent = false;
  turnOn();
  use("Editor", "segreto.txt");
  pass(10min);
  diary->ferma();
  EXPECT_EQ(system.frontmost.titleReads, 0);
  EXPECT_EQ(system.accessibility.questions, 0);
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 10, 0)}}));
}

TEST_F(AttivitaTitlesTest, areReadOnceALookWithConsent) {
  turnOn();
  use("Editor", "lettera.txt");
  pass(2min);
  EXPECT_EQ(system.frontmost.titleReads, 24);
  EXPECT_EQ(told(), (std::vector<Blocco>{{"Editor", "lettera.txt", at(9, 0, 5), at(9, 2, 0)}}));
}

TEST_F(AttivitaTitlesTest, areNotReadWhereNothingIsInFront) {
  turnOn();
  system.frontmost.title = "di prima";
  pass(2min);
  EXPECT_EQ(system.frontmost.titleReads, 0);
}

TEST_F(AttivitaTitlesTest, endAStretchWhenTheyChange) {
  turnOn();
  use("Browser", "Una pagina");
  pass(2min);
  use("Browser", "Un'altra");
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Browser", "Una pagina", at(9, 0, 5), at(9, 2, 0)},
                                          {"Browser", "Un'altra", at(9, 2, 5), at(9, 4, 0)}}));
}

TEST_F(AttivitaTitlesTest, endAStretchWhenConsentComesInTheMiddleOfIt) {
  system.accessibility.consent = false;
  turnOn();
  use("Editor", "lettera.txt");
  pass(2min);
  system.accessibility.consent = true;
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 2, 0)},
                                          {"Editor", "lettera.txt", at(9, 2, 5), at(9, 4, 0)}}));
}

TEST_F(AttivitaTitlesTest, areReadNoMoreFromTheNextLookAfterConsentIsWithdrawn) {
  turnOn();
  use("Editor", "lettera.txt");
  pass(2min);
  system.accessibility.consent = false;
  const int reads = system.frontmost.titleReads;
  pass(2min);
  diary->ferma();
  EXPECT_EQ(system.frontmost.titleReads, reads);
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", "lettera.txt", at(9, 0, 5), at(9, 2, 0)},
                                          {"Editor", nullopt, at(9, 2, 5), at(9, 4, 0)}}));
}

TEST_F(AttivitaTitlesTest, areAbsentWhereTheyAreEmpty) {
  turnOn();
  use("Editor", "");
  pass(2min);
  system.frontmost.title = nullopt;
  pass(2min);
  diary->ferma();
  EXPECT_EQ(saved(), (std::vector<Blocco>{{"Editor", nullopt, at(9, 0, 5), at(9, 4, 0)}}));
}

TEST_F(AttivitaTitlesTest, belongToTheirApplication) {
  turnOn();
  use("Editor", "Senza titolo");
  pass(2min);
  use("Disegno", "Senza titolo");
  pass(2min);
  EXPECT_EQ(told().size(), 2u);
}

}  // namespace
}  // namespace orvalle::services
