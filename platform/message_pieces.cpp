#include "platform/message_pieces.h"

#include <utility>

namespace orvalle::platform {

std::optional<std::string> MessagePieces::take(std::string_view piece) {
  if (piece.empty()) return std::nullopt;
  const char kind = piece.front();
  piece.remove_prefix(1);
  if (kind == '=' || kind == '<') message_.emplace();
  if (!message_) return std::nullopt;
  message_->append(piece);
  if (kind != '=' && kind != '>') return std::nullopt;
  return std::exchange(message_, std::nullopt);
}

}  // namespace orvalle::platform
