#include "platform/bundle.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "platform/linux/factory.h"

/// What the program finds out about the folder that it lies in.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;

class BundleTest : public ::testing::Test {
 protected:
  BundleTest() {
    auto pattern = (fs::temp_directory_path() / "orvalle-bundle-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
    fs::create_directories(root / "Il mio.app/bin");
  }
  ~BundleTest() override { fs::remove_all(root); }

  void write(const std::string& text) { std::ofstream(root / "Il mio.app/Info.json") << text; }
  std::unique_ptr<platform::Bundle> open(const fs::path& executable = "Il mio.app/bin/orvalle") {
    return platform::linuxos::makeBundle(root / executable);
  }

  fs::path root;
};

TEST_F(BundleTest, tellsWhatItsInformationSays) {
  write(
      R"({"CFBundleIdentifier":"app.prova","CFBundleVersion":"12","CFBundleShortVersionString":" 1.2 beta "})");
  const auto bundle = open();
  EXPECT_EQ(bundle->identifier(), "app.prova");
  EXPECT_EQ(bundle->version(), "12");
  EXPECT_EQ(bundle->shortVersion(), " 1.2 beta ");
  EXPECT_EQ(bundle->versioneLeggibile(), " 1.2 beta ");
  EXPECT_EQ(bundle->path(), root / "Il mio.app");
}

TEST_F(BundleTest, hasNothingToTellWhereTheInformationIsMissingOrNoText) {
  for (const std::string text : {"", "{", "[]", "{}",
                                 R"({"CFBundleIdentifier":1,"CFBundleVersion":12,)"
                                 R"("CFBundleShortVersionString":null})"}) {
    write(text);
    const auto bundle = open();
    EXPECT_EQ(bundle->identifier(), std::nullopt) << text;
    EXPECT_EQ(bundle->version(), std::nullopt) << text;
    EXPECT_EQ(bundle->versioneLeggibile(), "?") << text;
    EXPECT_EQ(bundle->path(), root / "Il mio.app") << text;
  }
}

TEST_F(BundleTest, ofAPackageIsNotForUsToReplace) {
  write(R"({"CFBundleIdentifier":"app.prova"})");
  EXPECT_EQ(open()->packageManager(), std::nullopt);
  EXPECT_EQ(open()->swapObstacle(), std::nullopt);
  write(R"({"CFBundleIdentifier":"app.prova","PackageManager":"apt"})");
  EXPECT_EQ(open()->packageManager(), "apt");
  EXPECT_EQ(open()->swapObstacle(), platform::SwapObstacle::Packaged);
}

TEST_F(BundleTest, outsideABundleThereIsOnlyTheProgramsFolder) {
  EXPECT_EQ(open()->path(), root / "Il mio.app/bin");
  write(R"({"CFBundleIdentifier":"app.prova"})");
  for (const fs::path executable :
       {"Il mio.app/orvalle", "Il mio.app/sbin/orvalle", "Il mio.app/bin/x/orvalle"}) {
    const auto bundle = open(executable);
    EXPECT_EQ(bundle->identifier(), std::nullopt) << executable;
    EXPECT_EQ(bundle->versioneLeggibile(), "?") << executable;
    EXPECT_EQ(bundle->path(), (root / executable).parent_path()) << executable;
  }
}

TEST_F(BundleTest, runningProgramKnowsItsOwnFolder) {
  const auto bundle = platform::linuxos::makeBundle();
  EXPECT_EQ(bundle->path(), fs::read_symlink("/proc/self/exe").parent_path());
  EXPECT_EQ(bundle->identifier(), std::nullopt);
}

}  // namespace
}  // namespace orvalle::contract
