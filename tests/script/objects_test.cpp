// SPDX-License-Identifier: GPL-3.0-or-later
// What scripts find in the objects of the program: the panel's controls, and the three carriers.

#include <gtest/gtest.h>

#include "script/command_object.h"
#include "script/script_text.h"
#include "script/serial_string.h"
#include "script/text_string.h"
#include "script/timer_task.h"
#include "script/vbscript_engine.h"
#include "support/listed_prompts.h"
#include "support/quiet_services.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

class ObjectsRig : public testing::Test {
 protected:
  ObjectsRig() {
    engine.AddObject(u"Out", vbs::ObjectRef(out.Get()));
    engine.AddObject(u"TimerTask", vbs::ObjectRef(task.Get()));
    engine.AddObject(u"AppendLog", vbs::ObjectRef(new TextString([this](std::string_view text, Color color) {
                       log += std::string(text) + "/" + std::to_string(color) + " ";
                     })));
    engine.AddObject(u"FrmCommand", MakeCommandObject(panel, waits));
  }

  // Runs the statements and returns the expression's value as the program takes it; "error N" for an error.
  std::string Value(const std::string& statements, const std::string& expression) {
    try {
      engine.AddCode(Utf16FromBytes(statements + "\r\nOut.OutputString = " + expression));
      return out->OutputString();
    } catch (const vbs::ScriptError& error) {
      return "error " + std::to_string(error.number);
    }
  }

  VirtualLoop loop;
  vbs::QuietServices services;
  FrmCommand panel{loop};
  ListedPrompts noBoxes;
  TimedPrompts prompts{loop, noBoxes};
  ScriptRunner runner{loop, prompts, {}, {}, {}};
  ScriptWaits waits{loop, runner};
  vbs::Ref<SerialString> out{new SerialString};
  vbs::Ref<TimerTask> task{new TimerTask};
  std::string log;
  VbscriptEngine engine{services};
};

struct Case {
  const char* statements;
  const char* expression;
  const char* expected;
};

