// SPDX-License-Identifier: GPL-3.0-or-later
// Quick sends and the history of the command box: their files, what fires them, what they wait for.

#include "transmit/quick_sends.h"

#include "support/sender_rig.h"
#include "transmit/command_history.h"
#include "transmit/offered_list.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class QuickRoom : public SenderRig {
 protected:
  QuickRoom() {
    exchange.Hooks.takeArrivals = [] {};
  }
  void File(std::string_view content) { WriteInPlace(folder / "Quick.txt", content); }
  std::string FileText() { return ReadWholeFile(folder / "Quick.txt").value_or("(none)"); }
  std::string Note() { return statusControls.lblStatusNote.Caption(); }
  void Answer() {
    exchange.BeginString("OK\r\n", loop.Now());
    exchange.Accept("OK\r\n");
    exchange.EndString();
  }

  bool heldUp = false;
  QuickSends quick{{loop, link, exchange, sender, counters, traffic, status},
                   ProgramFolder(folder.Path()),
                   [this] { return heldUp; }};
};

struct LineRow {
  const char* line;
  QuickSend row;
};

TEST_F(QuickRoom, ALineOfTheFileIsARowWhateverItLacks) {
  for (const LineRow& row : std::vector<LineRow>{
           {"Tare\tT{1B}\t1\t250\tCtrl+F2\t5000", {"Tare", "T{1B}", true, 250, "Ctrl+F2", 5000}},
           {"READ", {"READ", "READ"}},
           {"Read\tR\tx\t-5\t \t1e99", {"Read", "R"}},
           {"a\tb\t1\t2\tc\t3\tmore", {"a", "b", true, 2, "c", 3}}}) {
    EXPECT_EQ(QuickSendFromLine(row.line), row.row) << row.line;
    EXPECT_EQ(QuickSendFromLine(LineOf(row.row)), row.row) << row.line;
  }
  EXPECT_FALSE(QuickSendFromLine("  "));
  EXPECT_EQ(LineOf({"a\tb", "c\n", false, 0, "", 0}), "a{09}b\tc{0A}\t0\t0\t\t0");
}

TEST_F(QuickRoom, WhatAnotherProgramHasWrittenStays) {
  File("A\tA\nB\tB\n");
  quick.TakeUp();
  File("\u03A9\tN\n\u20AC\tN\nA\tA\nB\tB\n");  // names that no row can hold
  quick.Set(1, {"B", "changed"});              // still told by what it held
  EXPECT_EQ(FileText(), "\u03A9\tN\n\u20AC\tN\nA\tA\nB\tchanged\t0\t1000\t\t0\n");
  quick.Remove(0);
  quick.Move(2, 0);
  quick.Remove(1);
  ASSERT_EQ(quick.Rows().size(), 2U);
  EXPECT_EQ(quick.Rows()[0].name + quick.Rows()[1].name, "BA");
  File("X\tX\n");
  quick.Remove(0);  // that one is gone already
  EXPECT_EQ(FileText(), "X\tX\n");
  quick.TakeUp();
  EXPECT_EQ(quick.Rows().size(), 1U);
}

TEST_F(QuickRoom, AFileThatCannotBeUnderstoodIsLeftAlone) {
  std::string many;
  for (std::size_t i = 0; i <= QuickList::mostRows; ++i) many += "A\tB\n";
  for (const std::string& content : {many, std::string(QuickList::largestFile + 1, 'x')}) {
    File(content);
    quick.Add({"C", "C"});
    EXPECT_EQ(FileText(), content);
    EXPECT_NE(Note().find("left alone"), std::string::npos) << Note();
  }
}

TEST_F(QuickRoom, TheFirstNineHaveAKeyUnlessAnotherRowTookIt) {
  File("A\tA\nB\tB\t0\t0\tCtrl+1\nC\tC\n");
  quick.TakeUp();
  EXPECT_EQ(quick.KeyOf(0), "");
  EXPECT_EQ(quick.KeyOf(1), "Ctrl+1");
  EXPECT_EQ(quick.KeyOf(2), "Ctrl+3");
}

TEST_F(QuickRoom, ARowThatWaitsTellsHowItsAnswerCame) {
  File("Read\tR{41}\t1\t100\nZero\tZ\n");
  quick.TakeUp();
  quick.Fire(1);  // without an answer; what comes belongs to the other
  quick.Fire(0);
  EXPECT_EQ(port.Written(), "Z\r\nRA\r\n");
  EXPECT_EQ(quick.ResultOf(0), "...");
  quick.Fire(0);
  EXPECT_EQ(Note(), "still waiting for the answer to \"Read\"");
  loop.Pass(12500us);
  Answer();
  loop.Settle();
  EXPECT_EQ(quick.ResultOf(0), "12.5 ms");
  quick.Fire(0);
  loop.Pass(100ms);
  EXPECT_EQ(quick.ResultOf(0), "no answer");
  EXPECT_EQ(counters.lblerror.Caption(), "1");
  EXPECT_EQ(record.Sums().Of(Verdict::TimeOut), 1U);
  quick.Fire(0);
  quick.Set(0, {"Read", "other", true, 100});
  EXPECT_EQ(quick.ResultOf(0), "") << "the answer would be that of another command";
  link.CommClose();
  quick.Fire(0);
  EXPECT_EQ(Note(), "not connected; \"Read\" was not sent");
}

