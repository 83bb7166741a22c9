// SPDX-License-Identifier: GPL-3.0-or-later
// Every exit status with the line that says why, from command lines as a script of the user's would give
// them.

#include <signal.h>

#include "e2e/real_program.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

struct SetUpRow {
  const char* name;
  std::vector<std::pair<const char*, std::string>> settings;  // besides those of a run
  std::vector<std::pair<const char*, const char*>> files;
  std::vector<std::string> words;
  const char* reason;
};

using Words = std::vector<std::string>;

// Whether both results for machines are there and tell of this end.
void ExpectResults(const std::filesystem::path& folder, std::string_view ended, int status) {
  const std::string json = ReadWholeFile(folder / "Report.json").value_or("");
  EXPECT_NE(json.find("\"ended\": \"" + std::string(ended) + "\""), std::string::npos) << json.substr(0, 600);
  EXPECT_NE(json.find("\"exitStatus\": " + std::to_string(status)), std::string::npos);
  EXPECT_EQ(json.find("\"end\": null"), std::string::npos);
  const std::string xml = ReadWholeFile(folder / "junit.xml").value_or("");
  EXPECT_EQ(xml.find("<error") != std::string::npos, status == 2) << xml.substr(0, 600);
  std::filesystem::remove(folder / "Report.json");
  std::filesystem::remove(folder / "junit.xml");
}

TEST_F(RealProgram, ASetUpThatFailsIsStatusTwoAndOpensNothing) {
  const std::vector<SetUpRow> rows{
      {"no script",
       {{"chkEnableScript", "1"}, {"txtScriptFile", "a.vbs"}},
       {{"b.vbs", ""}},
       {},
       "a.vbs is not there"},
      {"no script at all", {{"chkEnableScript", "1"}}, {}, {}, "there is no *.vbs file"},
      {"script that does not compile",
       {{"chkEnableScript", "1"}, {"txtScriptFile", "b.vbs"}},
       {{"b.vbs", "Sub ("}},
       {},
       "the script b.vbs does not run"},
      {"InitTask in VBScript",
       {{"chkEnableScript", "1"}, {"txtScriptFile", "b.vbs"}},
       {{"b.vbs", "Sub InitTask: x = 1 / 0: End Sub"}},
       {},
       "did not get through InitTask"},
      {"InitTask in JScript",
       {{"chkEnableScript", "1"}, {"txtScriptFile", "b.js"}},
       {{"a.vbs", ""}, {"b.js", "function InitTask() { nothing.at.all(); }"}},
       {},
       "did not get through InitTask"},
      {"no sequence", {}, {}, {"SEQUENCE"}, "sequence.txt has no line to send"},
      {"empty sequence",
       {},
       {{"sequence.txt", "\r\n\r\n"}},
       {"SEQUENCE"},
       "sequence.txt has no line to send"},
      {"checksum", {{"cboCheckSum", "CRC99"}}, {}, {}, "cboCheckSum \"CRC99\" is not known"},
      {"format", {{"ComboWord", "n,9,1"}}, {}, {}, "ComboWord \"n,9,1\" is not known"},
  };
  for (const SetUpRow& row : rows) {
    SCOPED_TRACE(row.name);
    for (const char* file : {"a.vbs", "b.vbs", "b.js", "sequence.txt"})
      std::filesystem::remove(folder / file);
    for (const auto& [name, text] : row.files) ASSERT_FALSE(WriteWholeFile(folder / name, text));
    ConfigureRun(wire.Path(), "3");
    for (const auto& [name, text] : row.settings) Configure(name, text);
    Words words{"LOAD", "RUN", "EXIT"};
    words.insert(words.end(), row.words.begin(), row.words.end());
    Program& program = Start(words);
    EXPECT_EQ(program.Wait(), 2) << program.Errors();
    EXPECT_NE(program.Errors().find("quarlin: "), std::string::npos);
    EXPECT_NE(program.Errors().find(row.reason), std::string::npos) << program.Errors();
    EXPECT_EQ(program.Errors().back(), '\n');
    EXPECT_EQ(program.Output().find("READ"), std::string::npos) << "nothing was sent";
    ExpectResults(folder.Path(), "set-up failed", 2);
  }
}

TEST_F(RealProgram, AConfigurationThatIsMissingOrCannotBeReadIsSaid) {
  const std::map<std::string, std::string> home{{"QUARLIN_HOME", folder.Path()}};
  Program missing("quarlin", {"--headless", "LOAD", "RUN", "EXIT"}, folder.Path(), home);
  EXPECT_EQ(missing.Wait(), 2);
  EXPECT_NE(missing.Errors().find("quarlin: LOAD: there is no config.cfg\n"), std::string::npos)
      << missing.Errors();
  std::filesystem::create_directory(folder / "config.cfg");
  Program unreadable("quarlin", {"--headless", "LOAD", "RUN", "EXIT"}, folder.Path(), home);
  EXPECT_EQ(unreadable.Wait(), 2);
  EXPECT_NE(unreadable.Errors().find("quarlin: LOAD: config.cfg cannot be read\n"), std::string::npos)
      << unreadable.Errors();
}

TEST_F(RealProgram, AProgramFolderThatIsNoneIsStatusTwo) {
  ASSERT_FALSE(WriteWholeFile(folder / "file", ""));
  Program program("quarlin", {"--headless", "DIALOG"}, folder.Path(),
                  {{"QUARLIN_HOME", (folder / "file").string()}});
  EXPECT_EQ(program.Wait(), 2);
  EXPECT_NE(program.Errors().find("cannot be used: Not a directory\n"), std::string::npos)
      << program.Errors();
}

