#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/background.h"
#include "platform/bundle.h"
#include "platform/code_signing.h"
#include "platform/main_loop.h"
#include "platform/notification_centre.h"
#include "platform/processes.h"
#include "platform/settings_panes.h"
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
  std::filesystem::path temporary() const override { return temporaryFolder; }
  std::filesystem::path documentsFolder = "/dev/null/Documenti";
  std::filesystem::path supportFolder = "/dev/null/share";
  std::filesystem::path temporaryFolder = "/dev/null/tmp";
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

class MemoryBundle : public Bundle {
 public:
  std::optional<std::string> identifier() const override { return identifierText; }
  std::optional<std::string> version() const override { return versionText; }
  std::optional<std::string> shortVersion() const override { return shortVersionText; }
  std::optional<std::string> packageManager() const override { return manager; }
  std::filesystem::path path() const override { return folder; }
  std::optional<SwapObstacle> swapObstacle() const override { return obstacle; }
  /// A bundle in memory has it in a file of its own, "identifier".
  std::optional<std::string> identifierOf(const std::filesystem::path& path) const override;
  std::optional<std::string> identifierText = "app.orvalle.Orvalle";
  std::optional<std::string> versionText = "7";
  std::optional<std::string> shortVersionText = "1.2.3";
  std::filesystem::path folder = "/opt/Orvalle.app";
  std::optional<std::string> manager;
  std::optional<SwapObstacle> obstacle;
};

class MemoryCodeSigning : public CodeSigning {
 public:
  std::optional<std::uint32_t> ownFlags() const override { return flags; }
  std::optional<std::uint32_t> flags;
};

/// Answers at once, or, while held, when a test says so.
class MemoryNotificationCentre : public NotificationCentre {
 public:
  void setDelegate(NotificationDelegate* newDelegate) override { delegate = newDelegate; }
  void status(std::function<void(NotificationStatus)> done) override {
    ++statusReads;
    answer([this, done = std::move(done)] { done(current); });
  }
  void requestAuthorisation(const NotificationOptions& options,
                            std::function<void(bool, std::optional<std::string>)> done) override {
    requests.push_back(options);
    answer([this, done = std::move(done)] {
      current = userAgrees ? NotificationStatus::Authorised : NotificationStatus::Denied;
      done(userAgrees, requestError);
    });
  }
  void add(const Notification& notification, std::function<void(std::optional<std::string>)> done) override {
    answer([this, notification, done = std::move(done)] {
      if (!addError) shown.push_back(notification);
      done(addError);
    });
  }

  void hold() { held_ = true; }
  /// Gives the answers that wait, in order, and goes on at once from now on.
  void release() {
    held_ = false;
    for (; !waiting_.empty(); waiting_.pop_front()) waiting_.front()();
  }

  NotificationDelegate* delegate = nullptr;
  NotificationStatus current = NotificationStatus::NotDetermined;
  bool userAgrees = true;
  std::optional<std::string> requestError;
  std::optional<std::string> addError;
  int statusReads = 0;
  std::vector<NotificationOptions> requests;
  std::vector<Notification> shown;

 private:
  void answer(std::function<void()> task) {
    if (held_) {
      waiting_.push_back(std::move(task));
    } else {
      task();
    }
  }

  bool held_ = false;
  std::deque<std::function<void()>> waiting_;
};

class MemorySettingsPanes : public SettingsPanes {
 public:
  void open(SettingsPane pane) override { opened.push_back(pane); }
  std::vector<SettingsPane> opened;
};

/// A process that was asked for.
struct ProcessRun {
  std::filesystem::path program;
  std::vector<std::string> arguments;
  std::function<void(const ProcessOutcome&)> done;
  bool cancelled = false;

  void end(int status = 0, std::string output = "") { done({std::nullopt, status, std::move(output)}); }
  void fail(std::string reason) { done({std::move(reason), 0, ""}); }
};

class MemoryProcesses : public Processes {
 public:
  bool startAfterExit(const std::filesystem::path& bundle) override {
    waitingForExit.push_back(bundle);
    return succeeds;
  }
  base::Subscription run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         std::function<void(const ProcessOutcome&)> done) override {
    runs.push_back(std::make_shared<ProcessRun>(ProcessRun{program, arguments, std::move(done)}));
    return base::Subscription([run = runs.back()] { run->cancelled = true; });
  }
  std::optional<std::string> startDetached(const std::filesystem::path& program,
                                           const std::vector<std::string>& arguments) override {
    if (!succeeds) return "niente da fare";
    detached.push_back({program, arguments, {}});
    return {};
  }
  int ownId() const override { return 4711; }

  std::vector<std::filesystem::path> waitingForExit;
  /// Everything that was ever run, in order.
  std::vector<std::shared_ptr<ProcessRun>> runs;
  std::vector<ProcessRun> detached;
  bool succeeds = true;
};

}  // namespace orvalle::platform::memory
