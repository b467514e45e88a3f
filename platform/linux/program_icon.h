#pragma once

namespace orvalle::platform::linuxos {

/// Gives the program's windows its icon, which comes with the program: task bars then have a picture even
/// where no desktop entry is installed.
void showProgramIcon();

}  // namespace orvalle::platform::linuxos
