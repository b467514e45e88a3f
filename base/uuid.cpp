#include "base/uuid.h"

#include <array>
#include <random>

namespace orvalle::base {

std::string randomUuid() {
  std::random_device random;
  std::array<unsigned, 16> bytes{};
  for (auto& byte : bytes) byte = random() & 0xFF;
  bytes[6] = (bytes[6] & 0x0F) | 0x40;
  bytes[8] = (bytes[8] & 0x3F) | 0x80;

  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text;
}

}  // namespace orvalle::base
