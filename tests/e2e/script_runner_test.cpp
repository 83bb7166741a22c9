// SPDX-License-Identifier: GPL-3.0-or-later
// quarlin-script: what it prints, and its exit status.

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <csignal>
#include <thread>

#include "base/files.h"
#include "e2e/program.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

struct RunnerCase {
  std::string file;
  std::string script;
  std::vector<std::string> before;  // the file's name
  std::vector<std::string> behind;
  int status;
  std::string output;
  std::string errors;
};

std::string Utf16Bytes(std::u16string_view text, std::size_t highByte) {
  std::string bytes;
  for (const char16_t unit : text) {
    const std::array<char, 2> halves{static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
    bytes += {halves[highByte == 0 ? 1 : 0], halves[highByte == 0 ? 0 : 1]};
  }
  return bytes;
}

TEST(ScriptRunner, RunsWhatItIsToldAndReportsErrors) {
  const std::u16string wide = u"s = \"\u20AC\"\u00A0' \u2002\r\nRichAppendText 0, AscW(s) & Len(s)\r\n";
  const std::string hooks =
      "RichAppendText 0, \"top\" & vbCrLf\r\n"
      "Sub Named: RichAppendText 255, \"n\" & ChrW(233): End Sub\r\n"
      "Sub ReceiveChar: CharReceived.OutputString = UCase(CharReceived.InputString): End Sub\r\n"
      "Sub ReceiveString: StringReceived.OutputString = \"<\" & StringReceived.InputString & \">\": End "
      "Sub\r\n"
      "Sub Bad\r\n  x = 1 / 0\r\nEnd Sub";
  const std::vector<RunnerCase> cases{
      {"a.vbs", hooks, {}, {}, 0, "top\r\n", ""},
      {"a.vbs", hooks, {}, {"Named", "named"}, 0, "top\r\nn\u00E9n\u00E9", ""},
      {"a.vbs",
       hooks,
       {},
       {"--input", "a\u00E9", "--receive", "x", "--send", "as it is", "Named"},
       0,
       "top\r\nA\u00C9\n<x>\nas it is\nn\u00E9",
       ""},
      {"a.vbs",
       hooks,
       {},
       {"Bad", "Named"},
       1,
       "top\r\n",
       "## ERROR in a.vbs\nDivision by zero\nLine:6 Column:2\nVBScript runtime error\n\n  x = 1 / 0\n"
       "error 11 line 6 column 2 Division by zero\n"},
      {"latin.vbs", "RichAppendText 0, \"\xE9\" & Len(\"\xE9\")", {}, {}, 0, "\u00E91", ""},
      {"box.vbs",
       "RichAppendText 0, MsgBox(\"a\" & vbCrLf & \"b\", vbYesNo, \"T\")",
       {},
       {},
       0,
       "6",
       "T: a b\n"},
      {"b.js",
       "RichAppendText(0, 'js'); function go() { RichAppendText(0, 1 + 1); }",
       {},
       {"go"},
       0,
       "js2",
       ""},
      {"c.VBS.js", "RichAppendText 0, \"vb\"", {}, {}, 0, "vb", ""},
      {"marked.vbs",
       "\xEF\xBB\xBFRichAppendText 0, Len(\"\xC3\xA9\") ' \x1A\r\n\x1A\x1A\r\n",
       {},
       {},
       0,
       "1",
       ""},
      {"le.vbs", "\xFF\xFE" + Utf16Bytes(wide, 0), {}, {}, 0, "83641", ""},
      {"be.vbs", "\xFE\xFF" + Utf16Bytes(wide, 1), {}, {}, 0, "83641", ""},
      {"le.vbs", Utf16Bytes(wide, 0), {}, {}, 0, "83641", ""},
      {"be.js", Utf16Bytes(u"RichAppendText(0, 'js')\r\n\x1A", 1), {}, {}, 0, "js", ""},
      {"pasted.vbs",
       "x = \x93y\x94",
       {"--check"},
       {},
       1,
       "",
       "## ERROR in pasted.vbs\nInvalid character (the file was read as one byte a character): 'U+0093 LEFT "
       "DOUBLE "
       "QUOTATION MARK of code page 1252'\nLine:1 Column:4\nVBScript compilation error\n\nx = \u0093y\u0094\n"
       "error 1032 line 1 column 4 Invalid character (the file was read as one byte a character): 'U+0093 "
       "LEFT "
       "DOUBLE QUOTATION MARK of code page 1252'\n"},
      {"long.vbs",
       std::string((std::size_t{16} << 20) + 1, '\''),
       {},
       {},
       1,
       "",
       "## ERROR in long.vbs\nA script has 16 MiB at most: 'long.vbs'\nLine:0 Column:0\nVBScript runtime "
       "error\n\n"
       "error 7 line 0 column 0 A script has 16 MiB at most: 'long.vbs'\n"},
      {"w.vbs",
       "WScript.Echo 1, \"é\", True: WScript.Echo: WScript.StdErr.WriteLine \"e\": WScript.StdOut.Write 2\r\n"
       "For Each a In WScript.Arguments: WScript.Echo a: Next\r\n"
       "Set n = WScript.Arguments.Named: WScript.Echo n(\"RATE\"), n.Exists(\"x\"), n(\"log\"), n.Count\r\n"
       "Set d = WScript.CreateObject(\"Scripting.Dictionary\"): d(1) = 2\r\n"
       "WScript.Echo WScript.Arguments.Unnamed(0), WScript.ScriptName, d(1)\r\n"
       "Sub Q: On Error Resume Next: WScript.Sleep 1: WScript.Quit 7: WScript.Echo \"on\": End Sub",
       {},
       {"Q", "Q", "--", "--check", "/rate:9600", "/log-"},
       7,
       "1 é True\n\n2--check\n/rate:9600\n/log-\n9600 False False 2\n--check w.vbs 2\n",
       "e\n"},
      {"w.js",
       "WScript.Echo(WScript.Arguments.length, WScript.Arguments(0), null); var on = false;\n"
       "function q() { try { WScript.Quit(-1); } catch (e) { on = true; } finally { on = true; } "
       "WScript.Echo(on); }\n"
       "function w() { FormMain.Sleep(1); WScript.Echo(FormMain.WaitAnswer(1) === undefined); }",
       {},
       {"w", "q", "w", "--", "a b"},
       255,
       "1 a b null\nTrue\n",
       ""},
      {"f.vbs", "FormMain.Finish 3: WScript.Echo 1", {}, {"x"}, 3, "", ""},
      {"f.vbs", "WScript.Echo WScript.Arguments.Count: WScript.Quit", {}, {"--"}, 0, "0\n", ""},
      {"a.vbs", hooks, {"--check"}, {}, 0, "", ""},
      {"b.js", "RichAppendText(0, 'js')", {"--check"}, {}, 0, "", ""},
  };
  for (const RunnerCase& row : cases) {
    const TempFolder folder;
    ASSERT_FALSE(WriteWholeFile(folder / row.file, row.script));
    std::vector<std::string> arguments = row.before;
    arguments.push_back(folder / row.file);
    arguments.insert(arguments.end(), row.behind.begin(), row.behind.end());
    Program program("quarlin-script", arguments, folder.Path());
    EXPECT_EQ(program.Wait(), row.status) << row.file;
    EXPECT_EQ(program.Output(), row.output) << row.file;
    EXPECT_EQ(program.Errors(), row.errors) << row.file;
  }
}

TEST(ScriptRunner, ASignalEndsItInOrder) {
  const std::pair<const char*, std::chrono::milliseconds> rows[] = {
      {"FormMain.Sleep 60000", 0ms},
      {"Do : Loop", 0ms},
      {"t = Timer : Do : Loop While Timer < t + 1", 700ms},  // near its own end
  };
  for (const auto& [busy, before] : rows) {
    const TempFolder folder;
    ASSERT_FALSE(WriteWholeFile(
        folder / "a.vbs",
        std::string("Set f = CreateObject(\"Scripting.FileSystemObject\").CreateTextFile(\"") +
            (folder / "log.txt").string() + "\")\nf.WriteLine \"all of it\"\nWScript.Echo 1\n" + busy));
    Program program("quarlin-script", {folder / "a.vbs", "--receive", "text"}, folder.Path());
    ASSERT_EQ(program.FirstOutputLine(), "1");
    std::this_thread::sleep_for(before);
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(), 1) << busy;
    EXPECT_EQ(program.Output(), "1\n") << busy;
    EXPECT_EQ(program.Errors(), "quarlin-script: ended by a signal\n") << busy;
    EXPECT_EQ(ReadWholeFile(folder / "log.txt"), "all of it\r\n") << busy;
  }
}

TEST(ScriptRunner, WrongUseIsStatusTwo) {
  const TempFolder folder;
  const std::string file = folder / "a.vbs";
  ASSERT_FALSE(WriteWholeFile(file, "x = = 1"));
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{},
                                             {file + "x"},
                                             {folder.Path()},
                                             {file, "--input"},
                                             {file, "--what"},
                                             {"--check", file, "Task"},
                                             {"--inventory", file},
                                             {"--inventory", folder.Path(), "Task"},
                                             {file, "--json"}}) {
    Program program("quarlin-script", arguments, folder.Path());
    EXPECT_EQ(program.Wait(), 2) << testing::PrintToString(arguments);
    EXPECT_EQ(program.Errors().substr(0, 16), "quarlin-script: ");
  }
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--check", file}, {file}}) {
    Program broken("quarlin-script", arguments, folder.Path());
    EXPECT_EQ(broken.Wait(), 1);
    EXPECT_NE(broken.Errors().find("\nerror 10"), std::string::npos) << broken.Errors();
  }
}

}  // namespace
}  // namespace quarlin
