#include "platform/linux/codesign/manifest.h"

#include <gtest/gtest.h>

namespace orvalle::contract {
namespace {

using platform::linuxos::Manifest;
using platform::linuxos::ManifestEntry;
using platform::linuxos::readManifest;
using platform::linuxos::writeManifest;
using Kind = ManifestEntry::Kind;

TEST(SignatureManifest, readsBackWhatItWrites) {
  const Manifest manifest{{"bin", {Kind::Folder, 0755, "", ""}},
                          {"bin/due parole \"è\"\n", {Kind::File, 0644, "00ff", ""}},
                          {"via", {Kind::Link, 0, "", "bin/\\x"}}};
  const auto text = writeManifest(manifest);
  ASSERT_TRUE(text);
  EXPECT_EQ(readManifest(*text), manifest);
  EXPECT_EQ(readManifest(writeManifest({}).value()), Manifest());
}

TEST(SignatureManifest, isNotWrittenForNamesThatAreNoText) {
  EXPECT_EQ(writeManifest({{"\xff", {}}}), std::nullopt);
}

TEST(SignatureManifest, isReadWholeOrNotAtAll) {
  const std::string good = R"({"path":"a","mode":420,"sha256":"00"})";
  EXPECT_TRUE(readManifest("[" + good + "]"));
  for (const std::string& bad :
       {std::string(), std::string("{}"), std::string("null"), "[" + good, "[" + good + "," + good + "]",
        std::string("[1]"), std::string("[{}]"), std::string(R"([{"path":"a"}])"),
        std::string(R"([{"path":1,"mode":420}])"), std::string(R"([{"mode":420}])"),
        std::string(R"([{"path":"a","mode":512}])"), std::string(R"([{"path":"a","mode":-1}])"),
        std::string(R"([{"path":"a","mode":"420"}])"), std::string(R"([{"path":"a","sha256":"00"}])"),
        std::string(R"([{"path":"a","target":"b","mode":420}])"),
        std::string(R"([{"path":"a","target":"b","sha256":"00"}])")})
    EXPECT_EQ(readManifest(bad), std::nullopt) << bad;
}

}  // namespace
}  // namespace orvalle::contract
