#include "platform/web_window.h"

#import <AppKit/AppKit.h>

#import "platform/macos/factory.h"
#import "platform/macos/text.h"
#import "platform/macos/web_view.h"
#import "platform/macos/window_strip.h"
#include "platform/shown_text.h"

namespace orvalle::platform::macos {
namespace {

NSSize nativeSize(base::Size size) {
  return NSMakeSize(size.width, size.height);
}

NSWindow* makeWindow(const WebWindowSpec& spec) {
  NSWindow* window =
      [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height)
                                  styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                            NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable |
                                            NSWindowStyleMaskFullSizeContentView
                                    backing:NSBackingStoreBuffered
                                      defer:NO];
  window.title = nativeText(spec.title);
  window.titlebarAppearsTransparent = YES;
  window.minSize = nativeSize(spec.minimumSize);
  window.releasedWhenClosed = NO;
  return window;
}

class AppKitWebWindow final : public WebWindow {
 public:
  AppKitWebWindow(MainLoop& loop, const WebWindowSpec& spec, WebWindowDelegate& delegate)
      : window_(makeWindow(spec)),
        view_(loop, spec, delegate),
        strip_(nativeSize(spec.contentSize), spec.stripHeight) {
    NSView* content =
        [[NSView alloc] initWithFrame:NSMakeRect(0, 0, spec.contentSize.width, spec.contentSize.height)];
    [content addSubview:view_.native()];
    [content addSubview:strip_.native()];
    window_.contentView = content;
    window_.initialFirstResponder = view_.native();
  }
  AppKitWebWindow(const AppKitWebWindow&) = delete;
  AppKitWebWindow& operator=(const AppKitWebWindow&) = delete;

  ~AppKitWebWindow() override { [window_ orderOut:nil]; }

  void setFrameAutosaveName(const std::string& name) override {
    [window_ setFrameAutosaveName:nativeText(name)];
  }

  void setTitle(const std::string& title) override {
    NSString* text = nativeText(shownText(title));
    if (![window_.title isEqualToString:text]) window_.title = text;
  }

  void center() override { [window_ center]; }

  void makeKeyAndOrderFront() override {
    if (window_.miniaturized) [window_ deminiaturize:nil];
    [window_ makeKeyAndOrderFront:nil];
  }

  void load(const std::string& url) override { view_.load(url); }
  void startAnew() override { view_.startAnew(); }
  void loadHtml(const std::string& html) override { view_.loadHtml(html); }
  bool hasPage() const override { return view_.hasPage(); }
  void evaluate(const std::string& script) override { view_.evaluate(script); }
  TitleStrip& strip() override { return strip_; }

 private:
  NSWindow* window_;
  WebView view_;
  WindowStrip strip_;
};

class AppKitWebWindows final : public WebWindows {
 public:
  explicit AppKitWebWindows(MainLoop& loop) : loop_(loop) {}

  std::unique_ptr<WebWindow> make(const WebWindowSpec& spec, WebWindowDelegate& delegate) override {
    return std::make_unique<AppKitWebWindow>(loop_, spec, delegate);
  }

 private:
  MainLoop& loop_;
};

}  // namespace

std::unique_ptr<WebWindows> makeWebWindows(MainLoop& loop) {
  return std::make_unique<AppKitWebWindows>(loop);
}

}  // namespace orvalle::platform::macos
