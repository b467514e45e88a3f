#include "link/pair_window.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_platform.h"

namespace orvalle::link {
namespace {

using platform::MessageColour;

const std::string kUrl = "https://p.example";
const std::string kAnon = "eyJ" + std::string(58, 'a');
const std::string kKey = "0123456789abcdefABCDEF0123456789";

TEST(ParseTest, findsTheThreeValuesInNamedLines) {
  const auto found = parse("URL=" + kUrl + "/\nANON=" + kAnon + "\nKEY=" + kKey);
  EXPECT_EQ(found.url, kUrl);
  EXPECT_EQ(found.anonKey, kAnon);
  EXPECT_EQ(found.channelKey, kKey);
}

TEST(ParseTest, separatesAtEverySeparatorAndInAnyOrder) {
  for (const std::string separator : {" ", "\n", "\r", "\t", "\"", "'", ",", ";", "=", " ,; "}) {
    const auto found = parse(kKey + separator + kAnon + separator + kUrl);
    EXPECT_EQ(found.url, kUrl);
    EXPECT_EQ(found.anonKey, kAnon);
    EXPECT_EQ(found.channelKey, kKey);
  }
}

TEST(ParseTest, findsNothingInAnEmptyText) {
  const auto found = parse("");
  EXPECT_FALSE(found.url || found.anonKey || found.channelKey);
}

TEST(ParseTest, removesOneTrailingSlashOfTheUrl) {
  EXPECT_EQ(parse("http://p.example//").url, "http://p.example/");
  EXPECT_EQ(parse("https://").url, "https:/");
}

TEST(ParseTest, takesOnlyHttpAddressesAsUrl) {
  EXPECT_FALSE(parse("ftp://p.example").url);
  EXPECT_FALSE(parse("HTTPS://p.example").url);
  EXPECT_FALSE(parse("xhttps://p.example").url);
}

TEST(ParseTest, anAnonKeyHasAtLeastSixtyOneCharacters) {
  EXPECT_EQ(parse(kAnon).anonKey, kAnon);
  EXPECT_FALSE(parse(kAnon.substr(0, 60)).anonKey);
  EXPECT_FALSE(parse("EYJ" + std::string(58, 'a')).anonKey);
}

TEST(ParseTest, countsCharactersAndNotBytes) {
  // Sixty characters, the last of two bytes.
  EXPECT_FALSE(parse("eyJ" + std::string(56, 'a') + "é").anonKey);
  EXPECT_TRUE(parse("eyJ" + std::string(57, 'a') + "é").anonKey);
}

TEST(ParseTest, aChannelKeyIsExactlyThirtyTwoHexadecimalDigits) {
  EXPECT_EQ(parse(kKey).channelKey, kKey);
  EXPECT_FALSE(parse(kKey + "0").channelKey);
  EXPECT_FALSE(parse(kKey.substr(1)).channelKey);
  EXPECT_FALSE(parse("g" + kKey.substr(1)).channelKey);
  // Full-width digits are digits, but not hexadecimal ones of a key.
  EXPECT_FALSE(parse("\xEF\xBC\x90" + kKey.substr(1)).channelKey);
}

TEST(ParseTest, theFirstOfEachKindWins) {
  const auto found = parse("https://a.example https://b.example " + kAnon + " " + kAnon + "b " + kKey + " " +
                           std::string(32, '0'));
  EXPECT_EQ(found.url, "https://a.example");
  EXPECT_EQ(found.anonKey, kAnon);
  EXPECT_EQ(found.channelKey, kKey);
}

TEST(ParseTest, doesNotSplitAtCarriageReturnWithLineFeed) {
  const auto found = parse(kUrl + "\r\n" + kKey);
  EXPECT_EQ(found.url, kUrl + "\r\n" + kKey);
  EXPECT_FALSE(found.channelKey);
}

TEST(ParseTest, trimsWhatDoesNotSplit) {
  EXPECT_EQ(parse("\r\n" + kKey + "\r\n").channelKey, kKey);
  EXPECT_EQ(parse("\xC2\xA0\v" + kKey + "\f\xE2\x80\xA8").channelKey, kKey);
}

TEST(ParseTest, aSeparatorWithACombiningMarkSeparatesNothing) {
  EXPECT_FALSE(parse("x,\xCC\x81" + kKey).channelKey);
}

TEST(ParseTest, aMarkMakesAnotherCharacter) {
  EXPECT_FALSE(parse("http:/\xCC\x81/p.example").url);
  EXPECT_FALSE(parse("https://\xCC\x81p.example").url);
  EXPECT_EQ(parse("https://p.example/\xEF\xB8\x8F").url, "https://p.example/\xEF\xB8\x8F");
  EXPECT_FALSE(parse("eyJ\xCC\x81" + std::string(70, 'a')).anonKey);
  EXPECT_FALSE(parse(kKey + "\xE2\x80\x8D").channelKey);
  // Sixty-one code points, sixty characters.
  EXPECT_FALSE(parse("eyJ" + std::string(57, 'a') + "\xCC\x81").anonKey);
  for (const std::string mark : {"\xCC\x81", "\xEF\xB8\x8F", "\xE2\x80\x8D"}) {
    for (const std::string separator : {" ", "\"", "'", ",", ";", "="})
      EXPECT_FALSE(parse("x" + separator + mark + kKey).channelKey);
    // Nothing joins a line break or a tab.
    for (const std::string separator : {"\n", "\r", "\t"})
      EXPECT_EQ(parse(kUrl + separator + mark + " " + kKey).url, kUrl);
  }
}

TEST(ParseTest, joinsWhatAPrependedMarkJoins) {
  // An Arabic number sign takes what follows into its own character.
  EXPECT_FALSE(parse("x\xD8\x80 " + kKey).channelKey);
  EXPECT_EQ(parse(kUrl + "\xD8\x80/").url, kUrl + "\xD8\x80/");
}

TEST(ParseTest, anAddressIsConsideredForTheOtherRulesOnceThereIsOne) {
  const auto found = parse(kUrl + " https://b.example " + kKey);
  EXPECT_EQ(found.url, kUrl);
  EXPECT_FALSE(found.anonKey);
  EXPECT_EQ(found.channelKey, kKey);
}

TEST(ParseTest, findsTheValuesBehindTenMegabytes) {
  const std::string flood = std::string(5'000'000, 'x') + std::string(5'000'000, ' ');
  const auto found = parse(flood + kUrl + "\n" + kAnon + "\n" + kKey);
  EXPECT_EQ(found.url, kUrl);
  EXPECT_EQ(found.anonKey, kAnon);
  EXPECT_EQ(found.channelKey, kKey);
}

TEST(ParseTest, takesBytesThatAreNoTextForThemselves) {
  EXPECT_EQ(parse("\xFF\xFE \xC3=" + kKey + "\n\xE2\x80").channelKey, kKey);
  EXPECT_FALSE(parse(kKey.substr(1) + "\xFF").channelKey);
  EXPECT_EQ(parse(std::string("\0 ", 2) + kKey + std::string(" \0", 2)).channelKey, kKey);
}

class PairWindowTest : public testing::Test {
 protected:
  platform::memory::PairViewState& view() { return *memory_.pairViews.made.at(0); }

