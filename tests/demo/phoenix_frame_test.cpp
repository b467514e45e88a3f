#include "demo/server/phoenix_frame.h"

#include <gtest/gtest.h>

#include <string>

namespace orvalle::demo {
namespace {

using namespace std::string_literals;

WireMessage text(const std::string& bytes) {
  return {false, bytes};
}

std::string rewritten(Serializer from, const WireMessage& message, Serializer to) {
  const auto frame = decodeFrame(from, message);
  if (!frame) return "no frame";
  const auto written = encodeFrame(to, *frame);
  return written ? written->bytes : "not written";
}

TEST(PhoenixFrameTest, versionsNameTheSerializer) {
  EXPECT_EQ(serializerFor(""), Serializer::Objects);
  EXPECT_EQ(serializerFor("1.0.0"), Serializer::Objects);
  EXPECT_EQ(serializerFor("2.0.0"), Serializer::Arrays);
  for (const char* version : {"1", "2", "3.0.0", "1.0.0 ", "x"})
    EXPECT_FALSE(serializerFor(version)) << version;
}

TEST(PhoenixFrameTest, objectsAndArraysSayTheSame) {
  const WireMessage object =
      text(R"({"payload":{"a":[1,2.5,"è"]},"ref":"7","topic":"t","event":"e","join_ref":"3","x":0})");
  const WireMessage array = text(R"(["3","7","t","e",{"a":[1,2.5,"è"]}])");
  for (const auto& [serializer, message] :
       {std::pair(Serializer::Objects, object), std::pair(Serializer::Arrays, array)}) {
    const auto frame = decodeFrame(serializer, message);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->topic, "t");
    EXPECT_EQ(frame->event, "e");
    EXPECT_EQ(frame->ref, base::Json("7"));
    EXPECT_EQ(frame->joinRef, base::Json("3"));
    EXPECT_EQ(base::writeJson(frame->payload), R"({"a":[1,2.5E0,"è"]})");
  }
}

TEST(PhoenixFrameTest, objectsAreWrittenWithFourMembers) {
  EXPECT_EQ(rewritten(Serializer::Arrays, text(R"(["3",7,"t","e",null])"), Serializer::Objects),
            R"({"topic":"t","event":"e","payload":null,"ref":7})");
  EXPECT_EQ(
      rewritten(Serializer::Objects, text(R"({"topic":"t","event":"e","payload":5})"), Serializer::Arrays),
      R"([null,null,"t","e",5])");
}

TEST(PhoenixFrameTest, whatIsNoFrameIsAbsent) {
  for (const char* bad :
       {"", "{", "null", "5", "[]", "{}", R"({"topic":"t","event":"e"})",
        R"({"topic":1,"event":"e","payload":{}})", R"({"topic":"t","payload":{}})",
        R"({"topic":"t","event":"e","payload":{},"ref":true})",
        R"({"topic":"t","event":"e","payload":{},"join_ref":[]})", R"([null,null,"t","e",{}])"}) {
    EXPECT_FALSE(decodeFrame(Serializer::Objects, text(bad))) << bad;
  }
  for (const char* bad :
       {"", "[", "{}", "[]", R"(["1","1","t","e"])", R"(["1","1","t","e",{},0])", R"(["1","1",5,"e",{}])",
        R"(["1",{},"t","e",{}])", R"({"topic":"t","event":"e","payload":{},"ref":"1"})"}) {
    EXPECT_FALSE(decodeFrame(Serializer::Arrays, text(bad))) << bad;
  }
}

TEST(PhoenixFrameTest, aPushInBytesBecomesABroadcast) {
  const WireMessage push{true, "\x03\x01\x02\x01\x05\x00\x01"s + "3" + "12" + "t" + "state" + R"({"a":1})"};
  const auto frame = decodeFrame(Serializer::Arrays, push);
  ASSERT_TRUE(frame);
  EXPECT_EQ(frame->joinRef, base::Json("3"));
  EXPECT_EQ(frame->ref, base::Json("12"));
  EXPECT_FALSE(frame->data);
  EXPECT_EQ(
      rewritten(Serializer::Arrays, push, Serializer::Objects),
      R"({"topic":"t","event":"broadcast","payload":{"type":"broadcast","event":"state","payload":{"a":1}},"ref":"12"})");
  EXPECT_FALSE(decodeFrame(Serializer::Objects, push));
}

TEST(PhoenixFrameTest, bytesThatAreNoJsonStayBytes) {
  const WireMessage push{true, "\x03\x00\x00\x01\x05\x02\x00"s + "t" + "state" + "{}" + "\x00\xff"s};
  const auto frame = decodeFrame(Serializer::Arrays, push);
  ASSERT_TRUE(frame);
  EXPECT_TRUE(frame->ref.is_null());
  const auto written = encodeFrame(Serializer::Arrays, *frame);
  EXPECT_EQ(written, (WireMessage{true, "\x04\x01\x05\x00\x00"s + "t" + "state" + "\x00\xff"s}));
  EXPECT_FALSE(encodeFrame(Serializer::Objects, *frame));
}

TEST(PhoenixFrameTest, everyCutOfAPushIsNoFrameOrHarmless) {
  const std::string whole = "\x03\x01\x02\x01\x05\x02\x01"s + "3" + "12" + "t" + "state" + "{}" + "5";
  ASSERT_TRUE(decodeFrame(Serializer::Arrays, {true, whole}));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(decodeFrame(Serializer::Arrays, {true, whole.substr(0, length)})) << length;
  }
  for (const char kind : {0, 1, 2, 4}) {
    std::string other = whole;
    other[0] = kind;
    EXPECT_FALSE(decodeFrame(Serializer::Arrays, {true, other}));
  }
}

TEST(PhoenixFrameTest, aNumberThatJsonCannotHoldIsNotPassedOn) {
  EXPECT_EQ(rewritten(Serializer::Objects, text(R"({"topic":"t","event":"e","payload":1e999,"ref":null})"),
                      Serializer::Objects),
            "not written");
}

}  // namespace
}  // namespace orvalle::demo
