#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/liveness.h"
#include "link/config.h"
#include "link/pairing.h"
#include "platform/pair_view.h"
#include "platform/platform.h"

namespace orvalle::link {

/// What `parse` found in a text.
struct PairValues {
  std::optional<std::string> url;
  std::optional<std::string> anonKey;
  std::optional<std::string> channelKey;
};

/// Finds the three pairing values in a text of any shape: separated by blanks, line feeds, tabs, quotes,
/// commas, semicolons or equals signs, in any order, the first of each kind.
PairValues parse(std::string_view text);

/// What the pairing window holds, and where: URL, anon key and channel key, then the buttons that paste and
/// save.
platform::PairViewSpec pairWindowSpec();

/// The window "Abbina Orvalle": three fields to type or paste the pairing values into. It checks nothing;
/// whether the link comes up is for the channel to tell.
class PairWindow : public Pairing {
 public:
  PairWindow(const platform::Platform& platform, Config& config);
  PairWindow(const PairWindow&) = delete;
  PairWindow& operator=(const PairWindow&) = delete;

  /// Fills the fields with what is stored, and brings the window to the front.
  void show() override;

 private:
  void build();
  void pasteAll();
  void fill(const std::string& text);
  void save();

  const platform::Platform& platform_;
  Config& config_;
  std::unique_ptr<platform::PairView> view_;
  base::Liveness liveness_;
};

}  // namespace orvalle::link