  platform::memory::MemoryPlatform memory_;
  platform::Platform platform_ = memory_.platform();
  Config config_{memory_.defaults};
  PairWindow window_{platform_, config_};
};

TEST_F(PairWindowTest, isBuiltOnFirstShowAndKept) {
  EXPECT_TRUE(memory_.pairViews.made.empty());
  window_.show();
  view().visible = false;
  window_.show();
  EXPECT_EQ(memory_.pairViews.made.size(), 1U);
  EXPECT_TRUE(view().visible);
  EXPECT_EQ(view().timesPresented, 2);
}

TEST_F(PairWindowTest, isLaidOutAsGiven) {
  window_.show();
  const auto& spec = view().spec;
  EXPECT_EQ(spec.title, "Abbina Orvalle");
  EXPECT_EQ(spec.contentSize, (base::Size{460, 265}));
  ASSERT_EQ(spec.labels.size(), 3U);
  EXPECT_EQ(spec.labels[0].text, "URL del progetto Supabase");
  EXPECT_EQ(spec.labels[0].frame, (base::Rect{{20, 202}, {420, 16}}));
  EXPECT_EQ(spec.labels[1].text, "Chiave anon (pubblica)");
  EXPECT_EQ(spec.labels[1].frame, (base::Rect{{20, 147}, {420, 16}}));
  EXPECT_EQ(spec.labels[2].text, "Chiave del canale");
  EXPECT_EQ(spec.labels[2].frame, (base::Rect{{20, 92}, {420, 16}}));
  ASSERT_EQ(spec.fields.size(), 3U);
  EXPECT_EQ(spec.fields[0].frame, (base::Rect{{20, 180}, {420, 22}}));
  EXPECT_TRUE(spec.fields[0].placeholder.starts_with("https://"));
  EXPECT_EQ(spec.fields[1].frame, (base::Rect{{20, 125}, {420, 22}}));
  EXPECT_EQ(spec.fields[1].placeholder, "eyJhbGciOi…");
  EXPECT_EQ(spec.fields[2].frame, (base::Rect{{20, 70}, {420, 22}}));
  EXPECT_EQ(spec.fields[2].placeholder, "32 caratteri da Impostazioni → Avvisi");
  EXPECT_EQ(spec.messageFrame, (base::Rect{{20, 48}, {420, 16}}));
  ASSERT_EQ(spec.buttons.size(), 2U);
  EXPECT_EQ(spec.buttons[0].title, "Incolla tutto");
  EXPECT_EQ(spec.buttons[0].frame, (base::Rect{{20, 18}, {120, 30}}));
  EXPECT_FALSE(spec.buttons[0].isDefault);
  EXPECT_EQ(spec.buttons[1].title, "Salva e connetti");
  EXPECT_EQ(spec.buttons[1].frame, (base::Rect{{300, 18}, {140, 30}}));
  EXPECT_TRUE(spec.buttons[1].isDefault);
}

TEST_F(PairWindowTest, showsWhatIsStoredAndNoOldMessage) {
  config_.setUrl(kUrl);
  config_.setChannelKey(kKey);
  window_.show();
  view().press(0);
  EXPECT_NE(view().message, "");
  window_.show();
  EXPECT_EQ(view().fields, (std::vector<std::string>{kUrl, "", kKey}));
  EXPECT_EQ(view().message, "");
}

TEST_F(PairWindowTest, comesToTheFrontWithTheProgram) {
  window_.show();
  EXPECT_EQ(memory_.journal, (platform::memory::Journal{"activate"}));
}

TEST_F(PairWindowTest, aPasteWithAllThreeFillsTheFieldsAndSaysSoInGreen) {
  window_.show();
  memory_.pasteboard.text = kUrl + "\n" + kAnon + "\n" + kKey;
  view().press(0);
  EXPECT_EQ(view().fields, (std::vector<std::string>{kUrl, kAnon, kKey}));
  EXPECT_EQ(view().message, "Trovati tutti e tre. Controlla e salva.");
  EXPECT_EQ(view().messageColour, MessageColour::SystemGreen);
  EXPECT_FALSE(config_.isReady());
}

TEST_F(PairWindowTest, anEmptyPasteLeavesTheFieldsAndNamesAllThreeInOrange) {
  config_.setUrl(kUrl);
  window_.show();
  view().press(0);
  EXPECT_EQ(view().fields, (std::vector<std::string>{kUrl, "", ""}));
  EXPECT_EQ(view().message, "Non ho trovato: indirizzo, chiave anon, chiave del canale");
  EXPECT_EQ(view().messageColour, MessageColour::SystemOrange);
}

TEST_F(PairWindowTest, aPartialPasteNamesWhatIsMissing) {
  window_.show();
  memory_.pasteboard.text = kUrl;
  view().press(0);
  EXPECT_EQ(view().message, "Non ho trovato: chiave anon, chiave del canale");
  memory_.pasteboard.text = kAnon + " " + kKey;
  view().press(0);
  EXPECT_EQ(view().message, "Non ho trovato: indirizzo");
  EXPECT_EQ(view().fields, (std::vector<std::string>{kUrl, kAnon, kKey}));
}

TEST_F(PairWindowTest, savingTrimsStoresHidesAndTells) {
  int saved = 0;
  window_.onSaved = [&] {
    ++saved;
    EXPECT_FALSE(view().visible);
    EXPECT_TRUE(config_.isReady());
  };
  window_.show();
  view().fields = {" \xC2\xA0https://p.example/\r\n", "\tanon\n", "  key  "};
  view().press(1);
  EXPECT_EQ(saved, 1);
  EXPECT_EQ(config_.url(), "https://p.example/");
  EXPECT_EQ(config_.anonKey(), "anon");
  EXPECT_EQ(config_.channelKey(), "key");
}

TEST_F(PairWindowTest, savingChecksNothing) {
  window_.show();
  view().press(1);
  EXPECT_EQ(memory_.defaults.text("supabaseUrl"), "");
  EXPECT_EQ(memory_.defaults.text("anonKey"), "");
  EXPECT_EQ(memory_.defaults.text("channelKey"), "");
}

TEST_F(PairWindowTest, afterAPartialPasteTheRestCanBeTypedAndSaved) {
  window_.show();
  memory_.pasteboard.text = kUrl + " " + kAnon;
  view().press(0);
  view().fields[2] = kKey;
  view().press(1);
  EXPECT_EQ(config_.url(), kUrl);
  EXPECT_EQ(config_.anonKey(), kAnon);
  EXPECT_EQ(config_.channelKey(), kKey);
}

}  // namespace
}  // namespace orvalle::link
