#include "platform/defaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "base/atomic_file.h"
#include "base/json.h"
#include "base/text.h"
#include "platform/linux/base_folders.h"
#include "platform/linux/factory.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;
using base::Json;

std::error_code lastError() {
  return {errno, std::generic_category()};
}

/// Tells one content of a file from another without reading it.
struct Stamp {
  dev_t device = 0;
  ino_t inode = 0;
  off_t size = 0;
  timespec modified{};
  timespec changed{};
  /// Why the file could not be looked at; 0 when it could.
  int error = 0;

  static Stamp of(const fs::path& path) {
    struct stat status {};
    Stamp stamp;
    if (::stat(path.c_str(), &status) != 0) {
      stamp.error = errno;
    } else {
      stamp = {status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim, 0};
    }
    return stamp;
  }

  bool operator==(const Stamp& other) const {
    const auto same = [](const timespec& a, const timespec& b) {
      return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
    };
    return device == other.device && inode == other.inode && size == other.size &&
           same(modified, other.modified) && same(changed, other.changed) && error == other.error;
  }
};

/// The whole contents of a regular file. Never waits for a pipe's other end.
std::error_code readFile(const fs::path& path, std::string& contents) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return lastError();
  std::error_code error;
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    error = lastError();
  } else if (!S_ISREG(status.st_mode)) {
    error = std::make_error_code(std::errc::invalid_argument);
  }
  char buffer[8192];
  while (!error) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count > 0) {
      contents.append(buffer, static_cast<std::size_t>(count));
    } else if (count == 0) {
      break;
    } else if (errno != EINTR) {
      error = lastError();
    }
  }
  ::close(descriptor);
  return error;
}

std::optional<Defaults::Value> toValue(const Json& json) {
  if (json.is_bool()) return json.get_bool();
  if (json.is_int64()) return json.get_int64();
  if (json.is_double()) return json.get_double();
  if (json.is_string()) return std::string(json.get_string());
  return {};
}

Json toJson(const Defaults::Value& value) {
  return std::visit([](const auto& held) { return Json(held); }, value);
}

/// One JSON object in one file. The file is looked at for every read and parsed again only when it is another
/// one than before.
class JsonFileDefaults final : public Defaults {
 public:
  JsonFileDefaults(fs::path path, SystemLog& log) : path_(std::move(path)), log_(log) {}

  std::optional<Value> value(std::string_view key) const override {
    refresh();
    if (const Json* kept = unwritten_.if_contains(key)) return toValue(*kept);
    const Json* stored = stored_.if_contains(key);
    return stored ? toValue(*stored) : std::nullopt;
  }

  void set(std::string_view key, const Value& value) override {
    const Json json = toJson(value);
    if (!base::isValidUtf8(key) || !base::writeJson(json)) return;
    refresh();
    const Json* stored = stored_.if_contains(key);
    if (unwritten_.empty() && stored && *stored == json) return;

    unwritten_.insert_or_assign(key, json);
    if (blocked_) return;
    auto merged = stored_;
    for (const auto& [name, kept] : unwritten_) merged.insert_or_assign(name, kept);
    const auto error = write(merged);
    if (error && error != writeError_) log("impostazioni non salvate", error.message());
    writeError_ = error;
    if (!error) unwritten_.clear();
  }

 private:
  /// Brings `stored_` up to date with the file.
  void refresh() const {
    const auto stamp = Stamp::of(path_);
    if (stamp_ == stamp) return;
    stamp_ = stamp;
    blocked_ = false;
    stored_.clear();
    if (stamp.error == ENOENT) return;

    std::string contents;
    if (const auto error = readFile(path_, contents)) {
      // Not ours to replace: whatever is in there stays.
      blocked_ = true;
      log("impostazioni non leggibili", error.message());
      return;
    }
    auto document = base::parseJson(contents);
    // What could not be written back whole would be lost with the next setting.
    if (document && document->is_object() && base::writeJson(*document)) {
      stored_ = std::move(document->get_object());
    } else {
      setAside();
    }
  }

  void setAside() const {
    const auto aside = fs::path(path_) += ".unreadable";
    if (::rename(path_.c_str(), aside.c_str()) == 0) {
      log("impostazioni illeggibili, messe da parte", aside.string());
    } else {
      const auto error = lastError();
      blocked_ = true;
      log("impostazioni illeggibili, lasciate dove sono", error.message());
    }
  }

  std::error_code write(const boost::json::object& object) const {
    // Where the user has put a link, the settings live at its other end.
    std::error_code error;
    const auto target = fs::is_symlink(path_, error) ? fs::weakly_canonical(path_, error) : path_;
    if (error && error != std::errc::no_such_file_or_directory) return error;
    if (g_mkdir_with_parents(path_.parent_path().c_str(), 0700) != 0) return lastError();
    return base::replaceFile(target, *base::writeJson(object) + '\n',
                             fs::perms::owner_read | fs::perms::owner_write);
  }

  void log(std::string_view what, const std::string& detail) const {
    log_.write("Orvalle: " + std::string(what) + ": " + detail);
  }

  fs::path path_;
  SystemLog& log_;
  /// The file last seen, and what was in it.
  mutable std::optional<Stamp> stamp_;
  mutable boost::json::object stored_;
  /// There is a file that we could neither read nor set aside: it must not be replaced.
  mutable bool blocked_ = false;
  /// What could not be written: valid for this run, and written as soon as that is possible.
  boost::json::object unwritten_;
  std::error_code writeError_;
};

}  // namespace

std::unique_ptr<Defaults> makeDefaults(const Environment& environment, SystemLog& log) {
  return std::make_unique<JsonFileDefaults>(
      baseFolder(environment, "XDG_CONFIG_HOME", ".config") / "Orvalle" / "defaults.json", log);
}

}  // namespace orvalle::platform::linuxos
