#include "platform/linux/codesign/bundle_signature.h"

#include <utility>
#include <variant>

#include <boost/json/object.hpp>

#include "base/atomic_file.h"
#include "base/json.h"
#include "platform/linux/codesign/bundle_tree.h"
#include "platform/linux/codesign/file_reader.h"
#include "platform/linux/codesign/manifest.h"

namespace orvalle::platform::linuxos {
namespace {

namespace fs = std::filesystem;
using Trouble = std::optional<std::string>;

constexpr const char* kManifest = "Signature/manifest";
constexpr const char* kSignature = "Signature/signature";
constexpr fs::perms kFolderMode{0755};
constexpr std::uintmax_t kLongestManifest = 64ULL * 1024 * 1024;
constexpr std::uintmax_t kLongestSignature = 4096;

/// What is signed: the manifest, and what the signature says of itself.
std::string signedText(const std::string& manifest, bool adhoc) {
  return std::string("Orvalle bundle 1 ") + (adhoc ? "adhoc" : "key") + "\n" + manifest;
}

struct Signed {
  std::string manifest;
  Signature signature;
};

/// The manifest with a signature that fits it, or what is wrong.
std::variant<Signed, Complaint> readSigned(const fs::path& bundle) {
  std::error_code error;
  if (!fs::is_directory(fs::symlink_status(bundle / kSignatureFolder, error)))
    return Complaint{std::string(kSignatureFolder) + ": manca la firma"};
  auto manifest = readFile(bundle / kManifest, kLongestManifest);
  if (!manifest) return Complaint{std::string(kManifest) + ": non si può leggere"};
  const auto text = readFile(bundle / kSignature, kLongestSignature);
  const auto json = text ? base::parseJson(*text) : std::nullopt;
  auto key = json ? base::jsonText(base::jsonMember(*json, "key")) : std::nullopt;
  const auto adhoc = json ? base::jsonBoolean(base::jsonMember(*json, "adhoc")) : std::nullopt;
  const auto signature = json ? base::jsonText(base::jsonMember(*json, "signature")) : std::nullopt;
  if (!key || !adhoc || !signature) return Complaint{std::string(kSignature) + ": non si può leggere"};
  if (!isSigned(signedText(*manifest, *adhoc), *signature, *key))
    return Complaint{std::string(kSignature) + ": firma non valida"};
  return Signed{std::move(*manifest), {std::move(*key), *adhoc}};
}

/// The first difference between what was signed and what is there.
Trouble compare(const Manifest& expected, const Manifest& found) {
  for (const auto& [path, entry] : expected) {
    const auto own = found.find(path);
    if (own == found.end()) return path + ": manca";
    if (own->second.kind != entry.kind || own->second.target != entry.target ||
        own->second.sha256 != entry.sha256)
      return path + ": alterato";
    if (own->second.mode != entry.mode) return path + ": permessi cambiati";
  }
  for (const auto& [path, entry] : found) {
    if (!expected.contains(path)) return path + ": non fa parte della firma";
  }
  return {};
}

/// The folder of the signature holds the signature alone.
Trouble checkSignatureFolder(const fs::path& bundle) {
  std::error_code error;
  const auto folder = bundle / kSignatureFolder;
  if (fs::status(folder, error).permissions() != kFolderMode)
    return std::string(kSignatureFolder) + ": permessi cambiati";
  fs::directory_iterator entry(folder, error);
  for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
    const auto own = std::string(kSignatureFolder) + "/" + entry->path().filename().string();
    if (own != kManifest && own != kSignature) return own + ": non fa parte della firma";
    if (entry->status().permissions() != fs::perms(0644)) return own + ": permessi cambiati";
  }
  if (error) return std::string(kSignatureFolder) + ": " + error.message();
  return {};
}

Trouble write(const fs::path& file, const std::string& text) {
  const auto error = base::replaceFile(file, text, fs::perms(0644));
  if (error) return file.string() + ": " + error.message();
  return {};
}

}  // namespace

Trouble signBundle(const fs::path& bundle, const std::optional<SigningKey>& key) {
  const auto tree = readTree(bundle);
  if (const auto* complaint = std::get_if<Complaint>(&tree)) return complaint->text;
  const auto manifest = writeManifest(std::get<Manifest>(tree));
  if (!manifest) return bundle.string() + ": contiene un nome che non è UTF-8";
  const bool adhoc = !key;
  const auto text = signedText(*manifest, adhoc);
  const auto own = key ? *key : SigningKey::derivedFrom(text);
  const boost::json::object signature{
      {"key", own.publicKey()}, {"adhoc", adhoc}, {"signature", own.sign(text)}};

  const auto folder = bundle / kSignatureFolder;
  std::error_code error;
  fs::remove_all(folder, error);
  if (!error) fs::create_directory(folder, error);
  if (!error) fs::permissions(folder, kFolderMode, error);
  if (error) return folder.string() + ": " + error.message();
  if (auto trouble = write(bundle / kManifest, *manifest)) return trouble;
  return write(bundle / kSignature, base::writeJson(signature).value_or("") + "\n");
}

Trouble verifyBundle(const fs::path& bundle, const std::string& signer) {
  const auto read = readSigned(bundle);
  if (const auto* complaint = std::get_if<Complaint>(&read)) return complaint->text;
  const auto& own = std::get<Signed>(read);
  if (!signer.empty() && (own.signature.adhoc || own.signature.key != signer))
    return std::string(kSignature) + ": firmato da un altro";
  const auto expected = readManifest(own.manifest);
  if (!expected) return std::string(kManifest) + ": non si può leggere";
  if (auto trouble = checkSignatureFolder(bundle)) return trouble;
  const auto tree = readTree(bundle);
  if (const auto* complaint = std::get_if<Complaint>(&tree)) return complaint->text;
  return compare(*expected, std::get<Manifest>(tree));
}

std::optional<Signature> readSignature(const fs::path& bundle) {
  auto read = readSigned(bundle);
  if (auto* own = std::get_if<Signed>(&read)) return std::move(own->signature);
  return {};
}

}  // namespace orvalle::platform::linuxos
