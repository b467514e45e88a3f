#pragma once

#include <cstdint>
#include <optional>

namespace orvalle::platform {

/// The flag of a signature made with a throw-away key.
inline constexpr std::uint32_t kSignatureAdhoc = 2;

/// The code signature of the running program.
class CodeSigning {
 public:
  virtual ~CodeSigning() = default;
  /// The flags of the signature; absent when the program is not signed or the signature cannot be read.
  virtual std::optional<std::uint32_t> ownFlags() const = 0;
};

}  // namespace orvalle::platform
