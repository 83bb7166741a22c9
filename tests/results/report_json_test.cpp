// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/report_json.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "base/files.h"
#include "results/result_rig.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

using Json = nlohmann::json;
using namespace std::chrono_literals;

class ReportJsonRig : public ResultRig {
 protected:
  // Whether an independent reader finds that the text keeps to the schema.
  bool KeepsToTheSchema(const std::string& text) {
    WriteWholeFile(folder_ / "Report.json", text);
    const std::string command =
        fmt::format("{} -i {} {} 2>{}", QUARLIN_JSON_SCHEMA_CHECK, (folder_ / "Report.json").string(),
                    QUARLIN_REPORT_SCHEMA, (folder_ / "faults").string());
    return std::system(command.c_str()) == 0;
  }
  std::string Faults() const { return ReadWholeFile(folder_ / "faults").value_or(""); }

  Json Report() { return Json::parse(ReportJson(Result())); }

  TempFolder folder_;
};

TEST_F(ReportJsonRig, KeepsToItsSchemaWhateverHappened) {
  ASSERT_TRUE(std::filesystem::exists(QUARLIN_JSON_SCHEMA_CHECK)) << "python3-jsonschema is not installed";
  facts_.how = HowEnded::StillRuns;
  record_.AddRequest("unanswered");
  EXPECT_TRUE(KeepsToTheSchema(ReportJson(Result()))) << Faults();

  facts_ = {.version = "1.0.0", .how = HowEnded::SetUpFailed, .reason = AllBytes(), .exitStatus = 2};
  EXPECT_TRUE(KeepsToTheSchema(ReportJson(Result()))) << Faults();

  SwitchEveryCheckOn();
  facts_.scriptErrors = {3, {AllBytes()}};
  facts_.logLosses = {AllBytes()};
  facts_.host = AllBytes();
  receive_.txtparser.SetText(AllBytes());
  for (const Verdict verdict : allVerdicts) {
    for (int i = 0; i < 6; ++i) Exchange(AllBytes(), AllBytes(), {{verdict, AllBytes()}});
    record_.Say(record_.AddOther(), {verdict});
  }
  record_.End();
  EXPECT_TRUE(KeepsToTheSchema(ReportJson(Result()))) << Faults();
}

TEST_F(ReportJsonRig, TheSchemaFindsWhatIsMissingWrongOrNotInIt) {
  Exchange("READ", "", {{Verdict::TimeOut, ""}});
  const Json good = Report();
  const std::vector<std::pair<std::string_view, std::function<void(Json&)>>> changes{
      {"missing", [](Json& json) { json["sums"].erase("open"); }},
      {"unknown", [](Json& json) { json["verdicts"]["nice"] = 1; }},
      {"negative", [](Json& json) { json["verdicts"]["ERR"] = -1; }},
      {"local time alone", [](Json& json) { json["begin"] = "2026-02-03T12:00:00"; }},
      {"unknown end", [](Json& json) { json["ended"] = "well"; }},
      {"failure", [](Json& json) { json["firstFailures"][0]["request"]["hex"] = "5"; }},
  };
  for (const auto& [name, change] : changes) {
    Json changed = good;
    change(changed);
    EXPECT_FALSE(KeepsToTheSchema(changed.dump())) << name;
  }
}

TEST_F(ReportJsonRig, TellsTheRunInNumbersAndTimes) {
  Exchange("READ\r\n", "12.5 kg", {{Verdict::Answered, ""}});
  Exchange("READ\r\n", "12.5 k",
           {{Verdict::NotEqual, ""}, {Verdict::WrongLength, "6 characters instead of 7"}});
  Exchange("READ\r\n", "", {{Verdict::TimeOut, ""}});
  Exchange("READ\r\n", "", {{Verdict::NotSent, "Broken pipe"}});
  record_.AddRequest("READ\r\n");
  record_.Say(record_.AddOther(), {Verdict::Unsolicited, "late"});
  loop_.Pass(2s);
  record_.End();
  loop_.Pass(1h);
  counters_.lblsend.SetCaption("as a script wrote it");
  const Json json = Report();

  EXPECT_EQ(json["sums"], Json::parse(R"({"requests": 5, "good": 1, "failed": 3, "open": 1, "unended": 0,
      "sent": 4, "notSent": 1, "received": 2, "accepted": 0, "unsolicited": 1})"));
  EXPECT_EQ(json["verdicts"]["wrong length"], 1);
  EXPECT_EQ(json["latencyMs"]["count"], 2);
  EXPECT_EQ(json["latencyMs"]["p99.9"], 10);
  EXPECT_EQ(json["begin"].get<std::string>().substr(0, 26), "2026-02-03T12:00:00.000000");
  EXPECT_EQ(json["end"].get<std::string>().substr(0, 26), "2026-02-03T12:00:02.040000");
  EXPECT_EQ(json["seconds"], 2.04);
  EXPECT_EQ(json["ended"], "completed");
  EXPECT_EQ(json["lineErrors"], Json());
  EXPECT_EQ(json["counters"]["lblsend"], "as a script wrote it");
  EXPECT_EQ(json["settings"]["txtAnswerTime"], "0");
  EXPECT_EQ(json["settings"]["Option4(1)"], "1");
  EXPECT_EQ(json["firstFailures"].size(), 3U);
  const Json& failure = json["firstFailures"][0];
  EXPECT_EQ(failure["number"], 2);
  EXPECT_EQ(failure["latencyMs"], 10);
  EXPECT_EQ(failure["request"],
            Json::parse(R"({"size": 6, "text": "READ\\x0D\\x0A", "hex": "52 45 41 44 0D 0A"})"));
  EXPECT_EQ(failure["findings"][1]["detail"], "6 characters instead of 7");
  EXPECT_EQ(json["firstFailures"][1]["answer"], Json());
}

TEST_F(ReportJsonRig, BytesAreCharactersAndSizesAreThoseOfTheWhole) {
  Exchange("\x02\xE9\x9F\\\"", std::string(5000, '\xFF'), {{Verdict::NotEqual, ""}});
  const Json failure = Report()["lastFailures"][0];
  EXPECT_EQ(failure["request"]["text"], "\\x02\u00E9\\x9F\\\"");
  EXPECT_EQ(failure["request"]["hex"], "02 E9 9F 5C 22");
  EXPECT_EQ(failure["answer"]["size"], 5000);
  EXPECT_EQ(failure["answer"]["hex"].get<std::string>().size(), 3 * RunRecord::keptBytes - 1);
}

TEST_F(ReportJsonRig, WithoutAnAnswerThereAreNoLatenciesAndInTheMiddleThereIsNoEnd) {
  facts_.how = HowEnded::StillRuns;
  record_.AddRequest("READ");
  loop_.Pass(1500ms);
  const Json json = Report();
  EXPECT_EQ(json["latencyMs"], Json());
  EXPECT_EQ(json["end"], Json());
  EXPECT_EQ(json["seconds"], 1.5);
  EXPECT_EQ(json["sums"]["unended"], 1);
}

}  // namespace
}  // namespace quarlin
