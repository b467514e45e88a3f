#pragma once

#include <optional>
#include <string>

#include "platform/accessibility.h"
#include "platform/frontmost.h"
#include "platform/input_idle.h"
#include "platform/session_watch.h"

/// Twins of what the activity diary and the inactivity rule ask: tests play the user at work.
namespace orvalle::platform::memory {

class MemoryFrontmost : public Frontmost {
 public:
  std::optional<std::string> applicationName() override {
    ++looks;
    return name;
  }
  std::optional<std::string> focusedWindowTitle() override {
    ++titleReads;
    return title;
  }
  std::optional<std::string> name;
  std::optional<std::string> title;
  int looks = 0;
  int titleReads = 0;
};

class MemoryAccessibility : public Accessibility {
 public:
  bool trusted() const override { return consent; }
  void prompt() override {
    if (consent || asking) return;
    asking = true;
    ++questions;
  }
  void openSettings() override {
    if (asking) {
      settingsWait_ = true;
    } else {
      ++settingsOpened;
    }
  }

  /// Answers the question that is open.
  void answer(bool yes) {
    asking = false;
    consent = yes;
    if (settingsWait_) ++settingsOpened;
    settingsWait_ = false;
  }

  bool consent = false;
  bool asking = false;
  int questions = 0;
  int settingsOpened = 0;

 private:
  bool settingsWait_ = false;
};

class MemoryInputIdle : public InputIdle {
 public:
  double secondsSinceInput() override {
    ++measurements;
    return seconds;
  }
  double seconds = 0;
  int measurements = 0;
};

class MemorySessionWatch : public SessionWatch {
 public:
  void setDelegate(SessionDelegate* newDelegate) override { delegate = newDelegate; }
  SessionDelegate* delegate = nullptr;
};

}  // namespace orvalle::platform::memory
