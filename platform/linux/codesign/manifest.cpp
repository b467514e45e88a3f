#include "platform/linux/codesign/manifest.h"

#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "base/json.h"

namespace orvalle::platform::linuxos {
namespace {

using Kind = ManifestEntry::Kind;
using base::jsonMember;

constexpr unsigned kModeBits = 0777;

base::Json written(const std::string& path, const ManifestEntry& entry) {
  boost::json::object json{{"path", path}};
  switch (entry.kind) {
    case Kind::Folder:
      json["mode"] = entry.mode;
      break;
    case Kind::File:
      json["mode"] = entry.mode;
      json["sha256"] = entry.sha256;
      break;
    case Kind::Link:
      json["target"] = entry.target;
      break;
  }
  return json;
}

std::optional<ManifestEntry> readEntry(const base::Json& json) {
  const auto mode = base::jsonInteger(jsonMember(json, "mode"));
  auto sha256 = base::jsonText(jsonMember(json, "sha256"));
  auto target = base::jsonText(jsonMember(json, "target"));
  ManifestEntry entry;
  if (target) {
    if (mode || sha256) return {};
    entry.kind = Kind::Link;
    entry.target = std::move(*target);
    return entry;
  }
  if (!mode || *mode < 0 || *mode > kModeBits) return {};
  entry.kind = sha256 ? Kind::File : Kind::Folder;
  entry.mode = static_cast<unsigned>(*mode);
  entry.sha256 = sha256.value_or("");
  return entry;
}

}  // namespace

std::optional<std::string> writeManifest(const Manifest& manifest) {
  std::string text = "[";
  for (const auto& [path, entry] : manifest) {
    const auto line = base::writeJson(written(path, entry));
    if (!line) return {};
    text += (text.size() > 1 ? ",\n" : "\n") + *line;
  }
  return text + "\n]\n";
}

std::optional<Manifest> readManifest(std::string_view text) {
  const auto json = base::parseJson(text);
  const auto* list = json ? json->if_array() : nullptr;
  if (!list) return {};
  Manifest manifest;
  for (const auto& each : *list) {
    auto path = base::jsonText(jsonMember(each, "path"));
    auto entry = readEntry(each);
    if (!path || !entry || !manifest.emplace(std::move(*path), std::move(*entry)).second) return {};
  }
  return manifest;
}

}  // namespace orvalle::platform::linuxos
