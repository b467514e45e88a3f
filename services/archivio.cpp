#include "services/archivio.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <system_error>
#include <utility>

#include <boost/json/array.hpp>

#include "base/atomic_file.h"
#include "base/iso8601.h"
#include "base/json.h"
#include "base/text.h"

namespace orvalle::services {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kKept = 30;
constexpr std::string_view kEnding = ".json";

std::string lastComponent(const std::string& name) {
  return name.substr(name.rfind('/') + 1);
}

std::uintmax_t sizeOf(const fs::path& file) {
  std::error_code error;
  const auto size = fs::file_size(file, error);
  return error ? 0 : size;
}

std::chrono::sys_seconds modified(const fs::path& file) {
  std::error_code error;
  const auto time = fs::last_write_time(file, error);
  if (error) return {};
  return std::chrono::floor<std::chrono::seconds>(fs::file_time_type::clock::to_sys(time));
}

}  // namespace

Archivio::Archivio(const platform::UserFolders& folders, platform::Background& background,
                   platform::SystemLog& log)
    : folders_(folders), background_(background), log_(log) {}

fs::path Archivio::cartella() const {
  return folders_.documents() / "Orvalle Backup";
}

void Archivio::scrivi(const std::string& nome, std::string contenuto,
                      std::function<void(std::optional<std::string>)> done) {
  const auto folder = cartella();
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) {
    logFailure(error);
    return done({});
  }
  const auto name = lastComponent(nome);
  if (name.empty() || name == "." || name == "..") return done({});
  if (name.find('\0') != std::string::npos) {
    // The system would take the name to end there.
    logFailure(std::make_error_code(std::errc::invalid_argument));
    return done({});
  }

  const auto outcome = std::make_shared<std::error_code>();
  const auto file = folder / name;
  background_.run(
      [outcome, file, text = std::move(contenuto)] {
        *outcome = base::replaceFile(file, text, fs::perms::owner_read | fs::perms::owner_write);
      },
      liveness_.guard([this, outcome, file, done = std::move(done)] {
        if (*outcome) {
          logFailure(*outcome);
          return done({});
        }
        poda();
        done(file.string());
      }));
}

std::string Archivio::ultimo() const {
  const auto all = names();
  return all.empty() ? "" : all.back();
}

std::string Archivio::elencoJSON() const {
  auto all = names();
  std::reverse(all.begin(), all.end());
  const auto folder = cartella();
  boost::json::array list;
  for (const auto& name : all) {
    const auto file = folder / name;
    list.push_back({{"nome", name}, {"peso", sizeOf(file)}, {"quando", base::writeIso8601(modified(file))}});
  }
  return base::writeJson(list).value_or("[]");
}

std::vector<std::string> Archivio::names() const {
  std::vector<std::string> found;
  std::error_code error;
  for (fs::directory_iterator entry(cartella(), error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    auto name = entry->path().filename().string();
    // A foreign file whose name is no text must not spoil the list for all others.
    if (name.ends_with(kEnding) && base::isValidUtf8(name)) found.push_back(std::move(name));
  }
  std::sort(found.begin(), found.end());
  return found;
}

void Archivio::poda() const {
  const auto all = names();
  const auto folder = cartella();
  // Not the library's removal, which would take empty folders too.
  for (std::size_t i = 0; i + kKept < all.size(); ++i) ::unlink((folder / all[i]).c_str());
}

void Archivio::logFailure(const std::error_code& error) const {
  log_.write("Orvalle: backup — " + error.message());
}

}  // namespace orvalle::services
