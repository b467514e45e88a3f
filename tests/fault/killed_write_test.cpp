#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "base/atomic_file.h"
#include "platform/linux/factory.h"
#include "platform/memory/memory_platform.h"
#include "services/archivio.h"
#include "services/day_files.h"
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

TEST_F(KilledWrite, aDayOfTheDiaryIsTheOldOrTheNewOneAndNoOtherIsLost) {
  const services::DayFiles constant(root / "attivita");
  const auto day = [](int blocks) {
    std::vector<services::Blocco> made;
    for (int i = 0; i < blocks; ++i) {
      const auto begin = services::Moment(std::chrono::minutes(2 * i));
      made.push_back({"Quaderno", "Capitolo " + std::to_string(i), begin, begin + std::chrono::minutes(2)});
    }
    return made;
  };
  const auto morning = day(200);
  const auto evening = day(700);
  const auto fill = [&] {
    ASSERT_FALSE(constant.save("2026-11-20", morning));
    ASSERT_FALSE(constant.save("2026-11-21", morning));
  };
  const auto write = [&] { (void)services::DayFiles(constant).save("2026-11-21", evening); };
  std::set<std::size_t> seen;
  int call = 1;
  for (fill(); killAfter(call, write); fill(), ++call) {
    const auto blocks = constant.load("2026-11-21");
    ASSERT_TRUE(blocks == morning || blocks == evening) << "killed after call " << call;
    ASSERT_EQ(constant.load("2026-11-20"), morning) << "killed after call " << call;
    seen.insert(blocks.size());
  }
  EXPECT_EQ(constant.load("2026-11-21"), evening);
  EXPECT_EQ(seen.size(), 2u);
}

TEST_F(KilledWrite, theFirstDayOfTheDiaryIsAbsentOrWhole) {
  const services::DayFiles files(root / "attivita");
  const std::vector<services::Blocco> blocks(700, {"Quaderno", "Lettera", {}, {}});
  const auto file = files.file("2026-11-21");
  int call = 1;
  for (; killAfter(call, [&] { (void)files.save("2026-11-21", blocks); }); ++call) {
    ASSERT_TRUE(!fs::exists(file) || files.load("2026-11-21") == blocks) << "killed after call " << call;
    fs::remove_all(files.folder());
  }
  EXPECT_EQ(files.load("2026-11-21"), blocks);
}

TEST_F(KilledWrite, theSettingsAreTheOldOrTheNewOnes) {
  platform::memory::MemoryPlatform system;
  system.environment.variables["HOME"] = root;
  const auto settings = [&] { return platform::linuxos::makeDefaults(system.environment, system.log); };
  const auto fill = [&] {
    const auto store = settings();
    store->set("testo", before);
    store->set("intero", std::int64_t{3});
    store->set("decimale", 3.0);
    store->set("acceso", true);
  };
  const auto write = [&] { settings()->set("testo", after); };
  std::set<std::string> seen;
  int call = 1;
  for (fill(); killAfter(call, write); fill(), ++call) {
    SCOPED_TRACE("killed after call " + std::to_string(call));
    const auto store = settings();
    const auto text = store->text("testo").value_or("");
    ASSERT_TRUE(text == before || text == after);
    ASSERT_EQ(store->value("intero"), platform::Defaults::Value(std::int64_t{3}));
    ASSERT_EQ(store->value("decimale"), platform::Defaults::Value(3.0));
    ASSERT_EQ(store->value("acceso"), platform::Defaults::Value(true));
    // Nothing was found to be set aside or told of.
    ASSERT_TRUE(system.log.lines.empty());
    seen.insert(text);
  }
  EXPECT_EQ(settings()->text("testo"), after);
  EXPECT_EQ(seen.size(), 2u);
}

TEST_F(KilledWrite, theFirstSettingsAreAbsentOrWhole) {
  platform::memory::MemoryPlatform system;
  system.environment.variables["HOME"] = root;
  const auto settings = [&] { return platform::linuxos::makeDefaults(system.environment, system.log); };
  const auto file = root / ".config" / "Orvalle" / "defaults.json";
  int call = 1;
  for (; killAfter(call, [&] { settings()->set("testo", after); }); ++call) {
    SCOPED_TRACE("killed after call " + std::to_string(call));
    ASSERT_TRUE(!fs::exists(file) || settings()->text("testo") == after);
    ASSERT_TRUE(system.log.lines.empty());
    fs::remove_all(root / ".config");
  }
  EXPECT_EQ(settings()->text("testo"), after);
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
