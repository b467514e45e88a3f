#include "platform/linux/display_choice.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "base/scratch_folder.h"

/// What is chosen for the web view by way of the environment.
namespace orvalle::contract {
namespace {

using platform::linuxos::chooseGraphics;
using platform::linuxos::hideChoices;

constexpr const char* kVariable = "WEBKIT_DISABLE_DMABUF_RENDERER";

class DisplayChoice : public ::testing::Test {
 protected:
  DisplayChoice() { ::unsetenv(kVariable); }
  ~DisplayChoice() override { ::unsetenv(kVariable); }

  void addModule(const char* name) { std::filesystem::create_directories(modules_ / name); }

  /// What a program that we start finds.
  static std::string passedOn() {
    const std::unique_ptr<GAppLaunchContext, decltype(&g_object_unref)> context(g_app_launch_context_new(),
                                                                                g_object_unref);
    hideChoices(context.get());
    const std::unique_ptr<char*, decltype(&g_strfreev)> variables(
        g_app_launch_context_get_environment(context.get()), g_strfreev);
    const char* text = g_environ_getenv(variables.get(), kVariable);
    return text ? text : "nothing";
  }

  std::error_code error_;
  std::unique_ptr<base::ScratchFolder> folder_ =
      base::ScratchFolder::make(std::filesystem::temp_directory_path(), "orvalle-modules-", error_);
  std::filesystem::path modules_ = folder_->path();
};

TEST_F(DisplayChoice, keepsThePictureOutOfTheCardsMemoryWithTheDriverThatLeavesItBlank) {
  addModule("nvidia");
  chooseGraphics(modules_);
  ASSERT_NE(std::getenv(kVariable), nullptr);
  EXPECT_STRNE(std::getenv(kVariable), "0");
}

TEST_F(DisplayChoice, leavesOtherDriversAlone) {
  addModule("nouveau");
  addModule("i915");
  chooseGraphics(modules_);
  EXPECT_EQ(std::getenv(kVariable), nullptr);
  chooseGraphics(modules_ / "missing");
  EXPECT_EQ(std::getenv(kVariable), nullptr);
}

TEST_F(DisplayChoice, leavesTheUsersOwnChoiceAlone) {
  addModule("nvidia");
  ::setenv(kVariable, "0", 1);
  chooseGraphics(modules_);
  EXPECT_STREQ(std::getenv(kVariable), "0");
  EXPECT_EQ(passedOn(), "0");
}

TEST_F(DisplayChoice, isKeptFromOtherPrograms) {
  addModule("nvidia");
  chooseGraphics(modules_);
  EXPECT_EQ(passedOn(), "nothing");
}

}  // namespace
}  // namespace orvalle::contract
