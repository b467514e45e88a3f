#include "services/day_files.h"

#include "base/atomic_file.h"
#include "base/private_folder.h"
#include "base/read_file.h"

namespace orvalle::services {
namespace {

namespace fs = std::filesystem;

/// More than a day of blocks can come to.
constexpr std::size_t kLargestFile = 64 << 20;

}  // namespace

fs::path DayFiles::file(const std::string& giorno) const {
  // Text put together, not paths: a key that looks like a path must not lead away from the folder.
  return folder_.native() + '/' + giorno + ".json";
}

std::error_code DayFiles::makeFolder() const {
  return base::makePrivateFolder(folder_);
}

std::vector<Blocco> DayFiles::load(const std::string& giorno) const {
  const auto contents = base::readFile(file(giorno), kLargestFile);
  return contents ? decodeBlocchi(*contents).value_or(std::vector<Blocco>()) : std::vector<Blocco>();
}

std::error_code DayFiles::save(const std::string& giorno, const std::vector<Blocco>& blocchi) const {
  if (const auto error = makeFolder()) return error;
  const auto contents = encodeBlocchi(blocchi);
  if (!contents) return std::make_error_code(std::errc::illegal_byte_sequence);
  return base::replaceFile(file(giorno), *contents, fs::perms::owner_read | fs::perms::owner_write);
}

}  // namespace orvalle::services
