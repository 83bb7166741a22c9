// SPDX-License-Identifier: GPL-3.0-or-later
// Scripts that ask the simulated instrument, judge its answers and end the program with a status.

#include "e2e/real_program.h"

namespace quarlin {
namespace {

// As the script of the demo, in the other language: ten answers, each in a second at most.
constexpr std::string_view tenAnswers = R"js(
function InitTask() { TimerTask.Interval = 10; }
function Task() {
  if (!FormMain.CommIsOpen()) return;
  for (var i = 0; i < 10; ++i) {
    FormMain.SendString("READ\r");
    var answer = FormMain.WaitAnswer(1000);
    if (answer === undefined) FormMain.Finish(4);
    if (!/^(ST|US),(GS|NT),[+-]\d{5}\.\d{3} (kg|g |lb)\r\n$/.test(answer)) WScript.Quit(3);
  }
  FormMain.Sleep(10);
  try { WScript.Quit(0); } finally { FormMain.Finish(5); }
}
function EndTask() { AppendLog.RichAppendText(0, "the end\r\n"); }
)js";

struct StatusRow {
  const char* name;
  const char* file;
  std::string script;
  std::vector<std::string> instrument;
  int status;
  const char* reason;
  const char* shown;
};

TEST_F(RealProgram, AScriptMakesTenMeasurementsAndSaysWhatCameOfThem) {
  // The load of the instrument may change meanwhile, so what is allowed is all, or nothing.
  const auto demo = [](const std::string& mostApart) {
    std::string text = ReadWholeFile(std::string(DEMO_FOLDER) + "/scripts/repeatability.vbs").value_or("");
    return text.replace(text.find("0.02"), 4, mostApart);
  };
  const std::string failed = "quarlin: the script finished with status ";
  const std::vector<StatusRow> rows{
      {"good", "a.vbs", demo("99"), {}, 0, "", "10 weights"},
      {"apart", "a.vbs", demo("-1"), {}, 3, "3\n", "10 weights"},
      {"silent", "a.vbs", demo("99"), {"--drop", "1"}, 4, "4\n", "weight 1: none"},
      {"good in JScript", "b.js", std::string(tenAnswers), {}, 0, "", "the end"},
      {"silent in JScript", "b.js", std::string(tenAnswers), {"--drop", "1"}, 4, "4\n", "the end"},
      {"top level in JScript",
       "b.js",
       "FormMain.Finish(6);" + std::string(tenAnswers),
       {},
       6,
       "6\n",
       "the end"},
      {"short in JScript", "b.js", std::string(tenAnswers), {"--short", "1"}, 3, "3\n", "the end"},
  };
  for (const StatusRow& row : rows) {
    SCOPED_TRACE(row.name);
    ASSERT_FALSE(WriteWholeFile(folder / "a.vbs", ""));
    ASSERT_FALSE(WriteWholeFile(folder / row.file, row.script));
    const std::string port = folder / "port";
    std::vector<std::string> arguments{"--link", port, "--seed", "1"};
    arguments.insert(arguments.end(), row.instrument.begin(), row.instrument.end());
    Program instrument("quarlin-instrument", arguments, folder.Path());
    instrument.FirstOutputLine();
    ConfigureRun(port, "0");
    Configure("txtScriptFile", row.file);
    Configure("chkEnableScript", "1");
    Program& program = Start({"LOAD"});
    EXPECT_EQ(program.Wait(), row.status);
    EXPECT_EQ(program.Errors(), *row.reason == '\0' ? "" : failed + row.reason);
    EXPECT_NE(program.Output().find(row.shown), std::string::npos) << program.Output();
  }
}

}  // namespace
}  // namespace quarlin
