// orvalle-codesign: signs bundles, and tells whether a signed one is as it was.

#include <cstdio>
#include <string>
#include <vector>

#include "platform/linux/codesign/bundle_signature.h"
#include "platform/linux/codesign/file_reader.h"

namespace {

namespace native = orvalle::platform::linuxos;

constexpr int kWrongUse = 2;
constexpr std::uintmax_t kLongestKey = 4096;

constexpr char kHelp[] =
    "orvalle-codesign sign [--key FILE] APP     signs the bundle APP with the key in FILE; without one, with "
    "a\n"
    "                                           key that is thrown away (\"ad hoc\")\n"
    "orvalle-codesign --verify [--deep] [--strict] [--signer KEY] APP\n"
    "                                           tells whether APP is as it was signed; where the signer's\n"
    "                                           public key is given, by nobody else\n"
    "orvalle-codesign --display APP             prints who signed APP\n"
    "orvalle-codesign make-key                  prints a new key for FILE; whoever has it can sign\n"
    "Verification is always deep and strict.\n";

int wrongUse() {
  std::fputs(kHelp, stderr);
  return kWrongUse;
}

int report(const std::optional<std::string>& trouble) {
  if (!trouble) return 0;
  std::fprintf(stderr, "%s\n", trouble->c_str());
  return 1;
}

int sign(const std::string& keyFile, const std::string& bundle) {
  if (keyFile.empty()) return report(native::signBundle(bundle));
  const auto text = native::readFile(keyFile, kLongestKey);
  const auto key = text ? native::SigningKey::read(*text) : std::nullopt;
  if (!key) return report(keyFile + ": non è una chiave");
  return report(native::signBundle(bundle, key));
}

int display(const std::string& bundle) {
  const auto signature = native::readSignature(bundle);
  if (!signature) return report(bundle + ": nessuna firma valida");
  std::printf("key=%s\nflags=%s\n", signature->key.c_str(), signature->adhoc ? "0x2(adhoc)" : "0x0(none)");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (words.empty()) return wrongUse();
  const auto& verb = words[0];
  std::string keyFile;
  std::string signer;
  std::string bundle;
  for (std::size_t i = 1; i < words.size(); ++i) {
    const bool more = i + 1 < words.size();
    if (words[i] == "--key" && verb == "sign" && more) {
      keyFile = words[++i];
    } else if (words[i] == "--signer" && verb == "--verify" && more) {
      signer = words[++i];
    } else if ((words[i] == "--deep" || words[i] == "--strict") && verb == "--verify") {
      continue;
    } else if (!words[i].starts_with('-') && bundle.empty()) {
      bundle = words[i];
    } else {
      return wrongUse();
    }
  }
  if (verb == "--help") {
    std::fputs(kHelp, stdout);
    return 0;
  }
  if (verb == "make-key" && bundle.empty()) {
    std::fputs(native::SigningKey::make().seedText().c_str(), stdout);
    return 0;
  }
  if (bundle.empty()) return wrongUse();
  if (verb == "sign") return sign(keyFile, bundle);
  if (verb == "--verify") return report(native::verifyBundle(bundle, signer));
  if (verb == "--display") return display(bundle);
  return wrongUse();
}
