#include "demo/server/options.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace orvalle::demo {
namespace {

constexpr unsigned kHighestPort = 65535;
constexpr unsigned kPortsTried = 100;
constexpr unsigned kLongestIdle = 86400;

std::optional<unsigned> numberFrom(std::string_view text, unsigned lowest, unsigned highest) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

}  // namespace

const char* const kHelp =
    "Uso: orvalle-demo [OPZIONI]\n"
    "\n"
    "Serve l'applicazione web di Orvalle su http://localhost:4717/ e vi apre Orvalle.\n"
    "Se la porta è occupata prende la prima libera tra le cento che seguono.\n"
    "\n"
    "  --serve-only  serve soltanto, senza aprire Orvalle\n"
    "  --port N      prima porta da provare (0: la sceglie il sistema)\n"
    "  --page DIR    cartella della pagina\n"
    "  --app PATH    programma da avviare al posto di Orvalle\n"
    "  --updates DIR cartella con versione.json e i pacchetti, pubblicata sotto /mac/\n"
    "  --keys FILE   file delle chiavi di abbinamento, se non sono nell'ambiente\n"
    "                (ORVALLE_DEMO_ANON_KEY e ORVALLE_DEMO_CHANNEL_KEY)\n"
    "  --idle N      secondi di silenzio dopo i quali si chiude un collegamento in tempo reale (60)\n"
    "  --help        mostra questo aiuto\n"
    "  --version     mostra la versione\n";

std::variant<Options, UsageError> readOptions(const std::vector<std::string_view>& arguments,
                                              const std::filesystem::path& executable) {
  const std::filesystem::path bundle = executable.parent_path().parent_path();
  Options options;
  options.page = bundle / "share/orvalle-demo/page";
  options.app = bundle / "AppRun";

  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view name = arguments[i];
    if (name == "--help" || name == "--version") {
      options.action = name == "--help" ? Options::Action::ShowHelp : Options::Action::ShowVersion;
      return options;
    }
    if (name == "--serve-only") {
      options.action = Options::Action::Serve;
      continue;
    }
    std::filesystem::path* path = name == "--page"      ? &options.page
                                  : name == "--app"     ? &options.app
                                  : name == "--updates" ? &options.updates
                                  : name == "--keys"    ? &options.keys
                                                        : nullptr;
    if (!path && name != "--port" && name != "--idle") {
      return UsageError{"opzione sconosciuta: " + std::string(name)};
    }
    if (i + 1 == arguments.size()) return UsageError{"manca il valore di " + std::string(name)};
    const std::string_view value = arguments[++i];
    if (name == "--port") {
      const auto first = numberFrom(value, 0, kHighestPort);
      if (!first) return UsageError{"porta non valida: " + std::string(value)};
      options.ports = {*first, std::min(*first + kPortsTried - 1, kHighestPort)};
    } else if (name == "--idle") {
      const auto seconds = numberFrom(value, 1, kLongestIdle);
      if (!seconds) return UsageError{"numero di secondi non valido: " + std::string(value)};
      options.idle = std::chrono::seconds(*seconds);
    } else {
      *path = std::filesystem::absolute(value);
    }
  }
  return options;
}

}  // namespace orvalle::demo
