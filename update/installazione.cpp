#include "update/installazione.h"

#include <chrono>
#include <fstream>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include "base/atomic_file.h"
#include "base/url.h"
#include "base/uuid.h"
#include "update/swap_script.h"

namespace orvalle::update {
namespace {

namespace fs = std::filesystem;

constexpr int kOk = 200;
/// What the rest of the desktop is left on each disk.
constexpr std::uintmax_t kReserve = 64ULL * 1024 * 1024;
constexpr std::chrono::milliseconds kDiskLook{200};
constexpr char kNoRoom[] = "Non c'è abbastanza spazio sul disco.";

/// What a zip archive begins with. The unpacker knows many other kinds, and no server of ours sends them.
constexpr std::string_view kZip = "PK";

bool isZip(const fs::path& file) {
  std::string begin(kZip.size(), '\0');
  std::ifstream(file, std::ios::binary).read(begin.data(), static_cast<std::streamsize>(begin.size()));
  return begin == kZip;
}

/// Encrypted, or from this very machine.
bool isTrusted(const base::Url& url) {
  return url.scheme() == "https" || url.host() == "localhost";
}

std::string sentence(platform::SwapObstacle obstacle) {
  switch (obstacle) {
    case platform::SwapObstacle::NoBundle:
      return "Orvalle non sta girando da Orvalle.app, quindi non c'è nulla da sostituire.";
    case platform::SwapObstacle::Packaged:
      return "Orvalle fa parte del sistema: lo aggiorna il gestore dei pacchetti.";
    case platform::SwapObstacle::FolderNotWritable:
      return "Non ho il permesso di scrivere nella cartella in cui sta Orvalle.app.";
    case platform::SwapObstacle::NotRemovable:
      return "Non ho il permesso di rimuovere Orvalle.app, o qualcosa che c'è dentro.";
  }
  return "";
}

/// Bytes that may still be written at `path`. Where nobody can tell, the writing itself will show.
std::uintmax_t roomAt(const fs::path& path) {
  std::error_code error;
  const auto space = fs::space(path, error);
  if (error) return UINTMAX_MAX;
  return space.available > kReserve ? space.available - kReserve : 0;
}

bool onSameDisk(const fs::path& one, const fs::path& other) {
  std::error_code error;
  const auto first = fs::space(one, error);
  const auto second = fs::space(other, error);
  return first.capacity == second.capacity && first.free == second.free;
}

/// Whether a bundle of this size can lie in `work` and then, beside it, where the installed one is.
bool hasRoomFor(std::uintmax_t bytes, const fs::path& work, const fs::path& installed) {
  const auto room = roomAt(work);
  if (bytes > room) return false;
  return bytes <= (onSameDisk(work, installed) ? room - bytes : roomAt(installed));
}

/// The first bundle, by its name, in the folder's own order.
std::optional<fs::path> findBundle(const fs::path& folder, std::error_code& error) {
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (entry->path().filename().native().ends_with(".app")) return entry->path();
  }
  return {};
}

}  // namespace

Installazione::Installazione(const platform::Platform& platform, const link::WebAddress& address)
    : platform_(platform), address_(address) {}

void Installazione::scarica(const Rilascio& rilascio) {
  if (underWay_) return;
  const auto url = base::resolve(rilascio.url, address_.indirizzo());
  if (!url || !isTrusted(*url))
    return show("Aggiornamento non valido.", "L'indirizzo del pacchetto non è affidabile.");
  if (!replaceable()) return;
  std::error_code error;
  downloads_ = base::ScratchFolder::make(platform_.userFolders.temporary(), "orvalle-scarico-", error);
  if (!downloads_) return failUpdate(error.message());
  download(url->text(), rilascio.versione);
}

bool Installazione::replaceable() {
  const auto obstacle = platform_.bundle.swapObstacle();
  if (obstacle) failUpdate(sentence(*obstacle));
  return !obstacle;
}

void Installazione::download(const std::string& url, const std::string& versione) {
  underWay_ = true;
  // A server need not say how much it sends, nor ever come to an end.
  watchDisk(downloads_->path());
  transfer_ = platform_.http.download(
      url, downloads_->path() / "pacchetto.zip",
      liveness_.guard([this, versione](std::optional<int> status) { downloaded(status, versione); }));
  platform_.application.activate();
  progress_ = platform_.alerts.showProgress(
      {"Sto scaricando Orvalle " + versione + "…", "Ci vuole un momento.", {"Annulla"}},
      liveness_.guard([this, versione](std::size_t) { downloaded({}, versione); }));
}

