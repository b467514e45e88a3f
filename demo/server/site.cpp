#include "demo/server/site.h"

#include <glib.h>
#include <boost/json/object.hpp>

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "base/json.h"

namespace orvalle::demo {
namespace {

constexpr std::string_view kUpdates = "/mac/";
constexpr std::string_view kSignedInCookie = "accesso=1";

// Scripts, styles and data come from this server and from nowhere else; nothing inline, no frames.
constexpr const char* kContentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; font-src 'self'; "
    "connect-src 'self'; frame-src 'none'; frame-ancestors 'none'; object-src 'none'; form-action 'none'; "
    "base-uri 'none'";

Response text(unsigned status, const char* message) {
  return {status,
          {{"Content-Type", "text/plain; charset=utf-8"}, {"Cache-Control", "no-store"}},
          std::string(message) + "\n"};
}

// Absent for a malformed escape and for an encoded NUL.
std::optional<std::string> decode(const std::string& encoded) {
  g_autofree char* decoded = g_uri_unescape_string(encoded.c_str(), nullptr);
  if (!decoded) return std::nullopt;
  return std::string(decoded);
}

// A page of another site can have its own name resolve to this machine and would then share our cookies and
// answers; it cannot choose the Host header, which still carries that name.
bool isLocalHost(std::string_view host) {
  if (host.starts_with("[::1]")) {
    host.remove_prefix(5);
    return host.empty() || host.front() == ':';
  }
  const std::string_view name = host.substr(0, host.find(':'));
  return name == "localhost" || name == "127.0.0.1";
}

bool holdsCookie(std::string_view cookies, std::string_view wanted) {
  while (!cookies.empty()) {
    const std::size_t end = cookies.find(';');
    std::string_view cookie = cookies.substr(0, end);
    while (cookie.starts_with(' ')) cookie.remove_prefix(1);
    while (cookie.ends_with(' ')) cookie.remove_suffix(1);
    if (cookie == wanted) return true;
    if (end == std::string_view::npos) return false;
    cookies.remove_prefix(end + 1);
  }
  return false;
}

bool hasCode(const std::string& query) {
  g_autoptr(GHashTable) items = g_uri_parse_params(query.c_str(), -1, "&", G_URI_PARAMS_NONE, nullptr);
  const auto* code = items ? static_cast<const char*>(g_hash_table_lookup(items, "codice")) : nullptr;
  return code && *code;
}

// Exchanges a one-time code for a signed-in browser. This application knows no accounts: every code is good.
Response enter(const Request& request) {
  Response response{303, {{"Location", "/"}, {"Cache-Control", "no-store"}}, ""};
  if (hasCode(request.query)) {
    response.headers.emplace_back(
        "Set-Cookie", std::string(kSignedInCookie) + "; Path=/; Max-Age=31536000; HttpOnly; SameSite=Lax");
  }
  return response;
}

// Says whether this browser is signed in, which the page cannot see by itself.
Response whoAmI(const Request& request) {
  const bool signedIn = holdsCookie(request.cookie, kSignedInCookie);
  return {200,
          {{"Content-Type", "application/json"}, {"Cache-Control", "no-store"}},
          signedIn ? R"({"accesso":true})" : R"({"accesso":false})"};
}

using Handler = Response (*)(const Request&);
constexpr std::array<std::pair<std::string_view, Handler>, 2> kEndpoints{{
    {"/api/io", &whoAmI},
    {"/api/mac/entra", &enter},
}};

}  // namespace

Site::Site(PageFolder page, PairingKeys keys, std::optional<PageFolder> updates)
    : page_(std::move(page)), keys_(std::move(keys)), updates_(std::move(updates)) {}

Response Site::answer(const Request& request) const {
  Response response = route(request);
  response.headers.emplace_back("Content-Security-Policy", kContentSecurityPolicy);
  response.headers.emplace_back("X-Content-Type-Options", "nosniff");
  return response;
}

Response Site::route(const Request& request) const {
  if (!isLocalHost(request.host)) return text(421, "Questo server risponde solo a localhost.");
  if (request.method != "GET" && request.method != "HEAD") {
    Response refused = text(405, "Metodo non ammesso.");
    refused.headers.emplace_back("Allow", "GET, HEAD");
    return refused;
  }
  const std::optional<std::string> path = decode(request.path);
  if (!path || !path->starts_with('/')) return text(400, "Richiesta non valida.");
  for (const auto& [endpoint, handler] : kEndpoints) {
    if (*path == endpoint) return handler(request);
  }
  if (*path == "/api/abbinamento") return pairing(request);
  if (path->starts_with("/api/")) return text(404, "Non trovato.");
  if (updates_ && path->starts_with(kUpdates)) return update(path->substr(kUpdates.size()));
  return pageAt(*path, request);
}

// A package is too large to be read for each who asks.
Response Site::update(std::string_view name) const {
  const auto file = updates_->find(name);
  if (!file) return text(404, "Non trovato.");
  const char* type = file->extension() == ".json" ? "application/json" : "application/zip";
  return {200, {{"Content-Type", type}, {"Cache-Control", "no-store"}}, "", *file};
}

// The keys are for this application's own page: no other site may read them, nor show them in a page of its
// own.
Response Site::pairing(const Request& request) const {
  const std::string& from = request.fetchSite;
  if (!from.empty() && from != "same-origin" && from != "none") return text(403, "Non ammesso.");
  const auto body =
      base::writeJson(boost::json::object{{"anonKey", keys_.anonKey}, {"channelKey", keys_.channelKey}});
  return {200,
          {{"Content-Type", "application/json"},
           {"Cache-Control", "no-store"},
           {"Cross-Origin-Resource-Policy", "same-origin"}},
          body.value_or("{}")};
}

Response Site::pageAt(std::string_view path, const Request& request) const {
  // The last segment of a route has no dot; whatever has one is a file.
  const bool isFile = path.substr(path.rfind('/')).find('.') != std::string_view::npos;
  const std::optional<PageFile> file = page_.read(isFile ? path.substr(1) : "index.html");
  if (!file) return text(404, "Non trovato.");

  Response response{200, {{"Cache-Control", "no-cache"}, {"ETag", file->entityTag}}, ""};
  if (request.ifNoneMatch == file->entityTag) {
    response.status = 304;
    return response;
  }
  response.headers.emplace_back("Content-Type", file->mimeType);
  response.body = file->content;
  return response;
}

}  // namespace orvalle::demo
