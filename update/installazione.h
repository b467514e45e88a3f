#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/liveness.h"
#include "base/scratch_folder.h"
#include "base/subscription.h"
#include "link/web_address.h"
#include "platform/platform.h"
#include "update/esegui.h"
#include "update/rilascio.h"

namespace orvalle::update {

/// Brings a release into the installed one's place: downloads its package, unpacks and checks it, and ends
/// the program while a script swaps the bundles. One at a time: as long as one is under way, others are
/// ignored. Whatever goes wrong is told to the user, and leaves everything as it was.
class Installazione {
 public:
  /// What is passed must outlive this.
  Installazione(const platform::Platform& platform, const link::WebAddress& address);
  Installazione(const Installazione&) = delete;
  Installazione& operator=(const Installazione&) = delete;

  /// Downloads and installs a release. Its address must be encrypted, or on this machine.
  void scarica(const Rilascio& rilascio);
  /// Unpacks the archive, checks that it holds this same program, whole and signed, and swaps.
  void installa(const std::filesystem::path& zip, const std::string& versione);
  /// Starts the swap of the installed bundle for `nuova`, which is moved away, and ends the program.
  void scambiaERiavvia(const std::filesystem::path& nuova, const std::string& versione);

  /// The swap to this version has begun; the program ends next.
  std::function<void(const std::string& versione)> onScambio;

 private:
  using Folder = std::unique_ptr<base::ScratchFolder>;

  /// False when the program cannot be replaced; the user has been told then.
  bool replaceable();
  void download(const std::string& url, const std::string& versione);
  void downloaded(std::optional<int> status, const std::string& versione);
  void unpack(const std::filesystem::path& zip, const std::string& versione, const std::string& listing);
  void check(const std::string& versione);
  /// Gives up as soon as what is written into the folder would leave its disk less than its reserve.
  void watchDisk(const std::filesystem::path& folder);
  /// Runs the next tool, and goes on with its output when it succeeds.
  void run(const platform::Command& command, std::function<void(const std::string& output)> next);
  /// Ends the installation that is under way: removes what it needed.
  void finish();
  void fail(const std::string& message, const std::string& informative);
  void failUpdate(const std::string& reason) { fail("Aggiornamento non riuscito.", reason); }
  void show(const std::string& message, const std::string& informative);

  platform::Platform platform_;
  const link::WebAddress& address_;
  bool underWay_ = false;
  /// Holds the archive.
  Folder downloads_;
  /// Holds what was in it.
  Folder work_;
  base::Subscription progress_;
  base::Subscription transfer_;
  base::Subscription tool_;
  base::Subscription diskWatch_;
  base::Liveness liveness_;
};

}  // namespace orvalle::update
