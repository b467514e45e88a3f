#pragma once

#include <pango/pango.h>

#include <array>
#include <memory>
#include <string_view>

namespace orvalle::platform::linuxos {

struct AttrListDeleter {
  void operator()(PangoAttrList* list) const { pango_attr_list_unref(list); }
};
using AttrListPtr = std::unique_ptr<PangoAttrList, AttrListDeleter>;

/// Makes all digits of a font equally wide, so that a text with a running time in it does not move: asks the
/// font for its tabular figures, and where it has none adds what is missing beside the narrower digits.
class TabularDigits {
 public:
  /// `font` is what the text is to be drawn in.
  explicit TabularDigits(PangoFontDescription* font) : font_(pango_font_description_copy(font)) {}

  /// The attributes that set `text` in the font with its digits made equal.
  AttrListPtr attributes(PangoContext* context, std::string_view text);

 private:
  struct FontDeleter {
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
  };

  void measure(PangoContext* context);

  std::unique_ptr<PangoFontDescription, FontDeleter> font_;
  /// What the widths were measured in: a context's number changes with its fonts.
  guint measured_ = 0;
  std::array<int, 10> missing_{};
};

}  // namespace orvalle::platform::linuxos
