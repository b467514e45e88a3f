#include "platform/linux/application_names.h"

#include <gio/gdesktopappinfo.h>

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace orvalle::platform::linuxos {
namespace {

std::string text(const char* text) {
  return text ? text : "";
}

bool sameWord(const std::string& a, const std::string& b) {
  return g_ascii_strcasecmp(a.c_str(), b.c_str()) == 0;
}

std::string withoutSuffix(std::string id) {
  constexpr std::string_view kSuffix = ".desktop";
  if (std::string_view(id).ends_with(kSuffix)) id.resize(id.size() - kSuffix.size());
  return id;
}

/// The program's file name, if the command line is nothing but the program and field codes.
std::string bareProgram(GAppInfo* entry) {
  char** parsed = nullptr;
  if (!g_shell_parse_argv(text(g_app_info_get_commandline(entry)).c_str(), nullptr, &parsed, nullptr))
    return {};
  const std::unique_ptr<char*, decltype(&g_strfreev)> words(parsed, g_strfreev);
  for (char** word = words.get() + 1; *word; ++word) {
    if (**word != '%') return {};
  }
  return std::filesystem::path(words.get()[0]).filename().string();
}

/// The last word of an id such as "org.example.Editor".
std::string lastWord(const std::string& id) {
  const auto dot = id.rfind('.');
  return dot == std::string::npos ? std::string() : id.substr(dot + 1);
}

}  // namespace

ApplicationNames::ApplicationNames()
    : monitor_(GObjectPtr<GAppInfoMonitor>::adopt(g_app_info_monitor_get())),
      changed_(monitor_.get(), "changed", G_CALLBACK(changed), this) {}

void ApplicationNames::changed(GAppInfoMonitor*, gpointer self) {
  auto& names = *static_cast<ApplicationNames*>(self);
  names.entries_.reset();
  names.found_.clear();
}

const std::vector<ApplicationNames::Entry>& ApplicationNames::entries() {
  if (entries_) return *entries_;
  entries_.emplace();
  GList* all = g_app_info_get_all();
  for (GList* each = all; each; each = each->next) {
    auto* entry = G_APP_INFO(each->data);
    const std::string name = text(g_app_info_get_name(entry));
    if (name.empty() || !g_utf8_validate(name.c_str(), -1, nullptr)) continue;
    entries_->push_back({withoutSuffix(text(g_app_info_get_id(entry))),
                         text(g_desktop_app_info_get_startup_wm_class(G_DESKTOP_APP_INFO(entry))),
                         bareProgram(entry), name});
  }
  g_list_free_full(all, g_object_unref);
  return *entries_;
}

const ApplicationNames::Entry* ApplicationNames::find(Claim claim, const std::string& word) {
  if (word.empty()) return nullptr;
  for (const auto& entry : entries()) {
    if (claim(entry, word)) return &entry;
  }
  return nullptr;
}

std::optional<std::string> ApplicationNames::ofWindows(const std::string& instance,
                                                       const std::string& windowClass) {
  const auto [found, isNew] = found_.try_emplace({instance, windowClass});
  if (isNew) found->second = lookUp(instance, windowClass);
  return found->second;
}

std::optional<std::string> ApplicationNames::lookUp(const std::string& instance,
                                                    const std::string& windowClass) {
  // From the surest claim to the weakest. The instance goes first: programs that run other applications, such
  // as browsers, give each its own.
  constexpr Claim kClaims[] = {
      [](const Entry& entry, const std::string& word) { return entry.windowClass == word; },
      [](const Entry& entry, const std::string& word) { return sameWord(entry.id, word); },
      [](const Entry& entry, const std::string& word) { return sameWord(lastWord(entry.id), word); },
      [](const Entry& entry, const std::string& word) { return entry.program == word; },
  };
  for (const auto claim : kClaims) {
    for (const auto* word : {&instance, &windowClass}) {
      if (const auto* entry = find(claim, *word)) return entry->name;
    }
  }
  if (!windowClass.empty()) return windowClass;
  return instance.empty() ? std::nullopt : std::optional(instance);
}

std::optional<std::string> ApplicationNames::ofProcess(pid_t process) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/exe", error);
  if (error) return {};
  const auto* entry = find([](const Entry& each, const std::string& word) { return each.program == word; },
                           program.filename().string());
  return entry ? std::optional(entry->name) : std::nullopt;
}

}  // namespace orvalle::platform::linuxos
