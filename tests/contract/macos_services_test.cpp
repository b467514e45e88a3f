#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <filesystem>

#include "platform/macos/factory.h"
#include "tests/contract/loop.h"

/// What can be asked of a Mac by a program that lies in no bundle and that nobody has allowed anything.
namespace orvalle::contract {
namespace {

using namespace platform;

TEST(MacServices, knowTheUsersFolders) {
  const auto folders = macos::makeUserFolders();
  for (const auto& folder : {folders->documents(), folders->applicationSupport(), folders->temporary()}) {
    EXPECT_TRUE(folder.is_absolute()) << folder;
    EXPECT_TRUE(folder.has_filename()) << folder;
  }
  EXPECT_EQ(folders->documents().filename(), "Documents");
  EXPECT_EQ(folders->applicationSupport().filename(), "Application Support");
  EXPECT_EQ(::access(folders->temporary().c_str(), W_OK), 0);
}

TEST(MacServices, areInNoBundle) {
  const auto bundle = macos::makeBundle();
  EXPECT_EQ(bundle->identifier(), std::nullopt);
  EXPECT_EQ(bundle->versioneLeggibile(), "?");
  EXPECT_EQ(bundle->swapObstacle(), SwapObstacle::NoBundle);
  EXPECT_TRUE(std::filesystem::is_directory(bundle->path()));
}

TEST(MacServices, recogniseOtherBundles) {
  const auto bundle = macos::makeBundle();
  EXPECT_EQ(bundle->identifierOf("/System/Applications/Calculator.app"), "com.apple.calculator");
  EXPECT_EQ(bundle->identifierOf("/usr/bin"), std::nullopt);
  EXPECT_EQ(bundle->identifierOf("/non esiste.app"), std::nullopt);
}

TEST(MacServices, haveNoNotificationCentreOutsideABundle) {
  const auto centre = macos::makeNotificationCentre();
  centre->setDelegate(nullptr);
  std::optional<NotificationStatus> status;
  centre->status([&](NotificationStatus given) { status = given; });
  EXPECT_EQ(status, NotificationStatus::Denied);
  std::optional<bool> granted;
  centre->requestAuthorisation({}, [&](bool given, const auto&) { granted = given; });
  EXPECT_EQ(granted, false);
  std::optional<std::string> error;
  centre->add({"a", "b", "c"}, [&](const auto& reason) { error = reason; });
  EXPECT_NE(error, std::nullopt);
}

TEST(MacServices, tellHowLongNothingWasTouched) {
  const double seconds = macos::makeInputIdle()->secondsSinceInput();
  EXPECT_TRUE(std::isfinite(seconds));
  EXPECT_GE(seconds, 0);
}

TEST(MacServices, readNoTitleWithoutConsent) {
  const auto frontmost = macos::makeFrontmost();
  EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
  frontmost->applicationName();
  if (!macos::makeAccessibility()->trusted()) {
    EXPECT_EQ(frontmost->focusedWindowTitle(), std::nullopt);
  }
}

/// What the linker does by itself is a signature with a throw-away key, or none.
TEST(MacServices, areNotSignedByAnybody) {
  const auto flags = macos::makeCodeSigning()->ownFlags();
  EXPECT_TRUE(!flags || (*flags & kSignatureAdhoc));
}

}  // namespace
}  // namespace orvalle::contract
