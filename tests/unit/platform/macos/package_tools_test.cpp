#include "platform/package_tools.h"

#include <gtest/gtest.h>

#include "platform/macos/factory.h"
#include "update/swap_script.h"

namespace orvalle::platform::macos {
namespace {

class MacPackageTools : public ::testing::Test {
 protected:
  static void expectCommand(const Command& command, const std::filesystem::path& path,
                            const std::vector<std::string>& arguments) {
    EXPECT_EQ(command.path, path);
    EXPECT_EQ(command.arguments, arguments);
  }
  std::unique_ptr<PackageTools> tools = makePackageTools();
};

TEST_F(MacPackageTools, unpackAndVerifyWithTheSystemsOwn) {
  expectCommand(tools->unpack("/tmp/due parole.zip", "/tmp/cartella"), "/usr/bin/ditto",
                {"-x", "-k", "/tmp/due parole.zip", "/tmp/cartella"});
  expectCommand(tools->verify("/tmp/Orvalle.app"), "/usr/bin/codesign",
                {"--verify", "--deep", "--strict", "/tmp/Orvalle.app"});
}

TEST_F(MacPackageTools, listInOneLanguage) {
  expectCommand(tools->list("/tmp/x.zip"), "/usr/bin/env",
                {"LC_ALL=en_US.UTF-8", "/usr/bin/bsdtar", "-t", "-v", "-f", "/tmp/x.zip"});
  EXPECT_EQ(tools->list("/tmp/x.zip").tool, "/usr/bin/bsdtar");
}

TEST_F(MacPackageTools, judgeWhatThatLists) {
  const auto fine = tools->judge("-rw-r--r--  0 501    20      27 Nov 21 14:01 Orvalle.app/Contents/a b\n");
  EXPECT_TRUE(std::holds_alternative<std::uintmax_t>(fine));
  const auto climbing = tools->judge("-rw-r--r--  0 501    20      27 Nov 21 14:01 ../a\n");
  EXPECT_TRUE(std::holds_alternative<std::string>(climbing));
}

TEST_F(MacPackageTools, makeTheSwapScriptByteForByte) {
  EXPECT_EQ(update::swapScript(*tools),
            "#!/bin/sh\n"
            "# Aspetta che Orvalle esca, mette la nuova al posto della vecchia,\n"
            "# e la riapre. Poi si cancella.\n"
            "pid=$1\n"
            "for _ in $(seq 1 100); do\n"
            "  kill -0 \"$pid\" 2>/dev/null || break\n"
            "  sleep 0.1\n"
            "done\n"
            "/bin/rm -rf \"$2\"\n"
            "/usr/bin/ditto \"$3\" \"$2\" || exit 1\n"
            "/bin/rm -rf \"$3\"\n"
            "/usr/bin/open \"$2\"\n"
            "/bin/rm -f \"$0\"");
}

}  // namespace
}  // namespace orvalle::platform::macos
