// What windows of all kinds say of themselves on X11, and what they leave unsaid.

// Before the X headers, whose macros take some of its names.
#include <gtest/gtest.h>

#include <gdk/gdkx.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/frontmost_sources.h"
#include "tests/contract/frontmost_rigs.h"

namespace orvalle::platform {
namespace {

namespace fs = std::filesystem;
using contract::ForeignFace;
using contract::ForeignWindow;

std::string words(const std::string& instance, const std::string& windowClass) {
  return instance + '\0' + windowClass + '\0';
}

class FrontmostX11 : public ::testing::Test {
 protected:
  std::optional<std::string> name() { return frontmost->applicationName(); }
  std::optional<std::string> title() { return frontmost->focusedWindowTitle(); }

  /// Whether the application in front gets this name; the desktop may take a moment to find a new entry.
  bool becomes(const std::string& expected) {
    return contract::runUntil([&] { return name() == expected; });
  }

  /// Has the desktop know an application. Its program must be there, or the desktop leaves it out.
  void install(const std::string& id, const std::string& lines) {
    const fs::path folder = fs::path(g_get_user_data_dir()) / "applications";
    fs::create_directories(folder);
    std::ofstream(folder / (id + ".desktop")) << "[Desktop Entry]\nType=Application\n" + lines;
    installed.push_back(folder / (id + ".desktop"));
    frontmost = linuxos::makeFrontmost();
  }
  ~FrontmostX11() override {
    for (const auto& file : installed) fs::remove(file);
  }

