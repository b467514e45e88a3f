#include "platform/linux/codesign/bundle_tree.h"

#include <sodium.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>

#include "platform/linux/codesign/file_reader.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;
using Kind = ManifestEntry::Kind;

constexpr unsigned kModeBits = 0777;
constexpr unsigned kSpecialBits = 07000;
constexpr fs::perms kWritableByOthers = fs::perms::group_write | fs::perms::others_write;

std::optional<std::string> sha256Of(const fs::path& path) {
  crypto_hash_sha256_state state;
  crypto_hash_sha256_init(&state);
  const bool whole = readFile(path, [&](std::string_view piece) {
    crypto_hash_sha256_update(&state, reinterpret_cast<const unsigned char*>(piece.data()), piece.size());
  });
  if (!whole) return {};
  std::array<unsigned char, crypto_hash_sha256_BYTES> hash{};
  crypto_hash_sha256_final(&state, hash.data());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> text{};
  sodium_bin2hex(text.data(), text.size(), hash.data(), hash.size());
  return text.data();
}

/// Whether a link at this depth stays inside: relative, and climbing, if at all, first and not beyond the
/// root. What it passes on its way down are folders, or links that stay inside as well.
bool staysInside(const fs::path& target, int depth) {
  if (target.empty() || target.is_absolute()) return false;
  bool climbing = true;
  for (const auto& part : target) {
    if (part == "..") {
      if (!climbing || --depth < 0) return false;
    } else if (part != "." && !part.empty()) {
      climbing = false;
    }
  }
  return true;
}

class Reader {
 public:
  explicit Reader(fs::path bundle) : bundle_(std::move(bundle)) {}

  std::variant<Manifest, Complaint> read() {
    std::error_code error;
    const auto root = fs::symlink_status(bundle_, error);
    if (!fs::is_directory(root)) return Complaint{bundle_.string() + ": non è una cartella"};
    // Its mode is not signed, as each user decides who else may open the bundle. Who may write in the root
    // can put anything in the place of what was signed.
    if ((root.permissions() & kWritableByOthers) != fs::perms::none)
      return Complaint{bundle_.string() + ": aperto in scrittura ad altri"};
    readFolder("", 0);
    if (complaint_) return *complaint_;
    return std::move(manifest_);
  }

 private:
  /// `path` is the folder's from the root, and ends in a slash unless empty.
  void readFolder(const std::string& path, int depth) {
    std::error_code error;
    fs::directory_iterator entry(bundle_ / path, error);
    for (const fs::directory_iterator end; !error && !complaint_ && entry != end; entry.increment(error)) {
      const auto own = path + entry->path().filename().string();
      if (own == kSignatureFolder) continue;
      readEntry(own, entry->path(), depth);
    }
    if (error) complain(path, error.message());
  }

  void readEntry(const std::string& own, const fs::path& path, int depth) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return complain(own, "non si può leggere");
    ManifestEntry entry;
    entry.mode = status.st_mode & kModeBits;
    if (S_ISLNK(status.st_mode)) {
      std::error_code error;
      entry.kind = Kind::Link;
      entry.mode = 0;
      entry.target = fs::read_symlink(path, error).string();
      if (error || !staysInside(entry.target, depth))
        return complain(own, "collegamento che esce dal pacchetto");
    } else if (status.st_mode & kSpecialBits) {
      return complain(own, "permessi speciali");
    } else if (S_ISDIR(status.st_mode)) {
      entry.kind = Kind::Folder;
    } else if (S_ISREG(status.st_mode)) {
      auto hash = sha256Of(path);
      if (!hash) return complain(own, "non si può leggere");
      entry.sha256 = std::move(*hash);
    } else {
      return complain(own, "non è un file");
    }
    const bool folder = entry.kind == Kind::Folder;
    manifest_.emplace(own, std::move(entry));
    if (folder) readFolder(own + "/", depth + 1);
  }

  void complain(const std::string& path, const std::string& what) {
    if (!complaint_) complaint_ = Complaint{path + ": " + what};
  }

  fs::path bundle_;
  Manifest manifest_;
  std::optional<Complaint> complaint_;
};

}  // namespace

std::variant<Manifest, Complaint> readTree(const fs::path& bundle) {
  return Reader(bundle).read();
}

}  // namespace orvalle::platform::linuxos
