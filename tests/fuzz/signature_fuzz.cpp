// Whatever lies in the manifest of a bundle's signature: it is a list of files, folders and links or nothing,
// and what is read can be written and read again.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/linux/codesign/manifest.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvalle::platform::linuxos;
  using Kind = ManifestEntry::Kind;
  const auto manifest = readManifest({reinterpret_cast<const char*>(data), size});
  if (!manifest) return 0;
  for (const auto& [path, entry] : *manifest) {
    if (entry.mode > 0777) std::abort();
    if (entry.kind != Kind::File && !entry.sha256.empty()) std::abort();
    if (entry.kind == Kind::Link ? entry.mode != 0 : !entry.target.empty()) std::abort();
  }
  const auto text = writeManifest(*manifest);
  if (!text || readManifest(*text) != manifest) std::abort();
  return 0;
}
