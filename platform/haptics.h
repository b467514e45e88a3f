#pragma once

namespace orvalle::platform {

enum class HapticPattern { Alignment, LevelChange };

/// A tap that the user feels, where there is hardware for it; nothing elsewhere.
class Haptics {
 public:
  virtual ~Haptics() = default;
  /// Plays the pattern now. Returns at once; a failure is silent.
  virtual void perform(HapticPattern pattern) = 0;
};

}  // namespace orvalle::platform
