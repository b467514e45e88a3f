#include "platform/memory/memory_services.h"

#include <fstream>

namespace orvalle::platform::memory {

std::optional<std::string> MemoryBundle::identifierOf(const std::filesystem::path& path) const {
  if (!std::filesystem::is_directory(std::filesystem::symlink_status(path))) return {};
  std::ifstream file(path / "identifier");
  std::string text;
  if (!std::getline(file, text)) return {};
  return text;
}

}  // namespace orvalle::platform::memory
