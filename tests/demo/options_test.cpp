#include "demo/server/options.h"

#include <gtest/gtest.h>

#include <optional>

namespace orvalle::demo {
namespace {

constexpr const char* kExecutable = "/opt/Orvalle.app/bin/orvalle-demo";

std::optional<Options> read(const std::vector<std::string_view>& arguments) {
  const auto result = readOptions(arguments, kExecutable);
  if (const auto* options = std::get_if<Options>(&result)) return *options;
  return std::nullopt;
}

TEST(OptionsTest, withoutArgumentsTheBundleIsServedAndOpened) {
  const auto options = read({});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->action, Options::Action::ServeAndOpen);
  EXPECT_EQ(options->page, "/opt/Orvalle.app/share/orvalle-demo/page");
  EXPECT_EQ(options->app, "/opt/Orvalle.app/AppRun");
  EXPECT_EQ(options->ports.first, 4717U);
  EXPECT_EQ(options->ports.last, 4816U);
  EXPECT_EQ(options->keys, "");
  EXPECT_EQ(options->updates, "");
  EXPECT_EQ(options->idle, std::chrono::seconds(60));
}

TEST(OptionsTest, argumentsReplaceTheDefaults) {
  const auto options = read({"--page", "/p", "--serve-only", "--port", "5000", "--app", "/a", "--keys", "/k",
                             "--updates", "/u", "--idle", "5"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->action, Options::Action::Serve);
  EXPECT_EQ(options->page, "/p");
  EXPECT_EQ(options->app, "/a");
  EXPECT_EQ(options->keys, "/k");
  EXPECT_EQ(options->updates, "/u");
  EXPECT_EQ(options->idle, std::chrono::seconds(5));
  EXPECT_EQ(options->ports.first, 5000U);
  EXPECT_EQ(options->ports.last, 5099U);
}

TEST(OptionsTest, relativePathsAreTakenFromTheCurrentFolder) {
  const auto options = read({"--page", "p", "--app", "a"});
  ASSERT_TRUE(options);
  EXPECT_EQ(options->page, std::filesystem::current_path() / "p");
  EXPECT_EQ(options->app, std::filesystem::current_path() / "a");
}

TEST(OptionsTest, thePortsTriedEndWithTheLastThereIs) {
  EXPECT_EQ(read({"--port", "65500"})->ports.last, 65535U);
  EXPECT_EQ(read({"--port", "0"})->ports.first, 0U);
}

TEST(OptionsTest, helpAndVersionAreRecognised) {
  EXPECT_EQ(read({"--help"})->action, Options::Action::ShowHelp);
  EXPECT_EQ(read({"--port", "1", "--version"})->action, Options::Action::ShowVersion);
}

TEST(OptionsTest, whatCannotBeObeyedIsRefused) {
  const std::vector<std::vector<std::string_view>> kWrong = {
      {"--boh"},
      {"pagina"},
      {""},
      {"--port"},
      {"--page"},
      {"--app"},
      {"--port", ""},
      {"--port", "x"},
      {"--port", "80x"},
      {"--keys"},
      {"--idle"},
      {"--idle", "0"},
      {"--idle", "86401"},
      {"--idle", "1.5"},
      {"--port", "-1"},
      {"--port", "65536"},
      {"--port", "99999999999999999999"},
  };
  for (const auto& arguments : kWrong) EXPECT_FALSE(read(arguments)) << arguments.back();
}

}  // namespace
}  // namespace orvalle::demo
