#include "update/swap_script.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_update.h"

namespace orvalle::update {
namespace {

TEST(SwapScript, isThisOneByteForByte) {
  EXPECT_EQ(swapScript(platform::memory::MemoryPackageTools()),
            "#!/bin/sh\n"
            "# Aspetta che Orvalle esca, mette la nuova al posto della vecchia,\n"
            "# e la riapre. Poi si cancella.\n"
            "pid=$1\n"
            "for _ in $(seq 1 100); do\n"
            "  kill -0 \"$pid\" 2>/dev/null || break\n"
            "  sleep 0.1\n"
            "done\n"
            "/bin/rm -rf \"$2\"\n"
            "copy \"$3\" \"$2\" || exit 1\n"
            "/bin/rm -rf \"$3\"\n"
            "open \"$2\"\n"
            "/bin/rm -f \"$0\"");
}

}  // namespace
}  // namespace orvalle::update
