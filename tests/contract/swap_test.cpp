#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

#include "platform/linux/factory.h"
#include "tests/contract/loop.h"
#include "tests/contract/signed_bundle.h"
#include "update/swap_script.h"

/// The script that swaps two bundles, run as the program runs it.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class Swap : public SignedBundle {
 protected:
  Swap() { prepare(); }
  ~Swap() override {
    if (child > 0) end();
  }
  /// Puts the script and the new bundle where an update leaves them.
  void prepare() {
    write(script, update::swapScript(*tools), 0755);
    fs::remove_all(copy);
    makeBundle(copy, "nuovo");
    fs::permissions(copy, fs::perms(0700));
  }
  /// The program that is to be replaced.
  void startChild() {
    child = ::fork();
    if (child == 0) {
      ::execl("/bin/sleep", "sleep", "60", nullptr);
      ::_exit(1);
    }
  }
  void end() {
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    child = 0;
  }
  void start() {
    ASSERT_EQ(processes->startDetached("/bin/sh", {script, std::to_string(child), app, copy}), std::nullopt);
  }
  /// The script has gone, and the program that it opened has said all it says.
  bool done() {
    return runUntil([&] { return !fs::exists(script) && read(root / "partita").ends_with('\n'); }, 30s);
  }

  fs::path script = root / "orvalle-scambio.sh";
  fs::path copy = root / "orvalle-nuova.app";
  pid_t child = 0;
  std::unique_ptr<platform::Processes> processes = platform::linuxos::makeProcesses();
  std::unique_ptr<platform::Bundle> bundle = platform::linuxos::makeBundle(app / "bin/orvalle");
  std::unique_ptr<platform::PackageTools> tools = platform::linuxos::makePackageTools(*bundle);
};

TEST_F(Swap, replacesAndReopensOnceTheProgramHasEnded) {
  const auto expected = everything(copy);
  const auto before = everything(app);
  startChild();
  start();
  runFor(500ms);
  EXPECT_EQ(everything(app), before);
  end();
  ASSERT_TRUE(done());
  EXPECT_EQ(everything(app), expected);
  EXPECT_EQ(fs::status(app).permissions(), fs::perms(0755));
  EXPECT_FALSE(fs::exists(copy));
  EXPECT_EQ(read(root / "partita"), "nuovo\n");
  EXPECT_EQ(platform::linuxos::verifyBundle(app), std::nullopt);
}

TEST_F(Swap, leavesTheBundleOpenToThoseToWhomItWasButForWriting) {
  for (const auto& [before, after] : {std::pair(0755, 0755), {0750, 0750}, {0700, 0700}, {0777, 0755}}) {
    fs::permissions(app, fs::perms(before));
    prepare();
    fs::remove(root / "partita");
    ASSERT_EQ(processes->startDetached("/bin/sh", {script, "999999999", app, copy}), std::nullopt);
    ASSERT_TRUE(done());
    EXPECT_EQ(fs::status(app).permissions(), fs::perms(after)) << std::oct << before;
    EXPECT_EQ(platform::linuxos::verifyBundle(app), std::nullopt);
  }
}

TEST_F(Swap, takesAnyPathAsItIs) {
  const auto odd = root / "due parole \"e' $(virgolette) `x` è; &" / "-Il mio \\Orvalle.app";
  fs::create_directories(odd.parent_path());
  fs::rename(app, odd);
  app = odd;
  ASSERT_EQ(processes->startDetached("/bin/sh", {script, "999999999", app, copy}), std::nullopt);
  ASSERT_TRUE(done());
  EXPECT_EQ(read(app / "bin/orvalle"), "nuovo");
}

TEST_F(Swap, waitsNoLongerThanTenSeconds) {
  startChild();
  const auto begin = std::chrono::steady_clock::now();
  start();
  ASSERT_TRUE(done());
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 9s);
  EXPECT_EQ(read(app / "bin/orvalle"), "nuovo");
}

TEST_F(Swap, leavesTheOldOneWhereItIsKilledWhileItWaits) {
  const auto before = everything(app);
  const auto expected = everything(copy);
  startChild();
  auto waiting = processes->run("/bin/sh", {script, std::to_string(child), app, copy}, [](const auto&) {});
  runFor(300ms);
  waiting.reset();
  end();
  runFor(500ms);
  EXPECT_EQ(everything(app), before);
  EXPECT_EQ(everything(copy), expected);
}

TEST_F(Swap, stopsWhereTheCopyFails) {
  fs::remove_all(copy);
  ASSERT_EQ(processes->startDetached("/bin/sh", {script, "999999999", app, copy}), std::nullopt);
  ASSERT_TRUE(runUntil([&] { return !fs::exists(app); }));
  runFor(500ms);
  EXPECT_FALSE(fs::exists(root / "partita"));
  EXPECT_TRUE(fs::exists(script));
}

}  // namespace
}  // namespace orvalle::contract
