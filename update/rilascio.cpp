#include "update/rilascio.h"

#include <utility>

#include "base/json.h"

namespace orvalle::update {
namespace {

/// Reads an optional text into `text`; false when something else is there.
bool readOptional(const base::Json* member, std::optional<std::string>& text) {
  if (!member || member->is_null()) return true;
  text = base::jsonText(member);
  return text.has_value();
}

}  // namespace

std::optional<Rilascio> decodeRilascio(std::string_view manifest) {
  const auto json = base::parseJson(manifest);
  if (!json) return {};
  auto versione = base::jsonText(base::jsonMember(*json, "versione"));
  const auto build = base::jsonInteger(base::jsonMember(*json, "build"));
  auto url = base::jsonText(base::jsonMember(*json, "url"));
  if (!versione || !build || !url) return {};
  Rilascio rilascio{std::move(*versione), *build, std::move(*url), {}, {}};
  if (!readOptional(base::jsonMember(*json, "note"), rilascio.note) ||
      !readOptional(base::jsonMember(*json, "pubblicato"), rilascio.pubblicato))
    return {};
  return rilascio;
}

}  // namespace orvalle::update