TEST_F(QuickRoom, RowsRepeatOnTheirOwnGridsWhileNothingElseHasTheLine) {
  File("A\tA\t0\t0\t\t100\nB\tB\t0\t0\t\t250\n");
  quick.TakeUp();
  quick.SetRepeating(0, true);
  quick.SetRepeating(1, true);
  loop.Pass(500ms);
  EXPECT_EQ(port.Written(), "A\r\nB\r\nA\r\nA\r\nB\r\nA\r\nA\r\nA\r\nB\r\n");
  exchange.BeginRun();
  port.ForgetWritten();
  loop.Pass(10s);
  EXPECT_EQ(port.Written(), "");
  EXPECT_LE(loop.Turns(), 20) << "it rests";
  exchange.EndRun(false);
  quick.SetRepeating(0, false);
  quick.MayGoOn();
  loop.Pass(10ms);
  EXPECT_EQ(port.Written(), "B\r\n") << "what was missed is not made up for";
  quick.Move(1, 0);
  EXPECT_TRUE(quick.Repeating(0)) << "a row takes its state along";
}

class History : public testing::Test {
 protected:
  std::string FileText() { return ReadWholeFile(folder / "History.txt").value_or("(none)"); }

  TempFolder folder;
  VirtualLoop loop;
  CommandHistory history{loop, ProgramFolder(folder.Path()), [](std::string_view) {}};
};

TEST_F(History, KeepsTheLastHundredOnceEachAndWhatAnotherInstanceAdds) {
  WriteInPlace(folder / "History.txt", "OLD\n");
  history.Load();
  for (const char* command : {"A", "B", "A", "", "two\nlines"}) history.Add(command);
  EXPECT_EQ(history.Entries(), (Lines{"A", "B", "OLD"}));
  WriteInPlace(folder / "History.txt", "OTHER\nOLD\n");
  loop.Pass(CommandHistory::savePause);
  EXPECT_EQ(FileText(), "A\nB\nOLD\nOTHER\n");
  for (int i = 0; i < 200; ++i) history.Add(std::to_string(i));
  EXPECT_EQ(history.Entries().size(), 100U);
  history.Save();
  EXPECT_EQ(FileText().substr(0, 8), "199\n198\n");
}

TEST_F(History, AFileThatCannotBeReadIsLeftAlone) {
  const std::string large((std::size_t{16} << 20) + 1, 'x');
  WriteInPlace(folder / "History.txt", large);
  EXPECT_NE(history.Load(), "");
  history.Add("A");
  history.Save();
  EXPECT_TRUE(FileText() == large);
}

TEST_F(History, TheWalkKeepsWhatWasBeingTyped) {
  for (const char* command : {"A", "B", "C"}) history.Add(command);
  EXPECT_EQ(history.Older("ty"), "C");
  EXPECT_EQ(history.Older("C"), "B");
  EXPECT_EQ(history.Newer("B"), "C");
  EXPECT_EQ(history.Newer("C"), "ty");
  EXPECT_EQ(history.Newer("ty"), std::nullopt);
  EXPECT_EQ(history.Older("C"), "B") << "the first one stands there already";
  EXPECT_EQ(history.Older("B"), "A");
  EXPECT_EQ(history.Older("A"), std::nullopt);
  EXPECT_EQ(history.Older("A edited"), "C") << "a new walk";
}

TEST_F(History, StandsBehindTheFilesEntriesAndBesideThoseOfScripts) {
  struct BoxControls : ControlGroup {
    using ControlGroup::ControlGroup;
    ComboBox box{*this, "box"};
  } controls{loop};
  WriteInPlace(folder / "Command.txt", "READ\nTARE\n");
  OfferedList list(controls.box, ProgramFolder(folder.Path()), "Command.txt");
  list.Refill();
  list.SetEntriesBehind({"H1", "READ"});
  EXPECT_EQ(controls.box.List(), (Lines{"READ", "TARE", "H1"}));
  controls.box.AddItem("SCRIPT");
  controls.box.RemoveItem(1);
  list.SetEntriesBehind({"H2", "H1", "TARE"});
  EXPECT_EQ(controls.box.List(), (Lines{"READ", "SCRIPT", "H2", "H1"}));
  list.Refill();
  EXPECT_EQ(controls.box.List(), (Lines{"READ", "TARE", "SCRIPT", "H2", "H1"}));
}

}  // namespace
}  // namespace quarlin
