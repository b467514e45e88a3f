#pragma once

#include <deque>
#include <map>
#include <string>
#include <vector>

#include "platform/platform.h"

/// Twins of the desktop's parts: they keep what they were told, and tests play the user.
namespace orvalle::platform::memory {

/// Everything that happened on the desktop, in order, one word or two for each event. Shared by the twins, so
/// that tests can check the order across them.
using Journal = std::vector<std::string>;

class MemoryApplication : public Application, private ActionTarget {
 public:
  explicit MemoryApplication(Journal& journal) : journal_(journal) {}

  /// Launches the delegate, calls `session`, and then ends in order unless `terminate` did so already.
  int run(ApplicationDelegate& delegate) override;
  void activate() override { journal_.push_back("activate"); }
  void terminate() override;
  ActionTarget& responderChain() override { return *this; }

  /// Plays the part of the user while the application runs.
  std::function<void(ApplicationDelegate&)> session;
  /// How often the end was asked for.
  int terminations = 0;

 private:
  bool responds(std::string_view action) const override;
  void perform(std::string_view action, MenuItem& sender) override;

  Journal& journal_;
  ApplicationDelegate* delegate_ = nullptr;
  bool running_ = false;
};

class MemoryWorkspace : public Workspace {
 public:
  void open(const std::string& url) override { opened.push_back(url); }
  void openFolder(const std::filesystem::path& folder) override { folders.push_back(folder); }
  std::vector<std::string> opened;
  std::vector<std::filesystem::path> folders;
};

class MemoryHaptics : public Haptics {
 public:
  void perform(HapticPattern pattern) override { performed.push_back(pattern); }
  std::vector<HapticPattern> performed;
};

class MemoryScreen : public Screen {
 public:
  std::optional<base::Rect> mainVisibleFrame() const override { return visibleFrame; }
  std::optional<base::Rect> visibleFrame = base::Rect{{0, 0}, {1440, 875}};
};

class MemoryMainMenu : public MainMenu {
 public:
  explicit MemoryMainMenu(Journal& journal) : journal_(journal) {}
  void show(std::shared_ptr<Menu> shown, std::shared_ptr<Menu> windowsMenu,
            std::shared_ptr<Menu> helpMenu) override {
    journal_.push_back("main menu");
    bar = std::move(shown);
    windows = std::move(windowsMenu);
    help = std::move(helpMenu);
  }
  std::shared_ptr<Menu> bar, windows, help;

 private:
  Journal& journal_;
};

/// What the status bar shows; outlives the item, as the bar does.
struct StatusBarState {
  bool itemShown = false;
  bool hasButton = true;
  /// Whether there is a bar that shows the item.
  bool present = true;
  StatusFace face;
  /// How often a face was set that differed from the one before.
  int faceChanges = 0;
  std::shared_ptr<Menu> menu;
};

class MemoryStatusBar : public StatusBar {
 public:
  explicit MemoryStatusBar(Journal& journal) : journal_(journal) {}
  std::unique_ptr<StatusItem> makeItem() override;
  StatusBarState state;

 private:
  Journal& journal_;
};

/// What a panel shows.
struct PanelState {
  PanelSpec spec;
  base::Point origin;
  std::string text;
  TextColour colour = TextColour::White;
  bool visible = false;
  /// Plays the user who drags the panel to a place.
  std::function<void(base::Point)> drag;
};

class MemoryPanels : public Panels {
 public:
  explicit MemoryPanels(Journal& journal) : journal_(journal) {}
  bool canFloat() const override { return floating; }
  std::unique_ptr<Panel> make(const PanelSpec& spec) override;
  bool floating = true;
  /// The panels made so far; null pointers once destroyed.
  std::vector<PanelState*> made;

 private:
  Journal& journal_;
};

/// A web window that loads nothing by itself: tests play page and network through `delegate`.
struct WebWindowState {
  WebWindowSpec spec;
  WebWindowDelegate* delegate = nullptr;
  std::string autosaveName;
  std::string title;
  bool centred = false;
  bool visible = false;
  int timesOrderedFront = 0;
  std::vector<std::string> loads;
  std::vector<std::string> htmls;
  int freshStarts = 0;
  std::vector<std::string> scripts;
  bool hasPage = false;
  int drags = 0;
  int miniaturizations = 0;
  int zooms = 0;
  std::optional<std::string> doubleClickAction;

  /// The last load succeeds: it starts and commits, at `redirectedTo` when given.
  void commit(std::optional<std::string> redirectedTo = {});
  /// The page that was committed has loaded and its script has run.
  void finish() { delegate->didFinish(); }
  /// The page goes to another address by itself.
  void navigateByScript(const std::string& url);
  /// The last load fails, once it has started: whatever was shown stays until the delegate shows something
  /// else.
  void fail(const std::string& description);
  void post(std::string json) { delegate->didReceiveMessage(spec.messageHandler, std::move(json)); }
  /// A press on the title strip.
  std::function<void(int clickCount)> pressStrip;

 private:
  void start();
  /// How many of the loads have started, or were replaced before they could.
  std::size_t started_ = 0;
};

class MemoryWebWindows : public WebWindows {
 public:
  explicit MemoryWebWindows(Journal& journal) : journal_(journal) {}
  std::unique_ptr<WebWindow> make(const WebWindowSpec& spec, WebWindowDelegate& delegate) override;
  /// The windows made so far; null pointers once destroyed.
  std::vector<WebWindowState*> made;

 private:
  Journal& journal_;
};

class MemoryAlerts : public Alerts {
 public:
  struct Waiting {
    Alert alert;
    std::function<void(std::size_t)> done;
    bool progress = false;
    int number = 0;
  };

  void show(const Alert& alert, std::function<void(std::size_t)> done) override {
    waiting.push_back({alert, std::move(done), false, ++count_});
  }
  base::Subscription showProgress(const Alert& alert, std::function<void(std::size_t)> done) override;
  /// Presses a button of the alert that is shown, the first one waiting.
  void press(std::size_t button);
  /// Closes the window of the alert that is shown.
  void close();
  std::deque<Waiting> waiting;

 private:
  int count_ = 0;
};

class MemoryOpenPanel : public OpenPanel {
 public:
  using Answer = std::optional<std::vector<std::string>>;
  void choose(const OpenPanelSpec& spec, std::function<void(Answer)> done) override {
    waiting.emplace_back(spec, std::move(done));
  }
  /// Answers the panel that is shown, the first one waiting.
  void answer(const Answer& paths);
  std::deque<std::pair<OpenPanelSpec, std::function<void(Answer)>>> waiting;
};

}  // namespace orvalle::platform::memory
