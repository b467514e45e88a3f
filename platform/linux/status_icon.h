#pragma once

#include "platform/drawing.h"
#include "platform/linux/drawing_cairo.h"
#include "platform/linux/glib_ptr.h"

namespace orvalle::platform::linuxos {

/// The picture as hosts of status items take it, "a(iiay)": squares of 16, 22, 24, 32 and 48 pixels, each
/// pixel its alpha, red, green and blue in this order, not premultiplied. `alpha` (0 to 1) thins the whole.
GlibPtr<GVariant> iconPixmaps(const Drawing& drawing, double alpha, Ink ink);

}  // namespace orvalle::platform::linuxos
