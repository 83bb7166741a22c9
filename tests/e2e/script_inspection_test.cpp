// SPDX-License-Identifier: GPL-3.0-or-later
// quarlin-script looking through scripts that it does not run, with the program's own objects.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "base/files.h"
#include "e2e/program.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

struct Slip {
  std::string file;
  std::string script;
  std::string warnings;
};

TEST(ScriptInspection, ACheckWarnsOfSlipsAndOfNothingElse) {
  const std::vector<Slip> slips{
      {"a.vbs", "Sub RecieveString\r\nEnd Sub",
       "warning line 1 'RecieveString' is never called; was ReceiveString meant?\n"},
      {"a.vbs", "x = 1\r\nSub Init_Task: y = x: MsgBox y: End Sub",
       "warning line 2 'Init_Task' is never called; was InitTask meant?\n"},
      // One of another purpose, one with arguments, one beside the right one, one that is called, hooks
      // themselves.
      {"a.vbs",
       "Sub SendText: End Sub\r\nSub Tsk(a): MsgBox a: End Sub\r\nSub EndTask2: End Sub\r\nSub EndTask: End "
       "Sub\r\n"
       "Sub SendStrng: End Sub\r\nSub sendSTRING: SendStrng: End Sub",
       ""},
      {"a.vbs", "Sub Task\r\n  Intervall = 500\r\n  Interval = 500\r\n  OutputStrng = \"x\"\r\nEnd Sub",
       "warning line 2 'Intervall' is assigned once and never read\n"
       "warning line 4 'OutputStrng' is assigned once and never read\n"},
      // Read elsewhere, by reference, in a class, as a result, as a loop's counter, by a text that is run.
      {"a.vbs",
       "limit = 5\r\nFunction Twice(n): Twice = 2: n = 4: End Function\r\nSub Task: For i = 1 To limit: "
       "Twice k: Next\r\n"
       "  k = 1: End Sub\r\nClass C: Public a: Sub S: a = 1: End Sub: End Class",
       ""},
      {"a.vbs", "hidden = 1: Execute \"MsgBox hidden\"", ""},
      {"a.vbs",
       "FormMain.txtMax.Txt = 1: txtMax.Text = 2: FrmCommand.TextIO(3).Text = 3: TextIO(1).Tekst = 4\r\n"
       "With FrmCommand: .ShpOutput(2).FillColor = 1: .NoSuch = 1: End With: Check99.Value = 1",
       "warning line 1 there is no member FormMain.txtMax.Txt\nwarning line 1 there is no member "
       "TextIO.Tekst\n"
       "warning line 2 there is no member FrmCommand.NoSuch\nwarning line 2 there is no object 'Check99'\n"},
      {"a.vbs",
       "Set d = CreateObject(\"scripting.dictionary\"): d.Add 1, d.Sum\r\nSet c = "
       "CreateObject(\"ADODB.Connection\"): c.Open\r\n"
       "d.RemoveAll: MsgBox \"C:\\Data\\x.txt http://x D:\"",
       "warning line 1 there is no member d.Sum (scripting.dictionary)\n"
       "warning line 2 'ADODB.Connection' cannot be made here\n"
       "warning line 3 \"C:\\Data\\x.txt http://x D:\" names a drive, and there are none here\n"},
      {"a.vbs",
       "Set o = CreateObject(\"Scripting.Dictionary\"): Sub Task: Set o = "
       "CreateObject(\"Excel.Application\"): o.Quit: End Sub\r\n"
       "Sub EndTask: Make p: p.Any = 1: End Sub: Sub Make(x): Set x = o: End Sub",
       ""},
      {"a.vbs",
       "Set d = CreateObject(\"Scripting.Dictionary\") : Set d(1) = New RegExp : d(1).Test \"a\" : d.Test\r\n"
       "Set xl = CreateObject(\"Excel.Application\") : xl.Workbooks.Add : xl.Workbooks.Open \"a.xlsx\"\r\n",
       "warning line 1 there is no member d.Test (Scripting.Dictionary)\n"
       "warning line 2 there is no member xl.Workbooks.Open (Excel.Application)\n"},
      {"b.js",
       "var f = (a, b) => a.x + b.y, g = c => c.z; for (k in {}) k.length; with (FormMain) { Nothing.Here = "
       "1; }\n"
       "try { f(g); } catch (e) { e.message; }\nencodeURIComponent('x'); var n = {inner: 1}, m; m.go();",
       ""},
      {"b.js",
       "function RecieveChar() {}\nfunction go(form) { form.txtMax.Nothing = FormMain.txtMax.Text; "
       "}\ngo(FormMain);\n"
       "FormMain.txtMax.Txt = 'a:\\n';\nvar fso = new ActiveXObject('Shell.Application'), d = new Date();\n"
       "Chek1.Value = Math.max(d.getTime(), 1) + 'c:\\\\temp';",
       "warning line 1 'RecieveChar' is never called; was ReceiveChar meant?\n"
       "warning line 4 there is no member FormMain.txtMax.Txt\nwarning line 5 'Shell.Application' cannot be "
       "made here\n"
       "warning line 6 there is no object 'Chek1'\nwarning line 6 \"c:\\temp\" names a drive, and there are "
       "none here\n"},
  };
  for (const Slip& slip : slips) {
    SCOPED_TRACE(slip.script);
    const TempFolder folder;
    ASSERT_FALSE(WriteWholeFile(folder / slip.file, slip.script));
    Program program("quarlin-script", {"--check", folder / slip.file}, folder.Path());
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.Errors(), slip.warnings);
    EXPECT_EQ(program.Output(), "");
  }
}

