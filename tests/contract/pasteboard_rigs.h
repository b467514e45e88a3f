#pragma once

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_link.h"
#include "tests/contract/loop.h"

namespace orvalle::contract {

class MemoryBoard {
 public:
  platform::Pasteboard& board() { return board_; }
  void copy(const std::string& text) { board_.text = text; }
  void empty() { board_.text.clear(); }

 private:
  platform::memory::MemoryPasteboard board_;
};

/// What is on the board, told once.
inline std::string read(platform::Pasteboard& board) {
  int times = 0;
  std::string found;
  board.readText([&](const std::string& text) {
    found = text;
    ++times;
  });
  EXPECT_TRUE(runUntil([&] { return times > 0; }));
  runFor(std::chrono::milliseconds(20));
  EXPECT_EQ(times, 1);
  return found;
}

}  // namespace orvalle::contract

#ifdef __APPLE__
#import "tests/contract/pasteboard_rig_macos.h"
#else
#include "tests/contract/pasteboard_rig_linux.h"
#endif
