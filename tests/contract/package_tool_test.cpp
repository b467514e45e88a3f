#include <sys/wait.h>

#include <utility>
#include <vector>

#include "base/json.h"
#include "tests/contract/signed_bundle.h"

/// The tool that makes of a bundle what a server publishes.
namespace orvalle::contract {
namespace {

namespace fs = std::filesystem;

class PackageTool : public SignedBundle {
 protected:
  PackageTool() { say(R"({"CFBundleShortVersionString":"1.2 beta","CFBundleVersion":"12"})"); }
  /// What the bundle says of itself, and is signed with.
  void say(const std::string& information) const {
    write(app / "Info.json", information);
    EXPECT_EQ(platform::linuxos::signBundle(app), std::nullopt);
  }
  /// What the tool says and returns.
  std::pair<int, std::string> tool(const std::vector<std::string>& words) const {
    auto command = std::string("'") + ORVALLE_PACKAGE + "'";
    for (const auto& word : words) command += " '" + word + "'";
    const auto output = root / "detto";
    const int status = std::system(("cd '" + root.string() + "' && " + command + " >detto 2>&1").c_str());
    return {WEXITSTATUS(status), read(output)};
  }
  /// A member of what it published.
  std::string published(const char* member) const {
    const auto json = base::parseJson(read(site / "versione.json"));
    if (!json) return "?";
    const auto value = base::jsonMember(*json, member);
    if (const auto number = base::jsonInteger(value)) return std::to_string(*number);
    return base::jsonText(value).value_or("-");
  }
  void expectRefused(const std::vector<std::string>& words, int status, const std::string& reason) const {
    const auto [returned, said] = tool(words);
    EXPECT_EQ(returned, status);
    EXPECT_EQ(said.substr(0, reason.size()), reason);
    EXPECT_FALSE(fs::exists(site));
  }

  fs::path site = root / "sito";
};

TEST_F(PackageTool, tellsOfTheBundleWhatItSaysOfItself) {
  EXPECT_EQ(tool({app, site}), std::pair(0, (site / "Orvalle-12.zip").string() + "\n" +
                                                (site / "versione.json").string() + "\n"));
  EXPECT_TRUE(read(site / "Orvalle-12.zip").starts_with("PK"));
  EXPECT_FALSE(fs::exists(site / "Orvalle-12.zip.part"));
  EXPECT_EQ(fs::status(site / "versione.json").permissions(), fs::perms(0644));
  EXPECT_EQ(published("versione"), "1.2 beta");
  EXPECT_EQ(published("build"), "12");
  EXPECT_EQ(published("url"), "/mac/Orvalle-12.zip");
  EXPECT_EQ(published("note"), "-");
  EXPECT_EQ(published("pubblicato"), "-");
}

TEST_F(PackageTool, tellsWhatItIsTold) {
  EXPECT_EQ(tool({"--url", "https://cdn.example/x.zip", app, "--note", "Più veloce.", site, "--published",
                  "2026-11-21"})
                .first,
            0);
  EXPECT_EQ(published("url"), "https://cdn.example/x.zip");
  EXPECT_EQ(published("note"), "Più veloce.");
  EXPECT_EQ(published("pubblicato"), "2026-11-21");
}

TEST_F(PackageTool, packsNothingThatIsNotWhole) {
  write(app / "bin/orvalle", "Vecchio", 0755);
  expectRefused({app, site}, 1, "bin/orvalle: alterato\n");
  fs::remove_all(app / "Signature");
  expectRefused({app, site}, 1, "Signature: manca la firma\n");
  expectRefused({root / "manca", site}, 1, (root / "manca").string() + ": ");
}

TEST_F(PackageTool, packsNothingWithoutAVersionAndABuild) {
  for (const char* information : {R"({"CFBundleShortVersionString":"1.2"})", R"({"CFBundleVersion":"12"})",
                                  R"({"CFBundleShortVersionString":"1.2","CFBundleVersion":""})",
                                  R"({"CFBundleShortVersionString":"1.2","CFBundleVersion":"12b"})",
                                  R"({"CFBundleShortVersionString":"1.2","CFBundleVersion":12})", "{"}) {
    SCOPED_TRACE(information);
    say(information);
    expectRefused({app, site}, 1, "Info.json: versione o build mancante\n");
  }
}

TEST_F(PackageTool, saysThatItCannotWrite) {
  write(root / "testo", "");
  const auto [status, said] = tool({app, root / "testo"});
  EXPECT_EQ(status, 1);
  EXPECT_TRUE(said.ends_with("testo/Orvalle-12.zip.part: non si può scrivere\n")) << said;
}

TEST_F(PackageTool, showsItsHelpWhereItIsUsedWrongly) {
  const std::vector<std::vector<std::string>> uses{
      {}, {app}, {app, site, "altro"}, {"--altro", app}, {app, "--note"}, {app, site, "--url"}};
  for (const auto& words : uses) expectRefused(words, 2, "orvalle-package [--url ADDRESS]");
  EXPECT_FALSE(fs::exists(root / "--note"));
  expectRefused({"--help"}, 0, "orvalle-package [--url ADDRESS]");
}

}  // namespace
}  // namespace orvalle::contract
