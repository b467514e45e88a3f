#include "link/snapshot.h"

#include <gtest/gtest.h>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvalle::link {
namespace {

/// A valid state, member by member, each as JSON text.
struct Member {
  std::string key;
  std::string value;
};

const std::vector<Member> kState = {
    {"running", "true"},
    {"isBreak", "false"},
    {"elapsedMin", "0.5"},
    {"remainingMin", "24.25"},
    {"plannedMin", "25"},
    {"projectTitle", "\"Tesi\""},
    {"tasks", R"([{"id":"t1","title":"Scrivere","done":true},{"id":"t2","title":"","done":false}])"},
};

class SnapshotTest : public ::testing::Test {
 protected:
  static std::optional<Snapshot> decode(std::string_view json) {
    const auto state = base::parseJson(json);
    EXPECT_TRUE(state) << json;
    return state ? decodeSnapshot(*state) : std::nullopt;
  }
  /// The valid state with one member set to another value, added, or, without a value, left out.
  static std::optional<Snapshot> decodeWith(const std::string& key, const std::optional<std::string>& value) {
    std::string json;
    bool found = false;
    for (const auto& member : kState) {
      found = found || member.key == key;
      const auto& given = member.key == key ? value : member.value;
      if (given) json += (json.empty() ? "" : ",") + ("\"" + member.key + "\":" + *given);
    }
    if (!found && value) json += ",\"" + key + "\":" + *value;
    return decode("{" + json + "}");
  }
  static std::optional<Snapshot> decodeWithTask(const std::string& task) {
    return decodeWith("tasks", R"([{"id":"a","title":"b","done":true},)" + task + "]");
  }
};

TEST_F(SnapshotTest, isEmptyToBeginWith) {
  const Snapshot empty;
  EXPECT_FALSE(empty.running);
  EXPECT_FALSE(empty.isBreak);
  EXPECT_EQ(empty.elapsedMin, 0);
  EXPECT_EQ(empty.remainingMin, 0);
  EXPECT_EQ(empty.plannedMin, 0);
  EXPECT_EQ(empty.projectTitle, "");
  EXPECT_EQ(empty.origin, std::nullopt);
  EXPECT_TRUE(empty.tasks.empty());
}

TEST_F(SnapshotTest, decodesEveryMember) {
  const Snapshot expected{true,
                          false,
                          0.5,
                          24.25,
                          25,
                          "Tesi",
                          "https://app.example/",
                          {{"t1", "Scrivere", true}, {"t2", "", false}}};
  EXPECT_EQ(decodeWith("origin", "\"https://app.example/\""), expected);
}

TEST_F(SnapshotTest, takesOriginAsAbsentWhenItIsMissingOrNull) {
  for (const auto& state : {decodeWith("origin", {}), decodeWith("origin", "null")}) {
    ASSERT_TRUE(state);
    EXPECT_EQ(state->origin, std::nullopt);
  }
  EXPECT_EQ(decodeWith("origin", "\"\"").value().origin, "");
}

TEST_F(SnapshotTest, needsEveryMemberButTheOrigin) {
  for (const auto& member : kState) {
    EXPECT_FALSE(decodeWith(member.key, std::nullopt)) << member.key;
    EXPECT_FALSE(decodeWith(member.key, "null")) << member.key;
  }
}

TEST_F(SnapshotTest, refusesMembersOfAnotherType) {
  struct Row {
    std::vector<std::string> keys;
    std::vector<std::string> values;
  };
  for (const auto& row : {
           Row{{"running", "isBreak"}, {"0", "1", "0.0", "\"true\"", "\"\"", "[]", "{}", "[true]"}},
           Row{{"elapsedMin", "remainingMin", "plannedMin"},
               {"true", "false", "\"3\"", "\"\"", "[]", "{}", "[3]", "1e400", "-1e400", "1e-400", "-1e-400"}},
           Row{{"projectTitle"}, {"true", "3", "[]", "{}", "[\"Tesi\"]"}},
           Row{{"origin"}, {"true", "false", "3", "0", "[]", "{}", "[\"x\"]"}},
           Row{{"tasks"},
               {"true", "3", "\"\"", "\"[]\"", "{}", "{\"0\":{\"id\":\"a\",\"title\":\"b\",\"done\":true}}"}},
       }) {
    for (const auto& key : row.keys) {
      for (const auto& value : row.values) EXPECT_FALSE(decodeWith(key, value)) << key << " " << value;
    }
  }
}

TEST_F(SnapshotTest, widensIntegersAndReadsAnyFiniteNumber) {
  struct Row {
    std::string text;
    double value;
  };
  for (const auto& row : {Row{"3", 3.0}, Row{"-3", -3.0}, Row{"0", 0.0}, Row{"12.0", 12.0}, Row{"1e1", 10.0},
                          Row{"18446744073709551615", 18446744073709551615.0}, Row{"1e300", 1e300},
                          Row{"-1e300", -1e300}, Row{"0.1", 0.1}}) {
    EXPECT_EQ(decodeWith("elapsedMin", row.text).value().elapsedMin, row.value);
    EXPECT_EQ(decodeWith("remainingMin", row.text).value().remainingMin, row.value);
    EXPECT_EQ(decodeWith("plannedMin", row.text).value().plannedMin, row.value);
  }
}

TEST_F(SnapshotTest, readsEachMemberFromItsOwnKey) {
  EXPECT_TRUE(decodeWith("isBreak", "true").value().isBreak);
  EXPECT_FALSE(decodeWith("running", "false").value().running);
  EXPECT_EQ(decodeWith("projectTitle", "\"\"").value().projectTitle, "");
}

TEST_F(SnapshotTest, acceptsAnEmptyListOfTasks) {
  const auto state = decodeWith("tasks", "[]");
  ASSERT_TRUE(state);
  EXPECT_TRUE(state->tasks.empty());
}

TEST_F(SnapshotTest, refusesTheWholeForOneMalformedTask) {
  EXPECT_TRUE(decodeWithTask(R"({"id":"c","title":"d","done":false})"));
  for (const std::string task : {
           R"({"id":"c","title":"d","done":1})",
           R"({"id":"c","title":"d","done":"true"})",
           R"({"id":"c","title":"d","done":null})",
           R"({"id":"c","title":"d"})",
           R"({"id":5,"title":"d","done":true})",
           R"({"id":null,"title":"d","done":true})",
           R"({"title":"d","done":true})",
           R"({"id":"c","title":5,"done":true})",
           R"({"id":"c","title":null,"done":true})",
           R"({"id":"c","done":true})",
           R"({"ID":"c","title":"d","done":true})",
           R"({})",
           R"(null)",
           R"([])",
           R"(["c","d",true])",
           R"("c")",
           R"(7)",
           R"(true)",
       }) {
    EXPECT_FALSE(decodeWithTask(task)) << task;
  }
}

TEST_F(SnapshotTest, ignoresMembersWithOtherNames) {
  const auto plain = decodeWith("origin", {});
  for (const std::string key : {"version", "Running", "RUNNING", "project_title", "id", "tipo", ""}) {
    for (const std::string value : {"5", "null", "{\"running\":false}", "1e400"}) {
      EXPECT_EQ(decodeWith(key, value), plain) << key << " " << value;
    }
  }
  EXPECT_EQ(decodeWithTask(R"({"id":"c","title":"d","done":false,"due":1,"x":[null]})").value().tasks[1],
            (TaskRow{"c", "d", false}));
}

TEST_F(SnapshotTest, looksKeysUpInTheirExactCase) {
  EXPECT_FALSE(decode(R"({"Running":true,"isBreak":false,"elapsedMin":0,"remainingMin":0,"plannedMin":0,)"
                      R"("projectTitle":"","tasks":[]})"));
  EXPECT_FALSE(decode(R"({"running":true,"is_break":false,"elapsedMin":0,"remainingMin":0,"plannedMin":0,)"
                      R"("projectTitle":"","tasks":[]})"));
}

TEST_F(SnapshotTest, isReadFromObjectsOnly) {
  for (const auto json : {"{}", "[]", "null", "5", "\"x\"", "true", "[{\"running\":true}]"}) {
    EXPECT_FALSE(decode(json)) << json;
  }
}

TEST_F(SnapshotTest, keepsTextsAsTheyCome) {
  const auto state = decodeWith("projectTitle", R"("<b>&amp;</b>\u0000\u202E_🎯")");
  ASSERT_TRUE(state);
  EXPECT_EQ(state->projectTitle, std::string("<b>&amp;</b>\0\u202E_🎯", 21));
}

TEST_F(SnapshotTest, keepsManyTasksInTheirOrder) {
  std::string tasks;
  for (int i = 0; i < 10'000; ++i) {
    tasks += (i ? "," : "") + (R"({"id":")" + std::to_string(i) + R"(","title":"t","done":false})");
  }
  const auto state = decodeWith("tasks", "[" + tasks + "]");
  ASSERT_TRUE(state);
  ASSERT_EQ(state->tasks.size(), 10'000u);
  EXPECT_EQ(state->tasks.front().id, "0");
  EXPECT_EQ(state->tasks[1234].id, "1234");
  EXPECT_EQ(state->tasks.back().id, "9999");
}

}  // namespace
}  // namespace orvalle::link
