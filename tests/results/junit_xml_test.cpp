// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/junit_xml.h"

#include <fmt/format.h>

#include <pugixml.hpp>

#include "base/files.h"
#include "results/result_rig.h"
#include "results/write_results.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class JunitRig : public ResultRig {
 protected:
  void Parse() {
    text_ = JunitXml(Result());
    ASSERT_TRUE(document_.load_string(text_.c_str()));
  }
  pugi::xml_node Suites() const { return document_.child("testsuites"); }
  pugi::xml_node Suite() const { return Suites().child("testsuite"); }

  // "time-out: failure 3, not equal: skipped, ...": each case with what it holds; and sees to it that the
  // attributes sum up the cases.
  std::string Outcomes() {
    Parse();
    std::string outcomes;
    std::map<std::string, int> sums{{"failure", 0}, {"error", 0}, {"skipped", 0}};
    for (const pugi::xml_node one : Suite().children("testcase")) {
      ++sums["tests"];
      outcomes += std::string(outcomes.empty() ? "" : ", ") + one.attribute("name").value();
      for (const pugi::xml_node held : one.children()) {
        ++sums[held.name()];
        outcomes += std::string(": ") + held.name();
        if (held.attribute("message")) outcomes += std::string(" ") + held.attribute("message").value();
      }
    }
    for (const pugi::xml_node node : {Suites(), Suite()}) {
      EXPECT_EQ(node.attribute("tests").as_int(), sums["tests"]);
      EXPECT_EQ(node.attribute("failures").as_int(), sums["failure"]);
      EXPECT_EQ(node.attribute("errors").as_int(), sums["error"]);
      EXPECT_EQ(node.attribute("skipped").as_int(), sums["skipped"]);
    }
    return outcomes;
  }

  std::string Property(std::string_view name) const {
    for (const pugi::xml_node property : Suite().child("properties").children("property")) {
      if (property.attribute("name").value() == name) return property.attribute("value").value();
    }
    return "none";
  }

  std::string text_;
  pugi::xml_document document_;
};

TEST_F(JunitRig, AChecksCaseIsThereWhetherItIsOnOrOff) {
  EXPECT_EQ(Outcomes(),
            "time-out: skipped, not equal: skipped, wrong length: skipped, wrong checksum: skipped, "
            "ERR, not sent, script errors: skipped, line errors: skipped");
  SwitchEveryCheckOn();
  EXPECT_EQ(Outcomes(),
            "time-out, not equal, wrong length, wrong checksum, ERR, not sent, script errors, line errors");
  run_.txtAnswerTime.SetText("0");  // waits for ever
  facts_.how = HowEnded::LinkLost;
  facts_.exitStatus = 1;
  EXPECT_EQ(Outcomes(),
            "time-out: skipped, not equal, wrong length, wrong checksum, ERR, not sent, script errors, "
            "line errors");
}

TEST_F(JunitRig, AKindOfFaultFailsOnceWithItsCountAlsoWhenItsCheckIsOffBythen) {
  for (int i = 0; i < 3; ++i)
    Exchange("READ", "12", {{Verdict::NotEqual, ""}, {Verdict::WrongLength, "2 of 7"}});
  Exchange("READ", "", {{Verdict::NotSent, "Broken pipe"}});
  Exchange("READ", "12.5 kg", {{Verdict::Answered, ""}});
  facts_.scriptErrors = {2, {"line 3: Type mismatch", "line 4: Overflow"}};
  facts_.lineErrors = {.parity = 1, .framing = 2, .overrun = 3, .breaks = 4};
  EXPECT_EQ(Outcomes(),
            "time-out: skipped, not equal: failure not equal: 3, wrong length: failure wrong length: 3, "
            "wrong checksum: skipped, ERR, not sent: failure not sent: 1, "
            "script errors: failure script errors: 2, line errors: failure line errors: 6");
  EXPECT_STREQ(Suite().find_child_by_attribute("name", "script errors").child("failure").text().get(),
               "line 3: Type mismatch\nline 4: Overflow\n");
  const std::string lengths =
      Suite().find_child_by_attribute("name", "wrong length").child("failure").text().get();
  EXPECT_EQ(lengths.substr(0, lengths.find('\n')),
            "2026-02-03T12:00:00 No. 1: 2 of 7; sent READ; received 12");
  EXPECT_EQ(std::count(lengths.begin(), lengths.end(), '\n'), 3);
}

