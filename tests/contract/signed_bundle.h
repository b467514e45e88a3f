#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "platform/linux/codesign/bundle_signature.h"

namespace orvalle::contract {

/// A small bundle in a folder of the test's own: a program, a page and a link.
class SignedBundle : public ::testing::Test {
 protected:
  SignedBundle() {
    auto pattern = (std::filesystem::temp_directory_path() / "orvalle-bundle-XXXXXX").string();
    root = ::mkdtemp(pattern.data());
    app = root / "installata" / "Orvalle.app";
    makeBundle(app, "vecchio");
  }
  ~SignedBundle() override { std::filesystem::remove_all(root); }

  static void write(const std::filesystem::path& path, const std::string& text, unsigned mode = 0644) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
    std::filesystem::permissions(path, std::filesystem::perms(mode));
  }
  static std::string read(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }
  void makeBundle(const std::filesystem::path& path, const std::string& program,
                  const std::string& identifier = "app.orvalle.Orvalle") const {
    write(path / "AppRun", "#!/bin/sh\necho " + program + " >\"" + (root / "partita").string() + "\"\n",
          0755);
    write(path / "bin" / "orvalle", program, 0755);
    write(path / "share" / "pagina.html", std::string(100'000, 'p'));
    std::filesystem::create_symlink("../bin/orvalle", path / "share" / "programma");
    write(path / "Info.json", R"({"CFBundleIdentifier":")" + identifier + R"(","CFBundleVersion":"2"})");
    std::filesystem::permissions(path, std::filesystem::perms(0755));
    ASSERT_EQ(platform::linuxos::signBundle(path), std::nullopt);
  }
  /// Everything below a folder: path to kind, mode and contents.
  static std::map<std::string, std::string> everything(const std::filesystem::path& folder) {
    std::map<std::string, std::string> found;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      const auto status = entry.symlink_status();
      auto& text = found[entry.path().lexically_relative(folder).string()];
      text = std::to_string(static_cast<int>(status.type())) + " " +
             std::to_string(static_cast<unsigned>(status.permissions())) + " ";
      if (entry.is_symlink()) {
        text += std::filesystem::read_symlink(entry.path()).string();
      } else if (entry.is_regular_file()) {
        text += read(entry.path());
      }
    }
    return found;
  }

  std::filesystem::path root;
  std::filesystem::path app;
};

}  // namespace orvalle::contract
