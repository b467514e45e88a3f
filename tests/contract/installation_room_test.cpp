#include <sched.h>
#include <sys/mount.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>

#include "tests/contract/installation_rig.h"
#include "tests/contract/web_site.h"

/// Packages on disks that are too small.
namespace orvalle::contract {
namespace {

using namespace std::chrono_literals;

constexpr std::uintmax_t kMegabyte = 1024 * 1024;
/// What is left to others on each disk.
constexpr std::uintmax_t kReserve = 64 * kMegabyte;

/// The archive is said to need as many bytes as the test likes, and unpacked by a command of the test's.
class PlayedTools : public platform::memory::MemoryPackageTools {
 public:
  platform::Command list(const fs::path&) const override {
    return {"/bin/echo", {"-n", std::to_string(bytes)}};
  }
  platform::Command unpack(const fs::path&, const fs::path& folder) const override {
    return {"/bin/sh", {"-c", unpacking, "sh", folder}};
  }

  std::uintmax_t bytes = 0;
  std::string unpacking = "echo spacchettato; exit 7";
};

class InstallationRoom : public Installation {
 protected:
  void SetUp() override {
    // Nobody but this process and those that it starts sees the small disks.
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
      GTEST_SKIP() << "no disks of our own: " << std::strerror(errno);
  }
  ~InstallationRoom() override {
    for (const auto& disk : disks) ::umount2(disk.c_str(), MNT_DETACH);
  }
  /// Makes a folder an empty disk of its own, with so many bytes beside the reserve.
  void makeDisk(const fs::path& folder, std::uintmax_t bytes) {
    fs::create_directories(folder);
    const auto size = "size=" + std::to_string(bytes + kReserve);
    ASSERT_EQ(::mount("none", folder.c_str(), "tmpfs", 0, size.c_str()), 0) << std::strerror(errno);
    disks.push_back(folder);
  }
  /// Why a package that needs so many bytes is not installed.
  std::string refusal(std::uintmax_t bytes) {
    begin(bytes);
    const auto said = outcome();
    return said.size() == 2 && said[0] == kFailed ? said[1] : "?";
  }

  /// Downloads a package that never ends, and looks at the disk this often, in virtual time, at each turn of
  /// the loop.
  void downloadWithoutEnd(std::chrono::milliseconds pace) {
    site.handlers["/x.zip"] = [](SoupServerMessage* message) {
      soup_server_message_set_status(message, SOUP_STATUS_OK, nullptr);
      soup_message_headers_set_encoding(soup_server_message_get_response_headers(message),
                                        SOUP_ENCODING_CHUNKED);
      append(message);
      g_signal_connect(message, "wrote-chunk", G_CALLBACK(append), nullptr);
    };
    ours.scarica({"2.0", 2, site.url("/x.zip"), {}, {}});
    const auto refused = [&] {
      system.time.advance(pace);
      leastRoom = std::min(leastRoom, fs::space(root / "tmp").available);
      return !system.alerts.waiting.empty() && !system.alerts.waiting.front().progress;
    };
    ASSERT_TRUE(runUntil(refused, 60s));
    EXPECT_EQ(system.alerts.waiting.front().alert.message, kFailed);
    EXPECT_EQ(system.alerts.waiting.front().alert.informative, noRoom);
    EXPECT_TRUE(fs::is_empty(root / "tmp"));
    // Nothing is written any more, and what was is gone.
    EXPECT_TRUE(runUntil([&] { return fs::space(root / "tmp").available > kReserve; }));
    EXPECT_TRUE(processes.swap.empty());
  }
  static void append(SoupServerMessage* message) {
    static const std::string piece(64 * 1024, 'x');
    soup_message_body_append(soup_server_message_get_response_body(message), SOUP_MEMORY_STATIC, piece.data(),
                             piece.size());
  }

  void begin(std::uintmax_t bytes) {
    played.bytes = bytes;
    system.alerts.waiting.clear();
    write(archive, "PK");
    ours.installa(archive, "2.0");
  }

  const std::string noRoom = "Non c'è abbastanza spazio sul disco.";
  const std::string unpacked = "spacchettato\n";
  PlayedTools played;
  update::Installazione ours{
      system.platform(
          {.bundle = bundle.get(), .processes = &processes, .http = http.get(), .packageTools = &played}),
      address};
  WebSite site;
  std::uintmax_t leastRoom = UINTMAX_MAX;
  std::vector<fs::path> disks;
};

TEST_F(InstallationRoom, isNeededWhereThePackageIsUnpacked) {
  makeDisk(root / "tmp", 8 * kMegabyte);
  EXPECT_EQ(refusal(9 * kMegabyte), noRoom);
  EXPECT_EQ(refusal(7 * kMegabyte), unpacked);
}

TEST_F(InstallationRoom, isNeededWhereTheBundleIsInstalled) {
  makeDisk(app.parent_path(), 8 * kMegabyte);
  makeBundle(app, "vecchio");
  EXPECT_EQ(refusal(9 * kMegabyte), noRoom);
  EXPECT_EQ(refusal(7 * kMegabyte), unpacked);
}

TEST_F(InstallationRoom, isNeededTwiceOnOneDisk) {
  makeDisk(root, 16 * kMegabyte);
  makeBundle(app, "vecchio");
  EXPECT_EQ(refusal(9 * kMegabyte), noRoom);
  EXPECT_EQ(refusal(7 * kMegabyte), unpacked);
}

TEST_F(InstallationRoom, isWatchedWhileThePackageIsUnpacked) {
  makeDisk(root / "tmp", 8 * kMegabyte);
  played.unpacking = "head -c 12M /dev/zero >\"$1/troppo\"; exec sleep 60";
  begin(kMegabyte);
  ASSERT_TRUE(runUntil([&] { return fs::space(root / "tmp").available < kReserve; }));
  system.time.advance(1s);
  ASSERT_EQ(system.alerts.waiting.size(), 1u);
  EXPECT_EQ(system.alerts.waiting.front().alert.informative, noRoom);
  // What was filling it has ended.
  EXPECT_TRUE(fs::is_empty(root / "tmp"));
  EXPECT_TRUE(runUntil([&] { return fs::space(root / "tmp").available > kReserve; }));
}

TEST_F(InstallationRoom, isWatchedWhileThePackageComes) {
  makeDisk(root / "tmp", 8 * kMegabyte);
  downloadWithoutEnd(200ms);
  // What comes between two looks is all that the others miss.
  EXPECT_GT(leastRoom, kReserve - 4 * kMegabyte);
}

TEST_F(InstallationRoom, isMissedAlsoWhereThePackageComesTooFastToWatch) {
  makeDisk(root / "tmp", 8 * kMegabyte);
  downloadWithoutEnd(0ms);
}

}  // namespace
}  // namespace orvalle::contract