TEST_F(JunitRig, NothingPassesAfterASetUpThatFailed) {
  facts_.how = HowEnded::SetUpFailed;
  facts_.exitStatus = 2;
  facts_.reason = "no port";
  run_.Check1.SetChecked(true);
  run_.txtAnswerTime.SetText("100");
  EXPECT_EQ(Outcomes(),
            "time-out: error no port, not equal: skipped, wrong length: skipped, wrong checksum: skipped, "
            "ERR: error no port, not sent: error no port, script errors: skipped, line errors: skipped");
  EXPECT_EQ(Property("ended"), "set-up failed");
  EXPECT_STREQ(Suite().child("system-err").text().get(), "set-up failed: no port\n");
}

TEST_F(JunitRig, TheSuiteTellsWhereWhenAndHowLong) {
  loop_.Pass(1250ms);
  facts_.how = HowEnded::Signal;
  facts_.exitStatus = 1;
  Parse();
  EXPECT_STREQ(Suite().attribute("timestamp").value(), "2026-02-03T12:00:00");
  EXPECT_STREQ(Suite().attribute("hostname").value(), "bench-7");
  EXPECT_STREQ(Suite().attribute("time").value(), "1.250000");
  EXPECT_STREQ(Suites().attribute("time").value(), "1.250000");
  EXPECT_EQ(Property("link"), "/dev/ttyUSB0 9600 n,8,1");
  EXPECT_EQ(Property("version"), "1.0.0");
  EXPECT_EQ(Property("exit status"), "1");
  EXPECT_EQ(Property("ended"), "signal");
  EXPECT_EQ(Property("Option4(1)"), "1");
  EXPECT_EQ(std::string(Suite().child("system-out").text().get()).find('\r'), std::string::npos);
}

// Character references do not make a forbidden character good, so a strict reader is asked as well.
TEST_F(JunitRig, AnyByteGivesAFileThatAStrictReaderTakes) {
  SwitchEveryCheckOn();
  facts_.link = facts_.host = facts_.reason = AllBytes();
  facts_.scriptErrors = {1, {AllBytes()}};
  receive_.txtparser.SetText(AllBytes());
  display_.lstError.AddItem(AllBytes(), AllBytes());
  for (const Verdict verdict : allVerdicts) Exchange(AllBytes(), AllBytes(), {{verdict, AllBytes()}});
  const TempFolder folder;
  ASSERT_TRUE(WriteResults(ProgramFolder(folder.Path()), Result()).empty());
  const std::string command = fmt::format("{} -c 'import sys, xml.dom.minidom as x; x.parse(sys.argv[1])' {}",
                                          QUARLIN_PYTHON, (folder / "junit.xml").string());
  EXPECT_EQ(std::system(command.c_str()), 0);
  Parse();
  EXPECT_NE(Property("link").find("\\x02"), std::string::npos);
  EXPECT_NE(Property("link").find("\u00E9"), std::string::npos);
  EXPECT_NE(std::string(Suite().child("system-err").text().get()).find("\\x1F !\"#$%&'()"),
            std::string::npos);
}

TEST(WriteResults, AFileThatCannotBeWrittenIsNamedAndTheOtherIsThere) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "Report.json");
  const auto failures = WriteResults(ProgramFolder(folder.Path()), RunResult());
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].substr(0, 28), "Report.json was not written:");
  EXPECT_NE(ReadWholeFile(folder / "junit.xml").value_or("").find("<testsuites "), std::string::npos);
}

}  // namespace
}  // namespace quarlin
