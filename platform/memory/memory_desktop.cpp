#include "platform/memory/memory_desktop.h"

#include <algorithm>
#include <utility>

namespace orvalle::platform::memory {

int MemoryApplication::run(ApplicationDelegate& delegate) {
  delegate_ = &delegate;
  running_ = true;
  delegate.applicationDidFinishLaunching();
  if (session) session(delegate);
  terminate();
  delegate_ = nullptr;
  return 0;
}

void MemoryApplication::terminate() {
  ++terminations;
  if (!std::exchange(running_, false)) return;
  delegate_->applicationWillTerminate();
}

bool MemoryApplication::responds(std::string_view action) const {
  return action == kActionTerminate || (delegate_ && delegate_->responds(action));
}

void MemoryApplication::perform(std::string_view action, MenuItem& sender) {
  if (action == kActionTerminate) {
    terminate();
  } else {
    delegate_->perform(action, sender);
  }
}

namespace {

class MemoryStatusItem : public StatusItem {
 public:
  explicit MemoryStatusItem(StatusBarState& state) : state_(state) { state_.itemShown = true; }
  ~MemoryStatusItem() override { state_.itemShown = false; }
  bool hasButton() const override { return state_.hasButton; }
  bool isShown() const override { return state_.present; }
  void setFace(const StatusFace& face) override {
    if (state_.face == face) return;
    state_.face = face;
    ++state_.faceChanges;
  }
  void setMenu(std::shared_ptr<Menu> menu) override { state_.menu = std::move(menu); }

 private:
  StatusBarState& state_;
};

/// Takes an entry out of the list of what was made, leaving a null pointer.
template <typename State>
void forget(std::vector<State*>& made, const State& state) {
  std::replace(made.begin(), made.end(), const_cast<State*>(&state), static_cast<State*>(nullptr));
}

class MemoryPanel : public Panel {
 public:
  MemoryPanel(const PanelSpec& spec, std::vector<PanelState*>& made) : made_(made) {
    state_.spec = spec;
    state_.drag = [this](base::Point origin) { setFrameOrigin(origin); };
    made_.push_back(&state_);
  }
  ~MemoryPanel() override { forget(made_, state_); }
  void setFrameOrigin(base::Point origin) override {
    if (state_.origin == origin) return;
    state_.origin = origin;
    if (onDidMove) onDidMove();
  }
  base::Point frameOrigin() const override { return state_.origin; }
  void setLabel(const std::string& text, TextColour colour) override {
    state_.text = text;
    state_.colour = colour;
  }
  void orderFrontRegardless() override { state_.visible = true; }
  void orderOut() override { state_.visible = false; }

 private:
  std::vector<PanelState*>& made_;
  PanelState state_;
};

class MemoryWebWindow : public WebWindow, private TitleStrip {
 public:
  MemoryWebWindow(const WebWindowSpec& spec, WebWindowDelegate& delegate, MemoryWebWindows& owner,
                  Journal& journal)
      : made_(owner.made), journal_(journal) {
    state_.spec = spec;
    state_.delegate = &delegate;
    state_.pressStrip = [this](int clickCount) {
      if (onMouseDown) onMouseDown(clickCount);
    };
    made_.push_back(&state_);
  }
  ~MemoryWebWindow() override { forget(made_, state_); }

  void setFrameAutosaveName(const std::string& name) override { state_.autosaveName = name; }
  void setTitle(const std::string& title) override { state_.title = title; }
  void center() override { state_.centred = true; }
  void makeKeyAndOrderFront() override {
    journal_.push_back("web window in front");
    state_.visible = true;
    ++state_.timesOrderedFront;
  }
  void load(const std::string& url) override {
    journal_.push_back("load " + url);
    state_.loads.push_back(url);
  }
  void startAnew() override { ++state_.freshStarts; }
  void loadHtml(const std::string& html) override {
    state_.htmls.push_back(html);
    state_.hasPage = false;
    state_.delegate->didCommit("about:blank");
  }
  bool hasPage() const override { return state_.hasPage; }
  void evaluate(const std::string& script) override { state_.scripts.push_back(script); }
  TitleStrip& strip() override { return *this; }

 private:
  void performWindowDrag() override { ++state_.drags; }
  void miniaturize() override { ++state_.miniaturizations; }
  void zoom() override { ++state_.zooms; }
  std::optional<std::string> doubleClickAction() const override { return state_.doubleClickAction; }

  std::vector<WebWindowState*>& made_;
  Journal& journal_;
  WebWindowState state_;
};

}  // namespace

std::unique_ptr<StatusItem> MemoryStatusBar::makeItem() {
  journal_.push_back("status item made");
  return std::make_unique<MemoryStatusItem>(state);
}

std::unique_ptr<Panel> MemoryPanels::make(const PanelSpec& spec) {
  journal_.push_back("panel made");
  return std::make_unique<MemoryPanel>(spec, made);
}

std::unique_ptr<WebWindow> MemoryWebWindows::make(const WebWindowSpec& spec, WebWindowDelegate& delegate) {
  journal_.push_back("web window made");
  return std::make_unique<MemoryWebWindow>(spec, delegate, *this, journal_);
}

void WebWindowState::commit(std::optional<std::string> redirectedTo) {
  start();
  hasPage = true;
  delegate->didCommit(redirectedTo.value_or(loads.back()));
}

void WebWindowState::navigateByScript(const std::string& url) {
  delegate->didStart(url);
  hasPage = true;
  delegate->didCommit(url);
}

void WebWindowState::fail(const std::string& description) {
  start();
  delegate->didFail(description);
}

void WebWindowState::start() {
  if (std::exchange(started_, loads.size()) < loads.size()) delegate->didStart(loads.back());
}

base::Subscription MemoryAlerts::showProgress(const Alert& alert, std::function<void(std::size_t)> done) {
  waiting.push_back({alert, std::move(done), true, ++count_});
  return base::Subscription([this, number = count_] {
    std::erase_if(waiting, [&](const auto& each) { return each.number == number; });
  });
}

void MemoryAlerts::close() {
  const auto& alert = waiting.front().alert;
  press(alert.closing.value_or(alert.buttons.size() - 1));
}

void MemoryAlerts::press(std::size_t button) {
  const auto done = std::move(waiting.front().done);
  waiting.pop_front();
  done(button);
}

void MemoryOpenPanel::answer(const Answer& paths) {
  const auto done = std::move(waiting.front().second);
  waiting.pop_front();
  done(paths);
}

}  // namespace orvalle::platform::memory
