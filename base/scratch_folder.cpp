#include "base/scratch_folder.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "base/uuid.h"

namespace orvalle::base {
namespace {

namespace fs = std::filesystem;

/// Makes every folder in it one that its owner may empty.
void open(const fs::path& folder) {
  std::error_code error;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code unknown;
    if (entry->symlink_status(unknown).type() == fs::file_type::directory) open(entry->path());
  }
}

}  // namespace

std::unique_ptr<ScratchFolder> ScratchFolder::make(const fs::path& parent, std::string_view prefix,
                                                   std::error_code& error) {
  fs::create_directories(parent, error);
  if (error) return nullptr;
  auto path = parent / (std::string(prefix) + randomUuid());
  // Fails where somebody was faster: what is there is never taken over.
  if (::mkdir(path.c_str(), S_IRWXU) != 0) {
    error = {errno, std::generic_category()};
    return nullptr;
  }
  return std::unique_ptr<ScratchFolder>(new ScratchFolder(std::move(path)));
}

ScratchFolder::ScratchFolder(fs::path path) : path_(std::move(path)) {}

ScratchFolder::~ScratchFolder() {
  std::error_code error;
  fs::remove_all(path_, error);
  if (!error) return;
  open(path_);
  fs::remove_all(path_, error);
}

}  // namespace orvalle::base
