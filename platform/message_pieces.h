#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvalle::platform {

/// A page's messages, put together from the pieces in which they come: a very long one would hold up the main
/// loop while the web view's library takes it in. The first character of a piece says what the rest is: "=" a
/// whole message, "<" the beginning of one, "+" more of it, ">" its end.
class MessagePieces {
 public:
  /// Takes the next piece; the message once it is whole. What a page that has gone did not finish is dropped,
  /// and so are pieces without a beginning.
  std::optional<std::string> take(std::string_view piece);
  /// Whether more pieces of a message are to come.
  bool unfinished() const { return message_.has_value(); }

 private:
  /// The unfinished message.
  std::optional<std::string> message_;
};

}  // namespace orvalle::platform
