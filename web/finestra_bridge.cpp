// The receiving end of the bridge: what the page asks of the desktop.

#include <array>
#include <string_view>

#include "web/finestra.h"

namespace orvalle::web {

void Finestra::didReceiveMessage(const std::string& name, const std::string& json) {
  if (name != "orvalle" || !trust_.serves(indirizzo().host())) return;
  const auto body = base::parseJson(json);
  if (!body || !body->is_object()) return;
  if (const auto tipo = base::jsonText(base::jsonMember(*body, "tipo"))) {
    handleRequest(*tipo, *body);
  } else {
    pushSnapshot(*body);
  }
}

void Finestra::handleRequest(const std::string& tipo, const base::Json& body) {
  struct Entry {
    std::string_view tipo;
    void (Finestra::*handle)(const base::Json& body);
  };
  static constexpr std::array kRequests = {
      Entry{"tattile", &Finestra::tattile},
      Entry{"apri-fuori", &Finestra::apriFuori},
  };
  for (const auto& request : kRequests) {
    if (request.tipo == tipo) return (this->*request.handle)(body);
  }
}

void Finestra::pushSnapshot(const base::Json& body) {
  const auto snapshot = link::decodeSnapshot(body);
  if (snapshot && onState) onState(*snapshot);
}

void Finestra::tattile(const base::Json& body) {
  const bool touch = base::jsonText(base::jsonMember(body, "che")) == "tocco";
  platform_.haptics.perform(touch ? platform::HapticPattern::Alignment
                                  : platform::HapticPattern::LevelChange);
}

void Finestra::apriFuori(const base::Json& body) {
  const auto text = base::jsonText(base::jsonMember(body, "url"));
  const auto url = text ? base::Url::parse(*text) : std::nullopt;
  // Only pages of the web application itself: this is no general way out to any address.
  if (url && url->scheme() == "https" && url->host() == indirizzo().host())
    platform_.workspace.open(url->text());
}

}  // namespace orvalle::web
