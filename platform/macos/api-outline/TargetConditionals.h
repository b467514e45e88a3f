// What other libraries' headers ask about the target, as far as those do that are used here.
#pragma once

#define TARGET_OS_IPHONE 0
