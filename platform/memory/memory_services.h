#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/background.h"
#include "platform/main_loop.h"
#include "platform/system_log.h"
#include "platform/user_folders.h"

/// Twins of what the desktop services need: tests play the disk's slowness, the server and the system.
namespace orvalle::platform::memory {

class MemorySystemLog : public SystemLog {
 public:
  void write(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

/// Nothing can be written below these until a test names folders of its own.
class MemoryUserFolders : public UserFolders {
 public:
  std::filesystem::path documents() const override { return documentsFolder; }
  std::filesystem::path applicationSupport() const override { return supportFolder; }
  std::filesystem::path documentsFolder = "/dev/null/Documenti";
  std::filesystem::path supportFolder = "/dev/null/share";
};

/// Carries work out at once, or, while held, when a test says so.
class MemoryBackground : public Background {
 public:
  explicit MemoryBackground(MainLoop& loop) : loop_(loop) {}
  void run(std::function<void()> work, std::function<void()> done) override {
    waiting_.push_back([this, work = std::move(work), done = std::move(done)]() mutable {
      work();
      loop_.post(std::move(done));
    });
    if (!held_) carryOut();
  }

  /// From now on work waits.
  void hold() { held_ = true; }
  void release() {
    held_ = false;
    carryOut();
  }
  std::size_t waiting() const { return waiting_.size(); }

 private:
  void carryOut() {
    while (!waiting_.empty()) {
      auto next = std::move(waiting_.front());
      waiting_.pop_front();
      next();
    }
  }

  MainLoop& loop_;
  bool held_ = false;
  std::deque<std::function<void()>> waiting_;
};

}  // namespace orvalle::platform::memory
