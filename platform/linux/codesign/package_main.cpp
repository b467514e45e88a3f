// orvalle-package: makes from a bundle what a server publishes as an update.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <boost/json/object.hpp>

#include "base/atomic_file.h"
#include "base/json.h"
#include "platform/linux/codesign/bundle_signature.h"
#include "platform/linux/codesign/file_reader.h"

namespace {

namespace fs = std::filesystem;
namespace native = orvalle::platform::linuxos;
namespace base = orvalle::base;

constexpr int kWrongUse = 2;
constexpr std::uintmax_t kLongestInformation = 1024 * 1024;
constexpr char kManifest[] = "versione.json";

constexpr char kHelp[] =
    "orvalle-package [--url ADDRESS] [--note TEXT] [--published TEXT] APP FOLDER\n"
    "Puts the signed bundle APP as a zip archive into FOLDER, and versione.json beside it, which tells of "
    "it.\n"
    "ADDRESS is where the archive will lie, as seen from the web application; without it, /mac/ and its "
    "name.\n";

int fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  return 1;
}

/// Runs a program and waits for it; whether it succeeded.
bool run(std::vector<std::string> words) {
  std::vector<char*> arguments;
  for (auto& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  if (::posix_spawn(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0) return false;
  int status = 1;
  return ::waitpid(child, &status, 0) == child && status == 0;
}

struct Information {
  std::string version;
  std::int64_t build = 0;
};

std::optional<Information> readInformation(const fs::path& bundle) {
  const auto text = native::readFile(bundle / "Info.json", kLongestInformation);
  const auto json = text ? base::parseJson(*text) : std::nullopt;
  if (!json) return {};
  const auto version = base::jsonText(base::jsonMember(*json, "CFBundleShortVersionString"));
  const auto build = base::jsonText(base::jsonMember(*json, "CFBundleVersion"));
  if (!version || !build) return {};
  Information information{*version, 0};
  const auto* end = build->data() + build->size();
  const auto read = std::from_chars(build->data(), end, information.build);
  if (read.ec != std::errc() || read.ptr != end) return {};
  return information;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  boost::json::object release;
  std::vector<std::string> places;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool more = i + 1 < words.size();
    if (words[i] == "--url" && more) {
      release["url"] = words[++i];
    } else if (words[i] == "--note" && more) {
      release["note"] = words[++i];
    } else if (words[i] == "--published" && more) {
      release["pubblicato"] = words[++i];
    } else if (words[i] == "--help") {
      std::fputs(kHelp, stdout);
      return 0;
    } else {
      places.push_back(words[i]);
    }
  }
  if (places.size() != 2 || places[0].starts_with('-') || places[1].starts_with('-')) {
    std::fputs(kHelp, stderr);
    return kWrongUse;
  }

  std::error_code error;
  const auto bundle = fs::canonical(places[0], error);
  if (error) return fail(places[0] + ": " + error.message());
  if (const auto trouble = native::verifyBundle(bundle)) return fail(*trouble);
  const auto information = readInformation(bundle);
  if (!information) return fail("Info.json: versione o build mancante");
  const fs::path folder = places[1];
  fs::create_directories(folder, error);
  const auto name = "Orvalle-" + std::to_string(information->build) + ".zip";
  // Under its name it is whole at every moment, for those who are being served it.
  const auto unfinished = folder / (name + ".part");
  // The names in the archive begin with the bundle's own.
  if (!run({"/usr/bin/env", "LC_ALL=C.UTF-8", "/usr/bin/bsdtar", "-c", "--format", "zip", "-f", unfinished,
            "-C", bundle.parent_path(), bundle.filename()}))
    return fail(unfinished.string() + ": non si può scrivere");
  fs::rename(unfinished, folder / name, error);
  if (error) return fail((folder / name).string() + ": " + error.message());

  release["versione"] = information->version;
  release["build"] = information->build;
  if (!release.contains("url")) release["url"] = "/mac/" + name;
  const auto text = base::writeJson(release);
  if (!text) return fail("--note: non è UTF-8");
  error = base::replaceFile(folder / kManifest, *text + "\n", fs::perms(0644));
  if (error) return fail((folder / kManifest).string() + ": " + error.message());
  std::printf("%s\n%s\n", (folder / name).c_str(), (folder / kManifest).c_str());
}
