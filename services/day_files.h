#pragma once

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "services/blocco.h"

namespace orvalle::services {

/// The diary on the disk: a folder with one file for each day, named by the day key, that only the user can
/// read.
class DayFiles {
 public:
  explicit DayFiles(std::filesystem::path folder) : folder_(std::move(folder)) {}

  const std::filesystem::path& folder() const { return folder_; }
  /// Where the day's file is, whether or not it exists. The key is taken as it is.
  std::filesystem::path file(const std::string& giorno) const;
  /// Makes the folder unless it is there.
  [[nodiscard]] std::error_code makeFolder() const;
  /// The day's blocks; none when the file is missing or anything but a list of blocks. Changes nothing.
  std::vector<Blocco> load(const std::string& giorno) const;
  /// Replaces the day's file as a whole: a crash leaves the old or the new one.
  [[nodiscard]] std::error_code save(const std::string& giorno, const std::vector<Blocco>& blocchi) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace orvalle::services
