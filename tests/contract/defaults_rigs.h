#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/linux/factory.h"
#include "platform/memory/memory_stores.h"
#include "platform/system_log.h"

namespace orvalle::platform {

/// Keeps the lines that it is given.
class RecordingLog : public SystemLog {
 public:
  void write(std::string_view line) override { lines.emplace_back(line); }

  std::vector<std::string> lines;
};

/// Settings in a home folder of their own.
class LinuxDefaultsRig {
 public:
  LinuxDefaultsRig() {
    std::string folder = (std::filesystem::temp_directory_path() / "orvalle-defaults-XXXXXX").string();
    if (!::mkdtemp(folder.data())) throw std::runtime_error("no temporary folder");
    home = folder;
    environment.variables["HOME"] = folder;
    startAgain();
  }
  LinuxDefaultsRig(const LinuxDefaultsRig&) = delete;
  LinuxDefaultsRig& operator=(const LinuxDefaultsRig&) = delete;
  ~LinuxDefaultsRig() { std::filesystem::remove_all(home); }

  Defaults& store() { return *store_; }
  void startAgain() { store_ = linuxos::makeDefaults(environment, log); }

  std::filesystem::path folder() const { return home / ".config" / "Orvalle"; }
  std::filesystem::path file() const { return folder() / "defaults.json"; }
  std::filesystem::path aside() const { return folder() / "defaults.json.unreadable"; }

  void writeFile(const std::string& contents) const {
    std::filesystem::create_directories(folder());
    std::ofstream(file(), std::ios::binary) << contents;
  }
  static std::string read(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::filesystem::path home;
  memory::MemoryEnvironment environment;
  RecordingLog log;

 private:
  std::unique_ptr<Defaults> store_;
};

}  // namespace orvalle::platform
