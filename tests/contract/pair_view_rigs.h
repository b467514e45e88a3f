#pragma once

#include <memory>
#include <string>

#include "link/pair_window.h"
#include "platform/memory/memory_link.h"

namespace orvalle::contract {

/// The twin and the user in front of it.
class MemoryPairRig {
 public:
  std::unique_ptr<platform::PairView> make() { return views_.make(link::pairWindowSpec()); }
  void settle() {}
  bool visible() { return state().visible; }
  std::string message() { return state().message; }
  void press(std::size_t button) { state().press(button); }
  void type(std::size_t field, const std::string& text) { state().fields.at(field) = text; }

 private:
  platform::memory::PairViewState& state() { return *views_.made.back(); }
  platform::memory::MemoryPairViews views_;
};

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/pair_view_rig_macos.h"
#else
#include "tests/contract/pair_view_rig_linux.h"
#endif
