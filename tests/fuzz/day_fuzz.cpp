// Whatever lies in a day file of the diary: it is a list of blocks or nothing, and what is read can be
// written and read again.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "services/blocco.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orvalle::services;
  const auto blocchi = decodeBlocchi({reinterpret_cast<const char*>(data), size});
  if (!blocchi) return 0;
  for (const auto& blocco : *blocchi) {
    if (blocco.minuti() < 0) std::abort();
  }
  const auto text = encodeBlocchi(*blocchi);
  if (!text || decodeBlocchi(*text) != blocchi) std::abort();
  return 0;
}
