#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orvalle::base {

/// A query item: its name and, where an equals sign follows the name, its value; both decoded.
struct QueryItem {
  std::string name;
  std::optional<std::string> value;
  bool operator==(const QueryItem&) const = default;
};

/// Percent-encodes UTF-8 text for a query item: letters, digits and - . _ ~ ! $ ' ( ) * + , ; : @ / ? stay,
/// every other byte becomes %XX in upper case. The plus sign stays a plus sign.
std::string encodeQueryText(std::string_view text);

/// The parts of an RFC 3986 URI reference, each still encoded as it was written, to take apart or to change
/// and put together again. Case is preserved everywhere. The empty text has components too (an empty path).
struct UrlComponents {
  std::optional<std::string> scheme;
  /// "user@host:port" as written; present, if only empty, when "//" was.
  std::optional<std::string> authority;
  std::string path;
  std::optional<std::string> query;
  std::optional<std::string> fragment;

  /// Absent when the text is not a valid reference: blanks, control characters, non-ASCII characters, bad
  /// %XX, unbalanced brackets, a port that is not a number.
  static std::optional<UrlComponents> parse(std::string_view text);

  /// The query's items in order; absent without a query. A name or value that does not decode to UTF-8 leaves
  /// that item without a value.
  std::optional<std::vector<QueryItem>> queryItems() const;
  /// Replaces the query by these items, encoded by `encodeQueryText`.
  void setQueryItems(const std::vector<QueryItem>& items);

  /// The text of the whole reference; absent when the parts do not form one.
  std::optional<std::string> text() const;
};

/// A parsed, non-empty URI reference. Immutable.
class Url {
 public:
  /// Absent for the empty text and for whatever `UrlComponents::parse` refuses.
  static std::optional<Url> parse(std::string_view text);

  const std::string& text() const { return text_; }
  const std::optional<std::string>& scheme() const { return scheme_; }
  /// The host as written, without user and port; absent when there is none or it is empty.
  const std::optional<std::string>& host() const { return host_; }

 private:
  Url() = default;

  std::string text_;
  std::optional<std::string> scheme_;
  std::optional<std::string> host_;
};

/// The beginning, scheme and authority, of an address that a browser has taken apart and written again.
/// Behind these it leaves characters as they are that RFC 3986 does not allow. Absent where the beginning is
/// no URL.
std::optional<Url> parseOrigin(std::string_view address);

/// The reference as an address of its own, relative ones seen from `home` (RFC 3986, 5.2). Absent when it is
/// empty or not valid, and when it is relative and `home` has no scheme.
std::optional<Url> resolve(std::string_view reference, const Url& home);

}  // namespace orvalle::base
