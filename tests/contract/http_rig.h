#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/contract/loop.h"
#include "tests/contract/native.h"
#include "tests/contract/web_site.h"

namespace orvalle::contract {

/// Asks the native client, and waits for what it says. "-" stands for an answer that is absent, "?" for none.
class HttpRig : public ::testing::Test {
 protected:
  HttpRig() {
    auto pattern = (std::filesystem::temp_directory_path() / "orvalle-http-XXXXXX").string();
    folder = ::mkdtemp(pattern.data());
    file = folder / "pacchetto.zip";
  }
  ~HttpRig() override { std::filesystem::remove_all(folder); }

  std::string get(const std::string& url) {
    std::string said = "?";
    const auto request = client->get(url, [&](const auto& body) { said = body.value_or("-"); });
    EXPECT_EQ(said, "?") << "answered inside the call";
    runUntil([&] { return said != "?"; });
    return said;
  }
  /// The status.
  std::string download(const std::string& url) {
    std::filesystem::remove(file);
    std::string said = "?";
    const auto request = client->download(
        url, file, [&](std::optional<int> status) { said = status ? std::to_string(*status) : "-"; });
    EXPECT_EQ(said, "?") << "answered inside the call";
    runUntil([&] { return said != "?"; }, std::chrono::seconds(60));
    return said;
  }
  std::string contents() const {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::unique_ptr<platform::HttpClient> client = native::makeHttpClient(std::chrono::seconds(2));
  std::filesystem::path folder;
  std::filesystem::path file;
};

}  // namespace orvalle::contract
