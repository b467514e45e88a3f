#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/liveness.h"
#include "platform/background.h"
#include "platform/system_log.h"
#include "platform/user_folders.h"

namespace orvalle::services {

/// The backups that the page hands over: files in one folder of the user's documents, of which the thirty
/// with the greatest names are kept. Whatever ends in ".json" there is a backup, and the one with the
/// greatest name is the newest. Nothing is remembered: every call looks at the folder.
class Archivio {
 public:
  /// What is passed must outlive this.
  Archivio(const platform::UserFolders& folders, platform::Background& background, platform::SystemLog& log);
  Archivio(const Archivio&) = delete;
  Archivio& operator=(const Archivio&) = delete;

  /// The backup folder, whether or not it exists.
  std::filesystem::path cartella() const;
  /// Writes the text under the last component of `nome`, replacing what is there, and then removes what is
  /// too old. `done` is called once, on the main loop, possibly inside this call, with the file's path;
  /// absent when nothing was written, the reason being in the log unless `nome` was no name.
  void scrivi(const std::string& nome, std::string contenuto,
              std::function<void(std::optional<std::string> path)> done);
  /// The name of the newest backup; empty without one.
  std::string ultimo() const;
  /// The backups as JSON, the newest first: an array of "nome", "peso" (bytes) and "quando".
  std::string elencoJSON() const;

 private:
  /// The names of all backups in ascending order.
  std::vector<std::string> names() const;
  void poda() const;
  void logFailure(const std::error_code& error) const;

  const platform::UserFolders& folders_;
  platform::Background& background_;
  platform::SystemLog& log_;
  base::Liveness liveness_;
};

}  // namespace orvalle::services