TEST_F(ObjectsRig, ControlsHaveTheMembersOfTheirKind) {
  const std::vector<Case> cases{
      // default members, with and without the form's name, without regard to case
      {"TextIO(0) = 5", "TextIO(0).Text", "5"},
      {"FrmCommand.textio(1).text = \"a\" & TextIO(0)", "FRMCOMMAND.TextIO(1)", "a5"},
      {"txtInput = \"x\"", "FrmCommand.txtInput", "x"},
      {"ChkInput(3) = True", "ChkInput(3)", "1"},
      {"ChkInput(3).Value = 2", "ChkInput(3).Value", "2"},
      {"ChkInput(3) = 0", "ChkInput(3).Value & ChkInput(3).Caption", "03"},
      {"FrameInput = \"Keys\"", "FrameInput.Caption", "Keys"},
      {"", "VScrollIO(2).Min & VScrollIO(2) & VScrollIO(2).Max", "012"},
      {"ShpOutput(0) = 1", "0", "error 438"},
      // every control
      {"", "TextIO(7).Name & TextIO(7).Index & TypeName(TextIO(7))", "TextIO7TextBox"},
      {"", "txtInput.Index", "error 438"},
      {"TextIO(0).Enabled = False", "TextIO(0).Enabled & TextIO(1).Enabled", "FalseTrue"},
      {"comboIO(0).Visible = 0", "comboIO(0).Visible", "False"},
      {"TextIO(0).BackColor = vbRed", "TextIO(0).BackColor", "255"},
      {"TextIO(0).BackColor = -2147483643", "TextIO(0).BackColor", "-2147483643"},
      {"TextIO(0).ForeColor = &HFF00&: TextIO(0).ToolTipText = \"tip\"",
       "TextIO(0).ForeColor & TextIO(0).ToolTipText", "65280tip"},
      {"TextIO(0).Width = 1500.5", "TextIO(0).Width & TextIO(0).Left", "1500.50"},
      {"TextIO(0).SetFocus", "TextIO(0).NoSuchThing", "error 438"},
      {"TextIO(0).Name = 1", "0", "error 438"},
      // a lamp has one colour
      {"ShpOutput(23).FillColor = vbGreen", "ShpOutput(23).BackColor", "65280"},
      {"ShpOutput(23).BackColor = 255", "ShpOutput(23).FillColor", "255"},
      // arrays
      {"", "TextIO.Count & \" \" & comboIO.Count & \" \" & ShpOutput.UBound & \" \" & ChkInput.LBound",
       "8 20 23 0"},
      {"n = 0: For Each box In TextIO: n = n * 10 + box.Index: Next", "n", "1234567"},
      {"Set a = TextIO(3): Set b = FrmCommand.TextIO(3)", "(a Is b) & (a Is TextIO(4))", "TrueFalse"},
      {"Set all = TextIO: all(2) = \"via\"", "TextIO(2).Text & all.Item(2)", "viavia"},
      {"TextIO(8) = 1", "0", "error 9"},
      {"", "TextIO(\"1\").Index", "1"},
      // what changes the looks, or keeps what was written
      {"TextIO(0).Tag = \"a tag\": TextIO(0).ZOrder 0: TextIO(0).Refresh", "TextIO(0).Tag & TextIO(1).Tag",
       "a tag"},
      {"TextIO(1).Move 15, 30, 45: TextIO(1).Move 60", "TextIO(1).Left & TextIO(1).Top & TextIO(1).Width",
       "603045"},
      {"TextIO(0).Move", "0", "error 450"},
      {"", "ChkInput(0).FontBold & ChkInput(0).Font.Italic & ChkInput(0).FontSize", "FalseFalse9"},
      {"Set f = ChkInput(0).Font: f.Bold = True: f.Size = 12: ChkInput(0).Font = \"Serif\"",
       "ChkInput(0).FontBold & ChkInput(0).FontSize & f & TypeName(f)", "True12SerifFont"},
      {"ChkInput(0).FontSize = 0", "0", "error 5"},
      {"ShpOutput(0).FontBold = 1", "0", "error 438"},
      {"ShpOutput(0).FillStyle = 1: ShpOutput(0).BorderColor = 255: ShpOutput(0).BorderStyle = 0",
       "ShpOutput(0).FillStyle & ShpOutput(0).BorderColor & ShpOutput(0).BorderStyle & "
       "ShpOutput(1).FillStyle",
       "125500"},
      {"ShpOutput(0).FillStyle = 8", "0", "error 5"},
      // the mark in a text
      {"txtInput = \"one two\": txtInput.SelStart = 4: txtInput.SelLength = 99",
       "txtInput.SelText & txtInput.SelLength", "two3"},
      {"txtInput.SelText = \"2\"", "txtInput & txtInput.SelStart & txtInput.SelLength", "one 250"},
      {"txtInput.SelText = \"!\"", "txtInput", "one 2!"},
      {"txtInput = \"anew\"", "txtInput.SelStart", "0"},
      {"txtInput.SelStart = -1", "0", "error 5"},
      {"txtInput.Locked = True: txtInput.MaxLength = 2: txtInput = \"longer\"",
       "txtInput & txtInput.Locked & txtInput.MaxLength", "longerTrue2"},
      // lists
      {"With comboIO(0): .AddItem \"a\": .AddItem \"c\": .AddItem \"b\", 1: End With",
       "comboIO(0).ListCount & comboIO(0).List(0) & comboIO(0).List(1) & comboIO(0).List(2)", "3abc"},
      {"comboIO(0).ListIndex = 1", "comboIO(0) & comboIO(0).ListIndex", "b1"},
      {"comboIO(0).List(2) = \"z\": comboIO(0).RemoveItem 0", "comboIO(0).List(1) & comboIO(0).ListIndex",
       "z0"},
      {"comboIO(0).ListIndex = -1", "\"<\" & comboIO(0) & \">\" & comboIO(0).List(9)", "<>"},
      {"comboIO(0).RemoveItem 2", "0", "error 5"},
      {"comboIO(0).ListIndex = 2", "0", "error 5"},
      {"comboIO(0).ItemData(1) = 7: comboIO(0).AddItem \"y\", 0",
       "comboIO(0).NewIndex & comboIO(0).ItemData(0) & comboIO(0).ItemData(2)", "007"},
      {"comboIO(0).RemoveItem 0", "comboIO(0).NewIndex & comboIO(0).ItemData(1)", "-17"},
      {"", "comboIO(0).ItemData(2)", "error 5"},
      {"comboIO(0) = \"z\": comboIO(0).Clear", "comboIO(0).ListCount & comboIO(0).Text", "0"},
      // the window
      {"FrmCommand.Show: FrmCommand.Caption = \"Bench\"", "FrmCommand.Visible & FrmCommand.Caption",
       "TrueBench"},
      {"FrmCommand.Hide", "FrmCommand.Visible", "False"},
      {"FrmCommand.WindowState = 2", "FrmCommand.WindowState", "2"},
      {"FrmCommand.WindowState = 3", "0", "error 5"},
      {"FrmCommand.Show 1", "0", "error 5"},  // no call of the program's: nothing that may wait
      {"FrmCommand.Show 0", "FrmCommand.Visible", "True"},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(Value(row.statements, row.expression), row.expected)
        << row.statements << " | " << row.expression;
  }
}

