#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "base/json.h"
#include "platform/memory/memory_platform.h"
#include "services/attivita.h"
#include "tests/unit/base/temporary_folder.h"
#include "tests/unit/base/time_zone.h"

namespace orvalle::services {

/// A user at work on a system in memory, with a disk for their diary. It is 2 March 2026, nine o'clock in
/// UTC, the user's zone unless a test has another one.
class AttivitaFixture : public ::testing::Test {
 protected:
  AttivitaFixture() {
    system.userFolders.supportFolder = disk.path();
    diary = std::make_unique<Attivita>(*platform);
  }

  /// The user turns the diary on, as the page does.
  void turnOn() {
    diary->setAcceso(true);
    diary->avvia();
  }
  /// The user has this application, with this title, in front.
  void use(const std::string& app, std::optional<std::string> title = {}) {
    system.frontmost.name = app;
    system.frontmost.title = std::move(title);
  }
  void pass(std::chrono::nanoseconds time) { system.time.advance(time); }

  std::filesystem::path folder() const { return disk.path() / "Orvalle/attivita"; }
  std::filesystem::path file(const std::string& day) const { return folder() / (day + ".json"); }
  std::string contents(const std::string& day) const {
    std::ifstream stream(file(day), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void writeDay(const std::string& day, const std::string& text) {
    std::filesystem::create_directories(folder());
    std::ofstream(file(day), std::ios::binary) << text;
  }
  /// The blocks that are on the disk.
  std::vector<Blocco> saved(const std::string& day = "2026-03-02") const {
    return decodeBlocchi(contents(day)).value_or(std::vector<Blocco>());
  }
  /// The blocks that the page gets.
  std::vector<Blocco> told(const std::string& day = "2026-03-02") const {
    return decodeBlocchi(diary->giornoJSON(day)).value();
  }
  static Moment at(int hour, int minute, int second = 0, int day = 2) {
    using namespace std::chrono;
    return sys_days(year(2026) / 3 / day) + hours(hour) + minutes(minute) + seconds(second);
  }

  base::TimeZone zone{"UTC"};
  base::TemporaryFolder disk;
  platform::memory::MemoryPlatform system;
  std::unique_ptr<platform::Platform> platform = std::make_unique<platform::Platform>(system.platform());
  std::unique_ptr<Attivita> diary;
};

}  // namespace orvalle::services
