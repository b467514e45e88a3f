#include "platform/linux/status_icon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace orvalle::platform::linuxos {
namespace {

constexpr std::array kSides{16, 22, 24, 32, 48};

struct CairoDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* cairo) const { cairo_destroy(cairo); }
};

/// How much of each pixel the picture covers. Everything is drawn in one ink, so this and the ink are all
/// there is to tell of a pixel.
std::vector<std::uint8_t> coverage(const Drawing& drawing, int side, double alpha) {
  const std::unique_ptr<cairo_surface_t, CairoDeleter> surface(
      cairo_image_surface_create(CAIRO_FORMAT_A8, side, side));
  const std::unique_ptr<cairo_t, CairoDeleter> cairo(cairo_create(surface.get()));
  const double scale = side / std::max({drawing.size.width, drawing.size.height, 1.0});
  draw(cairo.get(), drawing, scale, {});
  cairo_surface_flush(surface.get());

  std::vector<std::uint8_t> covered;
  covered.reserve(static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
  const unsigned char* row = cairo_image_surface_get_data(surface.get());
  for (int y = 0; y < side; ++y, row += cairo_image_surface_get_stride(surface.get())) {
    std::transform(row, row + side, std::back_inserter(covered), [&](unsigned char value) {
      return static_cast<std::uint8_t>(std::lround(value * std::clamp(alpha, 0.0, 1.0)));
    });
  }
  return covered;
}

}  // namespace

GlibPtr<GVariant> iconPixmaps(const Drawing& drawing, double alpha, Ink ink) {
  if (!drawing.isTemplate) ink = Ink{};
  GVariantBuilder sizes;
  g_variant_builder_init(&sizes, G_VARIANT_TYPE("a(iiay)"));
  for (const int side : kSides) {
    std::vector<std::uint8_t> pixels;
    for (const auto covered : coverage(drawing, side, alpha)) {
      pixels.insert(pixels.end(), {covered, ink.red, ink.green, ink.blue});
    }
    g_variant_builder_add(&sizes, "(ii@ay)", side, side,
                          g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, pixels.data(), pixels.size(), 1));
  }
  return GlibPtr<GVariant>(g_variant_ref_sink(g_variant_builder_end(&sizes)));
}

}  // namespace orvalle::platform::linuxos
