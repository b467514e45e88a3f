#include "platform/linux/tabular_digits.h"

#include <algorithm>
#include <string>

#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {
namespace {

// Kerning would move neighbours closer or farther with the digits that happen to meet.
constexpr char kFeatures[] = "tnum=1, kern=0";
constexpr char kTimeCharacters[] = "0123456789:+";

void insert(PangoAttrList* list, PangoAttribute* attribute, std::size_t start, std::size_t end) {
  attribute->start_index = static_cast<guint>(start);
  attribute->end_index = static_cast<guint>(end);
  pango_attr_list_insert(list, attribute);
}

AttrListPtr plain(const PangoFontDescription* font, std::string_view text) {
  AttrListPtr list(pango_attr_list_new());
  pango_attr_list_insert(list.get(), pango_attr_font_desc_new(font));
  for (auto start = text.find_first_of(kTimeCharacters); start != std::string_view::npos;) {
    const auto end = std::min(text.find_first_not_of(kTimeCharacters, start), text.size());
    insert(list.get(), pango_attr_font_features_new(kFeatures), start, end);
    start = text.find_first_of(kTimeCharacters, end);
  }
  return list;
}

}  // namespace

AttrListPtr TabularDigits::attributes(PangoContext* context, std::string_view text) {
  if (const auto serial = pango_context_get_serial(context); serial != measured_) {
    measured_ = serial;
    measure(context);
  }
  auto list = plain(font_.get(), text);
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (!g_ascii_isdigit(text[index])) continue;
    // Also where nothing is missing, so that every digit is set in the same way.
    const int missing = missing_[static_cast<std::size_t>(text[index] - '0')];
    insert(list.get(), pango_attr_letter_spacing_new(missing), index, index + 1);
  }
  return list;
}

void TabularDigits::measure(PangoContext* context) {
  const auto layout = GObjectPtr<PangoLayout>::adopt(pango_layout_new(context));
  std::array<int, 10> widths{};
  for (std::size_t digit = 0; digit < widths.size(); ++digit) {
    const std::string text(1, static_cast<char>('0' + digit));
    pango_layout_set_text(layout.get(), text.c_str(), 1);
    pango_layout_set_attributes(layout.get(), plain(font_.get(), text).get());
    pango_layout_get_size(layout.get(), &widths[digit], nullptr);
  }
  const int widest = *std::max_element(widths.begin(), widths.end());
  std::transform(widths.begin(), widths.end(), missing_.begin(), [&](int width) { return widest - width; });
}

}  // namespace orvalle::platform::linuxos
