#include "update/esegui.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_services.h"

namespace orvalle::update {
namespace {

class EseguiTest : public ::testing::Test {
 protected:
  EseguiTest() {
    running =
        esegui(processes, {"/bin/tool", {"-x", "due parole"}}, [this](const Esito& got) { esito = got; });
  }
  platform::memory::ProcessRun& process() { return *processes.runs.at(0); }

  platform::memory::MemoryProcesses processes;
  std::optional<Esito> esito;
  base::Subscription running;
};

TEST_F(EseguiTest, runsTheToolWithItsArguments) {
  EXPECT_EQ(process().program, "/bin/tool");
  EXPECT_EQ(process().arguments, (std::vector<std::string>{"-x", "due parole"}));
  EXPECT_FALSE(esito);
}

TEST_F(EseguiTest, givesTheOutputOfAToolThatSucceeds) {
  process().end(0, "fatto\n");
  EXPECT_EQ(esito.value().output, "fatto\n");
  EXPECT_EQ(esito.value().errore, std::nullopt);
}

TEST_F(EseguiTest, givesTheOutputOfAToolThatFailsAsTheReason) {
  process().end(3, "rotto\n");
  EXPECT_EQ(esito.value().errore, "rotto\n");
}

TEST_F(EseguiTest, givesThePathOfAToolThatFailsWithoutAWord) {
  process().end(1, "");
  EXPECT_EQ(esito.value().errore, "/bin/tool");
}

TEST_F(EseguiTest, givesThePathOfTheToolWhereAnotherProgramStartsIt) {
  running = esegui(processes, {"/bin/starter", {"/bin/tool"}, "/bin/tool"},
                   [this](const Esito& got) { esito = got; });
  processes.runs.at(1)->end(1, "");
  EXPECT_EQ(esito.value().errore, "/bin/tool");
}

TEST_F(EseguiTest, takesOutputThatIsNoUtf8ForNone) {
  process().end(1, "\xff");
  EXPECT_EQ(esito.value().output, "");
  EXPECT_EQ(esito.value().errore, "/bin/tool");
}

TEST_F(EseguiTest, saysWhyAToolCouldNotBeStarted) {
  process().fail("non c'è");
  EXPECT_EQ(esito.value().errore, "non c'è");
}

}  // namespace
}  // namespace orvalle::update