TEST(ScriptInspection, AnInventoryTellsWhatAFolderNeeds) {
  const TempFolder folder;
  std::filesystem::create_directories(folder / "old/deep");
  ASSERT_FALSE(
      WriteWholeFile(folder / "old/a.VBS", "x = CDbl(InputString) + CDbl(\"1\") + CDbl(2)\r\nMsgBox x"));
  ASSERT_FALSE(WriteWholeFile(folder / "old/deep/b.vbs", "If x Then\r\n"));
  ASSERT_FALSE(WriteWholeFile(folder / "old/deep/c.Js",
                              "new ActiveXObject('Excel.Application'); new ActiveXObject('No.Such');"));
  ASSERT_FALSE(WriteWholeFile(folder / "old/german.vbs", "SetLocale 1031: MsgBox CDbl(InputBox(\"\"))"));
  ASSERT_FALSE(WriteWholeFile(folder / "old/deep/d.vbs", "Foo\nCall Foo\nOwn\nx = Baz\nSub Own\nEnd Sub"));
  ASSERT_FALSE(WriteWholeFile(folder / "old/notes.txt", "If x Then"));

  Program table("quarlin-script", {"--inventory", folder / "old"}, folder.Path());
  EXPECT_EQ(table.Wait(), 1);
  EXPECT_EQ(table.Errors(), "");
  for (const char* line : {"a.VBS (VBScript)\n  locale    CDbl goes by the locale, at first en-us; line 1\n",
                           "deep/b.vbs (VBScript)\n  compile   does not compile: ",
                           "\n  No.Such                                1        1  no\n",
                           "\n  Excel.Application                      1        1  yes\n"}) {
    EXPECT_NE(table.Output().find(line), std::string::npos) << line << "is not in\n" << table.Output();
  }

  Program json("quarlin-script", {"--inventory", folder / "old", "--json"}, folder.Path());
  EXPECT_EQ(json.Wait(), 1);
  const auto told = nlohmann::json::parse(json.Output());
  EXPECT_EQ(told["counts"]["scripts"], 5);
  EXPECT_EQ(told["counts"]["compile"], 1);
  EXPECT_EQ(told["counts"]["program"], 1);
  EXPECT_EQ(told["counts"]["locale"], 2);
  EXPECT_EQ(told["counts"]["procedure"], 2);
  EXPECT_EQ(told["scripts"][1]["file"], "deep/b.vbs");
  EXPECT_EQ(told["scripts"][1]["compiles"], false);
  EXPECT_EQ(told["scripts"][2]["programs"][1]["here"], false);

  std::filesystem::remove_all(folder / "old/deep");
  Program good("quarlin-script", {"--json", "--inventory", folder / "old"}, folder.Path());
  EXPECT_EQ(good.Wait(), 0) << good.Output();
  Program check("quarlin-script", {"--json", "--check", folder / "old/a.VBS"}, folder.Path());
  EXPECT_EQ(check.Wait(), 0);
  EXPECT_EQ(nlohmann::json::parse(check.Output())["findings"][0]["name"], "CDbl");
}

}  // namespace
}  // namespace quarlin
