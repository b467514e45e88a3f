#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "base/atomic_file.h"
#include "platform/memory/memory_platform.h"
#include "services/archivio.h"
#include "tests/fault/killed_process.h"

/// Whatever moment the program is killed at while it writes: what was there is whole, or what was to come.
namespace orvalle::fault {
namespace {

namespace fs = std::filesystem;

class KilledWrite : public ::testing::Test {
 protected:
  KilledWrite() {
    auto pattern = (fs::temp_directory_path() / "orvalle-killed-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
  }
  ~KilledWrite() override { fs::remove_all(root); }

  static void put(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
  }
  static std::string read(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  fs::path root;
  const std::string before = std::string(100'000, 'a');
  const std::string after = std::string(500'000, 'b');
};

TEST_F(KilledWrite, aFileIsTheOldOrTheNewOne) {
  const auto file = root / "file";
  std::set<std::string> seen;
  int call = 1;
  const auto write = [&] { (void)base::replaceFile(file, after, fs::perms(0600)); };
  for (put(file, before); killAfter(call, write); put(file, before), ++call) {
    const auto text = read(file);
    ASSERT_TRUE(text == before || text == after) << "killed after call " << call;
    seen.insert(text);
  }
  EXPECT_EQ(read(file), after);
  // Both were there to be seen, or nothing was proved.
  EXPECT_EQ(seen.size(), 2u);
  EXPECT_GT(call, 5);
}

TEST_F(KilledWrite, aFileThatWasNotThereIsAbsentOrWhole) {
  const auto file = root / "file";
  int call = 1;
  for (; killAfter(call, [&] { (void)base::replaceFile(file, after, fs::perms(0600)); }); ++call) {
    ASSERT_TRUE(!fs::exists(file) || read(file) == after) << "killed after call " << call;
    fs::remove(file);
  }
  EXPECT_EQ(read(file), after);
}

TEST_F(KilledWrite, aBackupIsTheOldOrTheNewOneAndNoOtherIsLost) {
  platform::memory::MemoryPlatform system;
  system.userFolders.documentsFolder = root;
  const services::Archivio constant(system.userFolders, system.background, system.log);
  const auto folder = constant.cartella();
  const auto fill = [&] {
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (int i = 10; i < 40; ++i) put(folder / (std::to_string(i) + ".json"), "other");
    put(folder / "40.json", before);
  };
  const auto write = [&] {
    services::Archivio archivio(system.userFolders, system.background, system.log);
    archivio.scrivi("40.json", after, [](const auto&) {});
    system.time.runPosted();
  };
  int call = 1;
  for (fill(); killAfter(call, write); fill(), ++call) {
    const auto newest = read(folder / "40.json");
    ASSERT_TRUE(newest == before || newest == after) << "killed after call " << call;
    for (int i = 11; i < 40; ++i)
      ASSERT_EQ(read(folder / (std::to_string(i) + ".json")), "other") << "killed after call " << call;
  }
  EXPECT_EQ(read(folder / "40.json"), after);
  EXPECT_FALSE(fs::exists(folder / "10.json"));
}

}  // namespace
}  // namespace orvalle::fault