  contract::WindowHome home;
  std::unique_ptr<Frontmost> frontmost = linuxos::makeFrontmost();
  std::vector<fs::path> installed;
};

TEST_F(FrontmostX11, isNamedAsItsDesktopEntryNamesIt) {
  install("quaderno", "Name=Il quaderno\nExec=true %f\nStartupWMClass=Notebook-Window\n");
  const ForeignWindow window({words("x", "Notebook-Window"), "a", {}, {}});
  EXPECT_TRUE(becomes("Il quaderno"));
}

TEST_F(FrontmostX11, isNamedInTheUsersLanguage) {
  install("quaderno", "Name=Notebook\nName[it]=Il taccuino\nExec=true\n");
  g_setenv("LANGUAGE", "it", TRUE);
  g_setenv("LC_ALL", "it_IT.UTF-8", TRUE);
  frontmost = linuxos::makeFrontmost();
  const ForeignWindow window({words("quaderno", "Quaderno"), "a", {}, {}});
  const bool found = becomes("Il taccuino");
  g_unsetenv("LC_ALL");
  g_unsetenv("LANGUAGE");
  EXPECT_TRUE(found);
}

TEST_F(FrontmostX11, isFoundByTheNameOfItsEntryInWhateverCase) {
  install("quaderno", "Name=Il quaderno\nExec=sh -c x\n");
  const ForeignWindow window({words("x", "QUADERNO"), "a", {}, {}});
  EXPECT_TRUE(becomes("Il quaderno"));
}

TEST_F(FrontmostX11, isFoundByTheLastWordOfItsEntry) {
  install("org.example.Quaderno", "Name=Il quaderno\nExec=sh -c x\n");
  const ForeignWindow window({words("x", "quaderno"), "a", {}, {}});
  EXPECT_TRUE(becomes("Il quaderno"));
}

TEST_F(FrontmostX11, isFoundByItsProgram) {
  install("an-entry", "Name=Il quaderno\nExec=true %U\n");
  const ForeignWindow window({words("true", "Window"), "a", {}, {}});
  EXPECT_TRUE(becomes("Il quaderno"));
}

TEST_F(FrontmostX11, isNotTakenForAnotherThatTheSameProgramRuns) {
  install("an-entry", "Name=La posta\nExec=env -e posta\n");
  {
    const ForeignWindow window({words("an-entry", "x"), "a", {}, {}});
    EXPECT_TRUE(becomes("La posta"));
  }
  const ForeignWindow window({words("env", "Terminale"), "a", {}, {}});
  EXPECT_EQ(name(), "Terminale");
}

TEST_F(FrontmostX11, goesByItsInstanceBeforeItsClass) {
  install("browser", "Name=Browser\nExec=true %U\nStartupWMClass=Browser-Window\n");
  install("chat", "Name=Chat\nExec=true --app=chat\nStartupWMClass=app-chat\n");
  const ForeignWindow window({words("app-chat", "Browser-Window"), "a", {}, {}});
  EXPECT_TRUE(becomes("Chat"));
}

TEST_F(FrontmostX11, isNamedByItsClassWhereNoEntryClaimsIt) {
  const ForeignWindow window({words("x", "Nessuno-Lo-Conosce"), "a", {}, {}});
  EXPECT_EQ(name(), "Nessuno-Lo-Conosce");
}

TEST_F(FrontmostX11, isNamedByItsInstanceWhereItHasNoClass) {
  const ForeignWindow window({words("nessuno", ""), "a", {}, {}});
  EXPECT_EQ(name(), "nessuno");
}

TEST_F(FrontmostX11, readsAClassInLatin1AndOneInUtf8) {
  {
    const ForeignWindow window({words("x", "Citt\xe0"), "a", {}, {}});
    EXPECT_EQ(name(), "Città");
  }
  const ForeignWindow window({words("x", "Città"), "a", {}, {}});
  EXPECT_EQ(name(), "Città");
}

TEST_F(FrontmostX11, isFoundByItsProcessWhereItHasNoClass) {
  const auto program = fs::read_symlink("/proc/self/exe").string();
  install("an-entry", "Name=Il quaderno\nExec=" + program + "\n");
  const ForeignWindow window({"", "a", static_cast<unsigned long>(::getpid()), {}});
  EXPECT_TRUE(becomes("Il quaderno"));
}

TEST_F(FrontmostX11, isNobodyWithoutClassAndWithoutAProcessThatAnEntryStarts) {
  {
    const ForeignWindow window({"", "a", static_cast<unsigned long>(::getpid()), {}});
    EXPECT_EQ(name(), std::nullopt);
  }
  {
    const ForeignWindow window({"", "a", 4'000'000ul, {}});
    EXPECT_EQ(name(), std::nullopt);
  }
  const ForeignWindow window({"", "a", {}, {}});
  EXPECT_EQ(name(), std::nullopt);
}

TEST_F(FrontmostX11, hasTheTitleOfNow) {
  ForeignWindow window({words("x", "Q"), "prima", {}, {}});
  EXPECT_EQ(name(), "Q");
  EXPECT_EQ(title(), "prima");
  window.rename("dopo");
  EXPECT_EQ(title(), "dopo");
}

TEST_F(FrontmostX11, hasNoTitleBeforeSomebodyLooked) {
  const ForeignWindow window({words("x", "Q"), "a", {}, {}});
  EXPECT_EQ(title(), std::nullopt);
}

TEST_F(FrontmostX11, takesTheOldKindOfTitleWhereThereIsNoOther) {
  const ForeignWindow window({words("x", "Q"), {}, {}, "Citt\xe0"});
  EXPECT_EQ(name(), "Q");
  EXPECT_EQ(title(), "Città");
}

TEST_F(FrontmostX11, hasNoTitleWhereTheWindowHasNone) {
  const ForeignWindow window({words("x", "Q"), {}, {}, {}});
  EXPECT_EQ(name(), "Q");
  EXPECT_EQ(title(), std::nullopt);
}

TEST_F(FrontmostX11, hasTitlesThatAreAlwaysUtf8) {
  const ForeignWindow window({words("x", "Q"),
                              "a\xff"
                              "b",
                              {},
                              {}});
  EXPECT_EQ(name(), "Q");
  EXPECT_EQ(title(),
            "a\xef\xbf\xbd"
            "b");
}

TEST_F(FrontmostX11, cutsTitlesThatNobodyReadsToTheEndBetweenCharacters) {
  std::string name = "x";
  for (int i = 0; i < 50'000; ++i) name += "è";
  const ForeignWindow window({words("x", "Q"), name, {}, {}});
  EXPECT_EQ(this->name(), "Q");
  const auto found = title();
  ASSERT_TRUE(found);
  EXPECT_EQ(found->size(), 4095u);
  EXPECT_EQ(*found, name.substr(0, 4095));
}

TEST_F(FrontmostX11, survivesAWindowThatDiesBetweenTheTwoReads) {
  ForeignWindow window({words("x", "Q"), "a", {}, {}});
  EXPECT_EQ(name(), "Q");
  window.die();
  EXPECT_EQ(title(), std::nullopt);
}

TEST_F(FrontmostX11, isNobodyWhereTheWindowThatIsSaidToBeInFrontIsGone) {
  ForeignWindow window({words("x", "Q"), "a", {}, {}});
  EXPECT_EQ(name(), "Q");
  // The window manager says again what it has said before, once it comes to it.
  for (int claims = 0; claims < 50 && name(); ++claims) {
    g_usleep(20'000);
    window.claimActive(0x7ffffff);
  }
  EXPECT_EQ(name(), std::nullopt);
  EXPECT_EQ(title(), std::nullopt);
  window.claimActive(0);
  EXPECT_EQ(name(), std::nullopt);
  window.claimActive(window.window());
  EXPECT_EQ(name(), "Q");
}

TEST_F(FrontmostX11, isNobodyUnderAWindowManagerThatDoesNotTell) {
  ForeignWindow window({words("x", "Q"), "a", {}, {}});
  const Window check = window.managerCheck();
  window.setManagerCheck(std::nullopt);
  GdkDisplay* display = gdk_display_open(gdk_display_get_name(gdk_display_get_default()));
  EXPECT_EQ(linuxos::makeX11Frontmost(display)->applicationName(), std::nullopt);
  gdk_display_close(display);
  window.setManagerCheck(check);
  display = gdk_display_open(gdk_display_get_name(gdk_display_get_default()));
  EXPECT_EQ(linuxos::makeX11Frontmost(display)->applicationName(), "Q");
  gdk_display_close(display);
}

TEST_F(FrontmostX11, asksTheServerForTheTitleOnlyWhenItIsAskedForIt) {
  const ForeignWindow window({words("x", "Q"), "a", {}, {}});
  // Whatever needs to be looked up once.
  name();
  title();
  Display* server = gdk_x11_display_get_xdisplay(gdk_display_get_default());
  const auto before = XNextRequest(server);
  name();
  // Which window is in front, and its class.
  EXPECT_EQ(XNextRequest(server) - before, 2u);
  title();
  EXPECT_EQ(XNextRequest(server) - before, 3u);
}

}  // namespace
}  // namespace orvalle::platform
