#include "platform/linux/tabular_digits.h"

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <set>
#include <string>
#include <vector>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

std::vector<std::string> families() {
  PangoFontFamily** list = nullptr;
  int count = 0;
  pango_font_map_list_families(pango_cairo_font_map_get_default(), &list, &count);
  std::vector<std::string> names;
  for (int index = 0; index < count; ++index) names.emplace_back(pango_font_family_get_name(list[index]));
  g_free(list);
  return names;
}

class Ruler {
 public:
  explicit Ruler(const std::string& family)
      : context_(GObjectPtr<PangoContext>::adopt(
            pango_font_map_create_context(pango_cairo_font_map_get_default()))),
        font_(pango_font_description_from_string((family + " bold").c_str())) {
    pango_font_description_set_absolute_size(font_, 13 * PANGO_SCALE);
  }
  Ruler(const Ruler&) = delete;
  Ruler& operator=(const Ruler&) = delete;
  ~Ruler() { pango_font_description_free(font_); }

  /// The widths of the text in a while, `step` seconds from one to the next.
  std::set<int> widths(int firstSecond, int lastSecond, int step) {
    TabularDigits digits(font_);
    const auto layout = GObjectPtr<PangoLayout>::adopt(pango_layout_new(context_.get()));
    std::set<int> widths;
    for (int second = firstSecond; second <= lastSecond; second += step) {
      const auto two = [](int number) {
        return std::string(number < 10 ? "0" : "") + std::to_string(number);
      };
      const auto text = std::to_string(second / 60) + ":" + two(second % 60) + "  •  Sprint 7";
      pango_layout_set_text(layout.get(), text.c_str(), -1);
      pango_layout_set_attributes(layout.get(), digits.attributes(context_.get(), text).get());
      int width = 0;
      pango_layout_get_size(layout.get(), &width, nullptr);
      widths.insert(width);
    }
    return widths;
  }

 private:
  GObjectPtr<PangoContext> context_;
  PangoFontDescription* font_;
};

// Beside the first character of a line there is no room to add: the first digit may be a pixel narrower.
TEST(TabularDigits, keepTheTextAsWideUntilItsFirstDigitChanges) {
  const auto all = families();
  ASSERT_FALSE(all.empty());
  for (const auto& family : all) {
    // By sevens, so that every digit of the seconds comes.
    EXPECT_EQ(Ruler(family).widths(10 * 60, 14 * 60, 7).size(), 1U) << family;
    EXPECT_EQ(Ruler(family).widths(27 * 60, 29 * 60 + 59, 7).size(), 1U) << family;
    EXPECT_EQ(Ruler(family).widths(9 * 60, 9 * 60 + 59, 1).size(), 1U) << family;
  }
}

}  // namespace
}  // namespace orvalle::platform::linuxos
