#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/linux/codesign/signing_key.h"

namespace orvalle::platform::linuxos {

/// What a bundle's signature says of itself.
struct Signature {
  /// The signer's public key, in hexadecimal digits.
  std::string key;
  /// Made with a key that everybody can make again: it shows that the bundle is whole, not who made it.
  bool adhoc = false;
};

/// Signs the bundle as it is now, replacing any signature it has. Without a key, ad hoc, equal bundles get
/// equal signatures. Absent on success, else one line that says why it cannot be signed and names the file.
std::optional<std::string> signBundle(const std::filesystem::path& bundle,
                                      const std::optional<SigningKey>& key = {});

/// Whether everything in the bundle is as it was signed, and nothing else is there. Where `signer` is not
/// empty, only that key's signature counts. Absent when all is well, else one line that names the file.
std::optional<std::string> verifyBundle(const std::filesystem::path& bundle, const std::string& signer = "");

/// The signature of the bundle's manifest; absent when there is none, or one that does not fit the manifest.
/// The files are not looked at.
std::optional<Signature> readSignature(const std::filesystem::path& bundle);

}  // namespace orvalle::platform::linuxos