void Installazione::downloaded(std::optional<int> status, const std::string& versione) {
  progress_.reset();
  transfer_.reset();
  diskWatch_.reset();
  // The disk may have filled up between two looks at it.
  if (!status && roomAt(downloads_->path()) == 0) return failUpdate(kNoRoom);
  if (status != kOk) return fail("Scaricamento non riuscito.", "Riprova più tardi.");
  installa(downloads_->path() / "pacchetto.zip", versione);
}

void Installazione::installa(const fs::path& zip, const std::string& versione) {
  underWay_ = true;
  if (!replaceable()) return;
  std::error_code error;
  work_ = base::ScratchFolder::make(platform_.userFolders.temporary(), "orvalle-agg-", error);
  if (!work_) return failUpdate(error.message());
  if (!isZip(zip)) return failUpdate("Il pacchetto non è un archivio zip.");
  run(platform_.packageTools.list(zip),
      [this, zip, versione](const std::string& listing) { unpack(zip, versione, listing); });
}

void Installazione::unpack(const fs::path& zip, const std::string& versione, const std::string& listing) {
  const auto judgement = platform_.packageTools.judge(listing);
  if (const auto* reason = std::get_if<std::string>(&judgement)) return failUpdate(*reason);
  if (!hasRoomFor(std::get<std::uintmax_t>(judgement), work_->path(), platform_.bundle.path().parent_path()))
    return failUpdate(kNoRoom);
  // An archive may hold more than it says.
  watchDisk(work_->path());
  run(platform_.packageTools.unpack(zip, work_->path()), [this, versione](const std::string&) {
    diskWatch_.reset();
    check(versione);
  });
}

void Installazione::check(const std::string& versione) {
  std::error_code error;
  const auto found = findBundle(work_->path(), error);
  if (error) return failUpdate(error.message());
  if (!found) return fail("Pacchetto incompleto.", "Dentro non c'è nessuna app.");
  // Only a folder is a bundle: a link's target is not what would be checked and copied.
  const bool isFolder = fs::is_directory(fs::symlink_status(*found, error));
  if (!isFolder || platform_.bundle.identifierOf(*found) != platform_.bundle.identifier())
    return fail("Pacchetto non riconosciuto.", "Non sembra Orvalle.");
  run(platform_.packageTools.verify(*found),
      [this, found = *found, versione](const std::string&) { scambiaERiavvia(found, versione); });
}

void Installazione::watchDisk(const fs::path& folder) {
  diskWatch_ = platform_.loop.every(kDiskLook, liveness_.guard([this, folder] {
    if (roomAt(folder) == 0) failUpdate(kNoRoom);
  }));
}

void Installazione::run(const platform::Command& command, std::function<void(const std::string&)> next) {
  tool_ = esegui(platform_.processes, command,
                 liveness_.guard([this, next = std::move(next)](const Esito& esito) {
                   if (esito.errore) return failUpdate(*esito.errore);
                   next(esito.output);
                 }));
}

void Installazione::scambiaERiavvia(const fs::path& nuova, const std::string& versione) {
  if (!replaceable()) return;
  const auto folder = platform_.userFolders.temporary();
  const auto copy = folder / ("orvalle-nuova-" + base::randomUuid() + ".app");
  const auto script = folder / ("orvalle-scambio-" + base::randomUuid() + ".sh");
  std::error_code error;
  // What was checked is what is installed: moved out of one private place it becomes another, untouched.
  fs::permissions(nuova, fs::perms::owner_all, error);
  if (!error) fs::rename(nuova, copy, error);
  if (!error) error = base::replaceFile(script, swapScript(platform_.packageTools), fs::perms(0755));
  if (error) return failUpdate(error.message());
  const auto reason = platform_.processes.startDetached(
      "/bin/sh", {script, std::to_string(platform_.processes.ownId()), platform_.bundle.path(), copy});
  if (reason) return failUpdate(*reason);
  if (onScambio) onScambio(versione);
  platform_.application.terminate();
  finish();
}

void Installazione::finish() {
  underWay_ = false;
  progress_.reset();
  transfer_.reset();
  tool_.reset();
  diskWatch_.reset();
  // Much may lie in them.
  auto folders = std::make_shared<std::pair<Folder, Folder>>(std::move(downloads_), std::move(work_));
  platform_.background.run([folders] { *folders = std::pair<Folder, Folder>(); }, [] {});
}

void Installazione::fail(const std::string& message, const std::string& informative) {
  show(message, informative);
  finish();
}

void Installazione::show(const std::string& message, const std::string& informative) {
  platform_.application.activate();
  platform_.alerts.show({message, informative, {"Va bene"}}, [](std::size_t) {});
}

}  // namespace orvalle::update
