#include "link/pair_window.h"

#include <algorithm>
#include <vector>

#include "base/text.h"

namespace orvalle::link {
namespace {

using Characters = std::vector<std::string_view>;

enum Field : std::size_t { kUrlField, kAnonField, kKeyField };
enum Button : std::size_t { kPasteButton, kSaveButton };

constexpr std::size_t kShortestAnonKey = 61;
constexpr std::size_t kChannelKeyLength = 32;

platform::PairViewSpec windowSpec() {
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

/// Whole characters are compared: one with a combining mark is neither a separator nor a digit.
bool isSeparator(std::string_view character) {
  return character.size() == 1 && std::string_view(" \n\r\t\"',;=").find(character) != std::string_view::npos;
}

bool isHexDigit(std::string_view character) {
  return character.size() == 1 &&
         std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

bool beginsWith(const Characters& token, std::string_view prefix) {
  return token.size() >= prefix.size() &&
         std::equal(prefix.begin(), prefix.end(), token.begin(), [](char wanted, std::string_view character) {
           return character == std::string_view(&wanted, 1);
         });
}

void place(std::string_view text, PairValues& values) {
  const auto token = base::characters(text);
  if (!values.url && (beginsWith(token, "http://") || beginsWith(token, "https://"))) {
    if (token.back() == "/") text.remove_suffix(1);
    values.url = text;
  } else if (!values.anonKey && beginsWith(token, "eyJ") && token.size() >= kShortestAnonKey) {
    values.anonKey = text;
  } else if (!values.channelKey && token.size() == kChannelKeyLength &&
             std::all_of(token.begin(), token.end(), isHexDigit)) {
    values.channelKey = text;
  }
}

}  // namespace

PairValues parse(std::string_view text) {
  PairValues values;
  const auto finish = [&](const char* begin, const char* end) {
    const auto token = base::trimmed({begin, static_cast<std::size_t>(end - begin)});
    if (!token.empty()) place(token, values);
  };
  const char* begin = text.data();
  for (const auto character : base::characters(text)) {
    if (!isSeparator(character)) continue;
    finish(begin, character.data());
    begin = character.data() + character.size();
  }
  finish(begin, text.data() + text.size());
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
  view_ = platform_.pairViews.make(windowSpec());
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
