#pragma once

#include <string>

namespace orvalle::app {

/// Minutes as "0:07", "24:13" or, from an hour on, "1:05:09": rounded to the nearest second, half away from
/// zero; negative values print as zero. The seconds must fit a signed 64-bit integer: anything else is a
/// mistake of the caller and stops the program.
std::string clock(double minutes);

}  // namespace orvalle::app
