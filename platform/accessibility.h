#pragma once

namespace orvalle::platform {

/// The user's consent to reading the titles of other programs' windows. It can be given and withdrawn at any
/// time.
class Accessibility {
 public:
  virtual ~Accessibility() = default;
  /// Whether there is consent now. Asks nobody.
  virtual bool trusted() const = 0;
  /// Asks the user for consent, unless it is there already or the question is still open. Returns at once.
  virtual void prompt() = 0;
  /// Shows the place where the user sees the consent and changes it. While the question of `prompt` is open,
  /// it follows the answer.
  virtual void openSettings() = 0;
};

}  // namespace orvalle::platform
