// The receiving end of the bridge: what the page asks of the desktop.

#include <utility>

#include "web/finestra.h"

namespace orvalle::web {

void Finestra::didReceiveMessage(const std::string& name, std::string json) {
  if (name == "orvalle" && trust_.serves(indirizzo().host())) inbox_.take(std::move(json));
}

void Finestra::handleMessage(const base::Json& body, std::function<void()> next) {
  const auto tipo = base::jsonText(base::jsonMember(body, "tipo"));
  if (!tipo) {
    pushSnapshot(body);
    return next();
  }
  const auto id = base::jsonInteger(base::jsonMember(body, "id"));
  Request request(body, {platform_, address_, services_},
                  liveness_.guard([this, id](const std::string& text) {
                    // Meanwhile a script may have taken the view elsewhere.
                    if (trust_.serves(indirizzo().host())) rispondi(id, text);
                  }),
                  std::move(next));
  request.handle(*tipo);
}

void Finestra::pushSnapshot(const base::Json& body) {
  const auto snapshot = link::decodeSnapshot(body);
  if (snapshot && onState) onState(*snapshot);
}

}  // namespace orvalle::web
