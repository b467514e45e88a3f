#include "app/overlay.h"

#include "base/point.h"

namespace orvalle::app {
namespace {

constexpr char kOriginKey[] = "overlayOrigin";
constexpr base::Size kSize{190, 38};
constexpr double kMargin = 20;

}  // namespace

Overlay::Overlay(const platform::Platform& platform) : defaults_(platform.defaults) {
  platform::PanelSpec spec;
  spec.contentSize = kSize;
  spec.cornerRadius = 12;
  spec.labelFrame = {{12, 9}, {166, 20}};
  spec.labelFontSize = 13;
  panel_ = platform.panels.make(spec);
  panel_->setLabel("", platform::TextColour::White);
  place(platform.screen);
  panel_->onDidMove =
      liveness_.guard([this] { defaults_.set(kOriginKey, base::pointText(panel_->frameOrigin())); });
}

void Overlay::place(const platform::Screen& screen) {
  if (const auto stored = defaults_.text(kOriginKey)) {
    panel_->setFrameOrigin(base::pointFromText(*stored));
  } else if (const auto frame = screen.mainVisibleFrame()) {
    panel_->setFrameOrigin({frame->origin.x + frame->size.width - kSize.width - kMargin,
                            frame->origin.y + frame->size.height - kSize.height - kMargin});
  }
}

void Overlay::update(const std::string& text, bool over) {
  panel_->setLabel(text, over ? platform::TextColour::SystemRed : platform::TextColour::White);
}

void Overlay::show(bool visible) {
  if (visible) {
    panel_->orderFrontRegardless();
  } else {
    panel_->orderOut();
  }
}

}  // namespace orvalle::app