TEST_F(ObjectsRig, TheSpinButtonsCountUpAndDown) {
  const std::vector<Case> cases{
      {"TextIO(0) = 0: VScrollIO(0) = 2", "TextIO(0)", "-1"},
      {"VScrollIO(0) = 0: VScrollIO(0) = 0", "TextIO(0) & VScrollIO(0)", "11"},
      {"TextIO(1) = \"none\": VScrollIO(1) = 0", "TextIO(1)", "1"},
      {"TextIO(1) = 2147483647: VScrollIO(1) = 0", "TextIO(1)", "2147483647"},
      {"TextIO(1) = -2147483648: VScrollIO(1) = 2", "TextIO(1)", "-2147483648"},
  };
  for (const Case& row : cases)
    EXPECT_EQ(Value(row.statements, row.expression), row.expected) << row.statements;
}

TEST_F(ObjectsRig, CarriersKeepTheirTextsAndBytesPassUnchanged) {
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  out->SetInputString(all);
  EXPECT_EQ(Value("", "Out.InputString"), all);
  EXPECT_EQ(Value("", "Asc(Mid(Out.InputString, 251, 1)) & Len(Out.InputString)"), "250256");
  out->SetInputString("\xB5");
  EXPECT_EQ(Value("", "AscW(Out.InputString)"), "181");
  EXPECT_EQ(Value("", "\"a\" & ChrW(&H20AC) & ChrW(&HD83D) & ChrW(&HDE00) & ChrW(255)"), "a??\xFF");
  EXPECT_EQ(Value("Out.InputString = 12.5", "Out.InputString"), "12.5");
}

TEST_F(ObjectsRig, ATasksTextIsReadOnceAndItsTwoNamesAreOneText) {
  EXPECT_EQ(Value("TimerTask.SendString = \"READ\"", "TimerTask.StringSend & \"|\" & TimerTask.StringSend"),
            "READ|");
  EXPECT_EQ(Value("", "TimerTask.SendString"), "error 438");
  EXPECT_EQ(Value("TimerTask.StringSend = 1", "0"), "error 438");
  EXPECT_EQ(Value("SendString = \"ZERO\": Interval = \"250\"", "Interval"), "250");
  EXPECT_EQ(task->StringSend(), "ZERO");
  EXPECT_EQ(task->StringSend(), "");
}

TEST_F(ObjectsRig, TextGoesToTheLogInItsColour) {
  EXPECT_EQ(Value("AppendLog.RichAppendText 255, \"x\": RichAppendText vbBlue, 12", "0"), "0");
  EXPECT_EQ(log, "x/255 12/16711680 ");
  EXPECT_EQ(Value("AppendLog.RichAppendText 255", "0"), "error 450");
}

}  // namespace
}  // namespace quarlin
