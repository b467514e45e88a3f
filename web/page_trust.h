#pragma once

#include <optional>
#include <set>
#include <string>

namespace orvalle::web {

/// Decides whether the document in the web view may use the desktop. Scripts can take the view anywhere, and
/// what they reach must not inherit the user's backups and notifications: a document is served while its host
/// is the web application's own or one that the application itself loaded, wherever the server redirected
/// that load.
class PageTrust {
 public:
  /// The application is about to load `url`.
  void willLoad(const std::string& url);
  /// The view began to ask for `url`, on whoever's account.
  void didStart(const std::string& url);
  /// The view now shows the document at `url`.
  void didCommit(const std::string& url);
  /// Whether the document shown now may use the desktop, `ownHost` being the web application's host.
  bool serves(const std::optional<std::string>& ownHost) const;

 private:
  /// Host of the load that the application asked for and that has not started yet.
  std::optional<std::string> awaited_;
  /// Whether the load on its way is the application's own.
  bool ownLoad_ = false;
  /// Host of the document shown.
  std::optional<std::string> current_;
  std::set<std::string> loaded_;
};

}  // namespace orvalle::web
