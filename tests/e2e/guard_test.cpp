// SPDX-License-Identifier: GPL-3.0-or-later
// A signal ends the program, whatever the script does.

#include <signal.h>

#include "e2e/real_program.h"

namespace quarlin {
namespace {

struct StuckRow {
  const char* name;
  const char* file;
  const char* script;
  int status;
  const char* errors;  // part of what stands on standard error
  bool lastWord;       // whether EndTask ran
};

// Says by a file that it has come so far; EndTask says so by another one.
constexpr std::string_view vbscriptParts =
    "Sub Tell(name)\r\nCreateObject(\"Scripting.FileSystemObject\").CreateTextFile(name).Close\r\nEnd "
    "Sub\r\n";
constexpr std::string_view jscriptParts =
    "function Tell(name) { new ActiveXObject('Scripting.FileSystemObject').CreateTextFile(name).Close() }\n";

TEST_F(RealProgram, ASignalEndsItWhateverTheScriptDoes) {
  const std::vector<StuckRow> rows{
      {"loop", "a.vbs",
       "Sub InitTask: Tell \"here\": Do: Loop: End Sub\r\nSub EndTask: Tell \"end\": End Sub", 2,
       "cut short InitTask, line 4: The script was stopped", true},
      {"loop in the task and in the last word", "a.vbs",
       "Sub InitTask: TimerTask.Interval = 10: End Sub\r\nSub Task: Tell \"here\": Do: Loop: End Sub\r\n"
       "Sub EndTask: Tell \"end\": Do: Loop: End Sub",
       0, "cut short EndTask, line 6: The script was stopped", true},
      {"loop in JScript", "a.js",
       "function InitTask() { TimerTask.Interval = 10 }\nfunction Task() { Tell('here'); try { for (;;); } "
       "catch (e) {} }\nfunction EndTask() { Tell('end') }",
       0, "cut short Task", true},
      {"a single operation without end", "a.js",
       "function InitTask() { var s = 'x'; while (s.length < 1e7) s += s; Tell('here'); /x*y/.test(s) }\n"
       "function EndTask() { Tell('end') }",
       1, "quarlin: the script does not let the program end; it was abandoned", false},
  };
  for (const StuckRow& row : rows) {
    SCOPED_TRACE(row.name);
    const bool isVbscript = std::string_view(row.file) == "a.vbs";
    for (const char* file : {"here", "end"}) std::filesystem::remove(folder / file);
    ASSERT_FALSE(WriteWholeFile(folder / "any.vbs", ""));
    ASSERT_FALSE(WriteWholeFile(folder / row.file,
                                std::string(isVbscript ? vbscriptParts : jscriptParts) + row.script));
    Configure("txtScriptFile", row.file);
    Configure("chkEnableScript", "1");
    Program& program = Start({"LOAD"});
    ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(folder / "here"); })) << program.Errors();
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(), row.status) << program.Errors();
    EXPECT_NE(program.Errors().find(row.errors), std::string::npos) << program.Errors();
    EXPECT_EQ(std::filesystem::exists(folder / "end"), row.lastWord);
  }
}

}  // namespace
}  // namespace quarlin
