#include "web/striscia_trascinabile.h"

namespace orvalle::web {

StrisciaTrascinabile::StrisciaTrascinabile(platform::TitleStrip& strip) : strip_(strip) {
  strip_.onMouseDown = [this](int clickCount) { mouseDown(clickCount); };
}

StrisciaTrascinabile::~StrisciaTrascinabile() {
  strip_.onMouseDown = nullptr;
}

void StrisciaTrascinabile::mouseDown(int clickCount) {
  if (clickCount == 2) {
    doppioClic();
  } else {
    strip_.performWindowDrag();
  }
}

void StrisciaTrascinabile::doppioClic() {
  const auto action = strip_.doubleClickAction();
  if (action == "Minimize") {
    strip_.miniaturize();
  } else if (action != "None") {
    strip_.zoom();
  }
}

}  // namespace orvalle::web
