#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/point.h"

namespace orvalle::platform {

/// A line of text over a field, in the secondary label colour, 11 points, semibold.
struct PairLabel {
  base::Rect frame;
  std::string text;
};

/// An editable line in a monospaced font of 11 points. The label before it in the list names it for screen
/// readers.
struct PairField {
  base::Rect frame;
  std::string placeholder;
};

struct PairButton {
  base::Rect frame;
  std::string title;
  /// Pressed by Return.
  bool isDefault = false;
};

/// How the pairing window is laid out: points from the lower left corner of its content.
struct PairViewSpec {
  std::string title;
  base::Size contentSize;
  /// As many labels as fields, in the order in which Tab goes.
  std::vector<PairLabel> labels;
  std::vector<PairField> fields;
  /// Where the message stands, 11 points.
  base::Rect messageFrame;
  std::vector<PairButton> buttons;
};

enum class MessageColour { Label, SystemGreen, SystemOrange };

/// A window with title and close button, not resizable. Closing it only hides it. Made hidden.
class PairView {
 public:
  virtual ~PairView() = default;
  virtual std::string fieldText(std::size_t field) const = 0;
  virtual void setFieldText(std::size_t field, const std::string& text) = 0;
  virtual void setMessage(const std::string& text, MessageColour colour) = 0;
  /// Centred, with the keyboard, in front, the first field focused.
  virtual void present() = 0;
  virtual void orderOut() = 0;
  /// Called on the main loop when the user presses a button, by its index.
  std::function<void(std::size_t button)> onButton;
};

class PairViews {
 public:
  virtual ~PairViews() = default;
  virtual std::unique_ptr<PairView> make(const PairViewSpec& spec) = 0;
};

}  // namespace orvalle::platform
