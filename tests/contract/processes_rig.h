#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/processes.h"
#include "tests/contract/loop.h"
#include "tests/contract/native.h"

namespace orvalle::contract {

/// Starts other processes, in a folder of the test's own.
class ProcessesTest : public ::testing::Test {
 protected:
  ProcessesTest() {
    auto pattern = (std::filesystem::temp_directory_path() / "orvalle-processes-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
  }
  ~ProcessesTest() override { std::filesystem::remove_all(folder); }

  platform::ProcessOutcome run(const std::string& script) { return run("/bin/sh", {"-c", script}); }
  platform::ProcessOutcome run(const std::filesystem::path& program,
                               const std::vector<std::string>& arguments) {
    std::optional<platform::ProcessOutcome> outcome;
    const auto running = processes->run(program, arguments, [&](const auto& got) { outcome = got; });
    EXPECT_FALSE(outcome) << "told inside the call";
    EXPECT_TRUE(runUntil([&] { return outcome.has_value(); }, std::chrono::seconds(30)));
    return outcome.value_or(platform::ProcessOutcome());
  }

  std::unique_ptr<platform::Processes> processes = native::makeProcesses();
  std::filesystem::path folder;
};

}  // namespace orvalle::contract
