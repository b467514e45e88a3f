#include "services/blocco.h"

#include <algorithm>
#include <utility>

#include "base/iso8601.h"
#include "base/json.h"

namespace orvalle::services {
namespace {

using base::Json;
using base::jsonMember;
using base::jsonText;

std::string timestamp(Moment moment) {
  return base::writeIso8601(std::chrono::floor<std::chrono::seconds>(moment));
}

bool encode(const Blocco& blocco, std::string& text) {
  text += R"({"app":)";
  if (!base::appendJsonText(text, blocco.app)) return false;
  if (blocco.titolo) {
    text += R"(,"titolo":)";
    if (!base::appendJsonText(text, *blocco.titolo)) return false;
  }
  text += R"(,"da":")";
  text += timestamp(blocco.da);
  text += R"(","a":")";
  text += timestamp(blocco.a);
  text += R"("})";
  return true;
}

std::optional<Moment> decodeMoment(const Json* value) {
  const auto text = jsonText(value);
  return text ? base::readIso8601(*text) : std::nullopt;
}

std::optional<Blocco> decode(const Json& value) {
  const auto app = jsonText(jsonMember(value, "app"));
  const Json* titolo = jsonMember(value, "titolo");
  const auto da = decodeMoment(jsonMember(value, "da"));
  const auto a = decodeMoment(jsonMember(value, "a"));
  const bool titled = titolo && !titolo->is_null();
  if (!app || !da || !a || (titled && !titolo->is_string())) return {};
  return Blocco{*app, titled ? jsonText(titolo) : std::nullopt, *da, *a};
}

}  // namespace

std::int64_t Blocco::minuti() const {
  return std::max<std::int64_t>(std::chrono::duration_cast<std::chrono::minutes>(a - da).count(), 0);
}

std::optional<std::string> encodeBlocchi(const std::vector<Blocco>& blocchi) {
  // About as long as blocks with titles are.
  constexpr std::size_t kUsualLength = 160;
  std::string text;
  text.reserve(2 + blocchi.size() * kUsualLength);
  text += '[';
  for (const auto& blocco : blocchi) {
    if (text.size() > 1) text += ',';
    if (!encode(blocco, text)) return {};
  }
  return text + ']';
}

std::optional<std::vector<Blocco>> decodeBlocchi(std::string_view json) {
  const auto document = base::parseJson(json);
  if (!document || !document->is_array()) return {};
  std::vector<Blocco> blocchi;
  for (const auto& element : document->get_array()) {
    auto blocco = decode(element);
    if (!blocco) return {};
    blocchi.push_back(std::move(*blocco));
  }
  return blocchi;
}

}  // namespace orvalle::services