struct RunRow {
  const char* name;
  std::vector<std::pair<const char*, const char*>> settings;
  const char* answer;
  int status;
  const char* ended;
  const char* reason;  // part of what stands on standard error; empty for nothing at all
};

TEST_F(RealProgram, ARunEndsWithTheStatusThatItHasEarned) {
  const std::vector<RunRow> rows{
      {"good", {}, "OK\r\n", 0, "completed", ""},
      {"a run of nothing", {{"Text1", "0"}}, "OK\r\n", 1, "completed", "quarlin: nothing was exchanged\n"},
      {"wrong length",
       {{"Check1", "0"}, {"txtlenrx", "3"}, {"txtInterval", "20"}},
       "OK\r\n",
       1,
       "completed",
       " error"},
      {"ERR", {{"Check1", "0"}, {"txtInterval", "20"}}, "ERR\r\n", 1, "completed", " error"},
      {"time-outs",
       {{"chkTimeout", "1"}, {"txtTimeout", "2"}, {"txtAnswerTime", "30"}},
       "",
       1,
       "stopped",
       "quarlin: the run was stopped before its end; 2 errors\n"},
      {"a stop by a message",
       {{"chkStopif", "1"}, {"txtConv", "OK"}},
       "OK\r\n",
       1,
       "message",
       "quarlin: stopped: SEARCH STRING: STRING FOUND\n"},
      {"the counter",
       {{"CBOSEND", "W[COUNTER]"}, {"txtMax", "1"}, {"chkStopCounter", "1"}},
       "OK\r\n",
       1,
       "message",
       "quarlin: stopped: STOP CYCLE: COUNTER STOP\n"},
  };
  for (const RunRow& row : rows) {
    SCOPED_TRACE(row.name);
    ConfigureRun(wire.Path(), "3");
    for (const auto& [name, text] : row.settings) Configure(name, text);
    Program& program = Start({"LOAD", "RUN", "EXIT"});
    wire.Serve([&](std::string_view request) { return request.ends_with('\n') ? row.answer : ""; },
               [&] { return !program.Running(); });
    EXPECT_EQ(program.Wait(), row.status);
    EXPECT_NE(program.Errors().find(row.reason), std::string::npos) << program.Errors();
    EXPECT_EQ(program.Errors().empty(), *row.reason == 0) << program.Errors();
    ExpectResults(folder.Path(), row.ended, row.status);
  }
}

struct SignalRow {
  const char* name;
  const char* counts;  // "Number of Request"
  int status;
  const char* reason;
};

TEST_F(RealProgram, ASignalCutsACountedRunShortAndEndsAnyOtherInItsNormalWay) {
  for (const SignalRow& row : std::vector<SignalRow>{{"counted", "1", 1, "quarlin: a signal ended the run, "},
                                                     {"endless", "0", 0, ""}}) {
    SCOPED_TRACE(row.name);
    ConfigureRun(wire.Path(), "1000000");
    Configure("Check2", row.counts);
    Program& program = Start({"LOAD", "RUN", "EXIT"});
    int answers = 0;
    wire.Serve([&](std::string_view) { return ++answers, "OK\r\n"; }, [&] { return answers >= 20; });
    program.Signal(SIGTERM);
    wire.Serve([](std::string_view) { return "OK\r\n"; }, [&] { return !program.Running(); });
    EXPECT_EQ(program.Wait(), row.status);
    EXPECT_NE(program.Errors().find(row.reason), std::string::npos) << program.Errors();
    EXPECT_EQ(program.Errors().empty(), *row.reason == 0) << program.Errors();
    ExpectResults(folder.Path(), "signal", row.status);
  }
}

// A hook that fails lets the run go on; each procedure's first error is told.
TEST_F(RealProgram, ErrorsOfAScriptFailTheTest) {
  for (const auto& [file, source] : std::vector<std::pair<std::string, std::string>>{
           {"hook.vbs", "Sub ReceiveString\n  x = 1 / 0\nEnd Sub\n"},
           {"hook.js", "function ReceiveString() { nothing.at.all(); }\n"}}) {
    SCOPED_TRACE(file);
    ASSERT_FALSE(WriteWholeFile(folder / "probe.vbs", ""));
    ASSERT_FALSE(WriteWholeFile(folder / file, source));
    ConfigureRun(wire.Path(), "3");
    Configure("txtScriptFile", file);
    Configure("chkEnableScript", "1");
    Program& program = Start({"LOAD", "RUN", "EXIT"});
    wire.Serve([](std::string_view) { return "OK\r\n"; }, [&] { return !program.Running(); });
    EXPECT_EQ(program.Wait(), 1);
    const std::string errors = program.Errors();
    EXPECT_EQ(errors.find("script error in ReceiveString, line "),
              errors.rfind("script error in ReceiveString"))
        << errors;
    EXPECT_NE(errors.find("quarlin: 3 script errors\n"), std::string::npos) << errors;
  }
}

// Boxes that come after the signal are lines, and nobody has to answer them.
TEST_F(RealProgram, ASignalEndsAScriptsLastWordsToo) {
  ASSERT_FALSE(
      WriteWholeFile(folder / "last.vbs", "Sub EndTask: MsgBox \"bye\": MsgBox \"again\": End Sub\n"));
  Configure("cboSerial", wire.Path());
  Configure("txtScriptFile", "last.vbs");
  Configure("chkEnableScript", "1");
  Program& program = Start({"LOAD", "x", "LOG"});
  Knock();
  program.Signal(SIGTERM);
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_EQ(program.Errors(), "VBScript: bye\nVBScript: again\n");
}

}  // namespace
}  // namespace quarlin
