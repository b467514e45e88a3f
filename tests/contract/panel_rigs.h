#pragma once

#include <string>

#include "platform/memory/memory_desktop.h"

namespace orvalle::contract {

inline platform::PanelSpec panelSpec() {
  platform::PanelSpec spec;
  spec.contentSize = {190, 38};
  spec.cornerRadius = 12;
  spec.labelFrame = {{12, 9}, {166, 20}};
  spec.labelFontSize = 13;
  return spec;
}

class MemoryPanelRig {
 public:
  platform::Panels& panels() { return panels_; }
  void settle() {}
  bool visible() { return panels_.made.back()->visible; }
  std::string text() { return panels_.made.back()->text; }
  bool red() { return panels_.made.back()->colour == platform::TextColour::SystemRed; }
  /// The user takes the panel and lets it go elsewhere.
  void drag(base::Point by) {
    auto& panel = *panels_.made.back();
    panel.drag({panel.origin.x + by.x, panel.origin.y + by.y});
  }

 private:
  platform::memory::Journal journal_;
  platform::memory::MemoryPanels panels_{journal_};
};

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/panel_rig_macos.h"
#else
#include "tests/contract/panel_rig_linux.h"
#endif
