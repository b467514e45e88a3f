#include "link/pair_window.h"

#include <algorithm>

#include "base/text.h"

namespace orvalle::link {
namespace {

enum Field : std::size_t { kUrlField, kAnonField, kKeyField };
enum Button : std::size_t { kPasteButton, kSaveButton };

constexpr std::size_t kShortestAnonKey = 61;
constexpr std::size_t kChannelKeyLength = 32;

/// Whole characters are compared: one with a combining mark is neither a separator nor a digit.
bool isSeparator(std::string_view character) {
  return character.size() == 1 && std::string_view(" \n\r\t\"',;=").find(character) != std::string_view::npos;
}

bool isHexDigit(std::string_view character) {
  return character.size() == 1 &&
         std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

/// Takes the first character off the text; empty when there is none left.
std::string_view take(std::string_view& text) {
  const auto character = base::firstCharacter(text);
  text.remove_prefix(character.size());
  return character;
}

bool beginsWith(std::string_view text, std::string_view prefix) {
  return std::all_of(prefix.begin(), prefix.end(),
                     [&](const char& wanted) { return take(text) == std::string_view(&wanted, 1); });
}

bool hasAtLeast(std::size_t count, std::string_view text) {
  while (count > 0 && !take(text).empty()) --count;
  return count == 0;
}

std::string_view lastCharacter(std::string_view text) {
  std::string_view last;
  while (!text.empty()) last = take(text);
  return last;
}

bool isChannelKey(std::string_view text) {
  for (std::size_t i = 0; i < kChannelKeyLength; ++i) {
    if (!isHexDigit(take(text))) return false;
  }
  return text.empty();
}

void place(std::string_view token, PairValues& values) {
  if (!values.url && (beginsWith(token, "http://") || beginsWith(token, "https://"))) {
    if (lastCharacter(token) == "/") token.remove_suffix(1);
    values.url = token;
  } else if (!values.anonKey && beginsWith(token, "eyJ") && hasAtLeast(kShortestAnonKey, token)) {
    values.anonKey = token;
  } else if (!values.channelKey && isChannelKey(token)) {
    values.channelKey = token;
  }
}

}  // namespace

platform::PairViewSpec pairWindowSpec() {
  platform::PairViewSpec spec;
  spec.title = "Abbina Orvalle";
  spec.contentSize = {460, 265};
  spec.labels = {{{{20, 202}, {420, 16}}, "URL del progetto Supabase"},
                 {{{20, 147}, {420, 16}}, "Chiave anon (pubblica)"},
                 {{{20, 92}, {420, 16}}, "Chiave del canale"}};
  spec.fields = {{{{20, 180}, {420, 22}}, "https://progetto.supabase.co"},
                 {{{20, 125}, {420, 22}}, "eyJhbGciOi…"},
                 {{{20, 70}, {420, 22}}, "32 caratteri da Impostazioni → Avvisi"}};
  spec.messageFrame = {{20, 48}, {420, 16}};
  spec.buttons = {{{{20, 18}, {120, 30}}, "Incolla tutto", false},
                  {{{300, 18}, {140, 30}}, "Salva e connetti", true}};
  return spec;
}

PairValues parse(std::string_view text) {
  PairValues values;
  const auto finish = [&](const char* begin, const char* end) {
    const auto token = base::trimmed({begin, static_cast<std::size_t>(end - begin)});
    if (!token.empty()) place(token, values);
  };
  const char* begin = text.data();
  while (!text.empty()) {
    const auto character = take(text);
    if (!isSeparator(character)) continue;
    finish(begin, character.data());
    begin = text.data();
  }
  finish(begin, text.data());
  return values;
}

PairWindow::PairWindow(const platform::Platform& platform, Config& config)
    : platform_(platform), config_(config) {}

void PairWindow::show() {
  if (!view_) build();
  view_->setFieldText(kUrlField, config_.url());
  view_->setFieldText(kAnonField, config_.anonKey());
  view_->setFieldText(kKeyField, config_.channelKey());
  view_->setMessage("", platform::MessageColour::Label);
  platform_.application.activate();
  view_->present();
}

void PairWindow::build() {
  view_ = platform_.pairViews.make(pairWindowSpec());
  view_->onButton = liveness_.guard([this](std::size_t button) {
    if (button == kPasteButton) pasteAll();
    if (button == kSaveButton) save();
  });
}

void PairWindow::pasteAll() {
  platform_.pasteboard.readText(liveness_.guard([this](const std::string& text) { fill(text); }));
}

void PairWindow::fill(const std::string& text) {
  const auto found = parse(text);
  std::string missing;
  const auto take = [&](Field field, const std::optional<std::string>& value, const char* name) {
    if (value) {
      view_->setFieldText(field, *value);
    } else {
      missing += (missing.empty() ? "" : ", ") + std::string(name);
    }
  };
  take(kUrlField, found.url, "indirizzo");
  take(kAnonField, found.anonKey, "chiave anon");
  take(kKeyField, found.channelKey, "chiave del canale");
  if (missing.empty()) {
    view_->setMessage("Trovati tutti e tre. Controlla e salva.", platform::MessageColour::SystemGreen);
  } else {
    view_->setMessage("Non ho trovato: " + missing, platform::MessageColour::SystemOrange);
  }
}

void PairWindow::save() {
  const auto typed = [this](Field field) { return std::string(base::trimmed(view_->fieldText(field))); };
  config_.setUrl(typed(kUrlField));
  config_.setAnonKey(typed(kAnonField));
  config_.setChannelKey(typed(kKeyField));
  view_->orderOut();
  if (onSaved) onSaved();
}

}  // namespace orvalle::link
