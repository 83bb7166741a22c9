// SPDX-License-Identifier: GPL-3.0-or-later
// What the user sends by hand beside the command box: typed keys, pastes, files, over a scripted port.

#include "transmit/by_hand.h"

#include "support/listed_prompts.h"
#include "support/sender_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class HandRoom : public SenderRig {
 protected:
  HandRoom() {
    exchange.Hooks.takeArrivals = [] {};
    linkControls.chkTerminal.SetChecked(true);
  }

  std::string Note() { return statusControls.lblStatusNote.Caption(); }
  std::filesystem::path File(std::string_view content) {
    WriteInPlace(folder / "commands.txt", content);
    return folder / "commands.txt";
  }
  void Send(std::string_view content) {
    hand.files.Choose(File(content));
    file.cmdFile.Click();
  }
  void Answer() {
    exchange.BeginString("OK\r\n", loop.Now());
    exchange.Accept("OK\r\n");
    exchange.EndString();
  }

  FileControls file{loop};
  ListedPrompts prompts;
  ByHand hand{{loop, file, run, counters, link, exchange, sender, traffic, status},
              linkControls,
              prompts,
              ProgramFolder(folder.Path()),
              [](std::string_view) {}};
};

TEST_F(HandRoom, KeysGoOutAsTheyAreTypedAndCountNowhere) {
  displayControls.chkEcho.SetChecked(false);
  EXPECT_TRUE(hand.typing.Type("a"));
  EXPECT_TRUE(hand.typing.Type("\x03\t\r"));
  Terminator(0);
  EXPECT_TRUE(hand.typing.Type("\r"));
  EXPECT_EQ(port.Written(), "a\x03\t\r\n\r");
  EXPECT_EQ(Log(), "a\x03\t\r\n\r");
  EXPECT_TRUE(shown.empty());
  displayControls.chkEcho.SetChecked(true);
  hand.typing.Type("b");
  EXPECT_EQ(shown, std::vector<std::string>{"b"});
  EXPECT_EQ(counters.lblsend.Caption(), "0");
  EXPECT_EQ(record.Sums().requests, 0U);
}

TEST_F(HandRoom, KeysThatAreNotForTheLineAreHandedBack) {
  linkControls.chkTerminal.SetChecked(false);
  EXPECT_FALSE(hand.typing.Type("a"));
  EXPECT_EQ(Note(), "");
  linkControls.chkTerminal.SetChecked(true);
  link.CommClose();
  EXPECT_FALSE(hand.typing.Type("a"));
  EXPECT_FALSE(hand.typing.Paste("a"));
  EXPECT_NE(Note().find("not connected"), std::string::npos);
  EXPECT_EQ(port.Written(), "");
}

struct PasteRow {
  std::string text;
  int answer;
  std::string asked;  // a part of the question, or nothing
  std::string wire;
};

TEST_F(HandRoom, APasteIsAskedForWhereItIsLongOrHasLineEnds) {
  const std::string longText(200'000, 'x');
  for (const PasteRow& row : std::vector<PasteRow>{{"READ", 0, "", "READ"},
                                                   {"A\nB\r\n\rC", 1, "4 lines, 7 bytes", "A\r\nB\r\n\r\nC"},
                                                   {"A\n", 0, "1 line, 2 bytes", ""},
                                                   {longText, 1, "1 line, 200000 bytes", longText}}) {
    SCOPED_TRACE(row.text);
    port.ForgetWritten();
    prompts.shown.clear();
    prompts.answers = {row.answer};
    EXPECT_TRUE(hand.typing.Paste(row.text));
    loop.Pass(1s);
    EXPECT_EQ(port.Written(), row.wire);
    EXPECT_EQ(prompts.shown.empty(), row.asked.empty());
    const std::string question = prompts.shown.empty() ? "" : prompts.shown.front();
    EXPECT_NE(question.find(row.asked), std::string::npos) << question;
  }
}

TEST_F(HandRoom, ThePauseStandsBetweenTheLinesOfAPaste) {
  file.txtLinePause.SetText("300");
  hand.typing.Paste("A\nB\n");
  loop.Pass(299ms);
  EXPECT_EQ(port.Written(), "A\r\n");
  loop.Pass(1s);
  EXPECT_EQ(port.Written(), "A\r\nB\r\n");
}

// In both ways: as a stream, and where each piece is a string of its own.
TEST_F(HandRoom, AFileGoesOutAsItIsWhateverTheDriverTakes) {
  std::string content;
  for (int i = 0; i < 200'000; ++i) content += static_cast<char>(i * 7 + i / 256);
  for (const bool stream : {true, false}) {
    linkControls.chkTerminal.SetChecked(false);
    linkControls.ChkRtsTx.SetChecked(!stream);
    port.ForgetWritten();
    port.TakeAtMost(4093);
    port.BlockWrites(100'000);
    loop.Outside(2s, [&] { port.UnblockWrites(); });
    Send(content);
    loop.Pass(1s);
    if (stream) {
      EXPECT_EQ(file.lblFileSent.Caption().substr(0, 28), "100000 of 200000 bytes sent,");
    }
    loop.Pass(10s);
    EXPECT_TRUE(port.Written() == content) << stream;
    EXPECT_EQ(Note(), "commands.txt: 200000 of 200000 bytes sent in 2.0 s") << stream;
    EXPECT_EQ(file.lblFileSent.Caption(), Note());
    EXPECT_FALSE(hand.files.Active());
  }
}

struct TroubleRow {
  const char* what;
  std::function<void()> happens;
  const char* note;
};

TEST_F(HandRoom, WhatGoesWrongIsSaidWithHowFarItCame) {
  linkControls.chkTerminal.SetChecked(false);
  const std::string content(100'000, 'x');
  const std::vector<TroubleRow> rows{
      {"shorter", [&] { File("y"); }, "it has become shorter meanwhile"},
      {"longer", [&] { File(content + "abc"); }, "; 3 bytes that were added meanwhile were not sent"},
      {"gone", [&] { std::filesystem::remove(folder / "commands.txt"); },
       "100000 of 100000 bytes sent in 1.0 s"},
      {"cancel", [&] { file.cmdFileEnd.Click(); }, "commands.txt: cancelled, 3000 of 100000 bytes sent"},
      {"link", [&] { port.Unplug(); }, "commands.txt: 3000 of 100000 bytes sent: No such device"},
  };
  for (const TroubleRow& row : rows) {
    SCOPED_TRACE(row.what);
    status.Clear();
    port.BlockWrites(3000);
    Send(content);
    loop.Pass(1s);
    row.happens();
    port.UnblockWrites();
    loop.Pass(1s);
    EXPECT_NE(Note().find(row.note), std::string::npos) << Note();
    EXPECT_FALSE(hand.files.Active());
  }
  for (const auto& [path, why] :
       std::vector<std::pair<std::filesystem::path, std::string>>{{folder / "none", "No such file"},
                                                                  {folder.Path(), "directory"},
                                                                  {"/dev/zero", "no regular file"}}) {
    hand.files.Choose(path);
    EXPECT_NE(Note().find(why), std::string::npos) << Note();
  }
}

TEST_F(HandRoom, AWriteThatTheDriverBlocksIsCancelledAtOnce) {
  file.chkFileLines.SetChecked(true);
  port.BlockWrites(2);
  loop.Outside(500ms, [&] { file.cmdFileEnd.Click(); });
  Send("READ\nWRITE\n");
  loop.Pass(600ms);
  EXPECT_EQ(Note(), "commands.txt: cancelled, 0 of 11 bytes sent");
  EXPECT_EQ(port.Written(), "RE");
}

TEST_F(HandRoom, PausesBetweenCharactersLeaveRoomForACancel) {
  linkControls.txtcharrit.SetText("100");
  loop.Outside(1s, [&] { file.cmdFileEnd.Click(); });
  Send(std::string(100, 'x'));
  loop.Pass(2s);
  EXPECT_LE(port.Written().size(), 11U);
  EXPECT_FALSE(hand.files.Active());
}

TEST_F(HandRoom, AQuickSendWithoutAnAnswerTakesNoneAwayFromAFile) {
  file.chkFileLines.SetChecked(true);
  file.chkFileWait.SetChecked(true);
  run.txtAnswerTime.SetText("5000");
  hand.quick.Add({"Q", "Q", true, 1000});
  hand.quick.Fire(0);
  Send("A\n");
  loop.Pass(2s);
  EXPECT_EQ(hand.quick.ResultOf(0), "no answer");
  Answer();
  loop.Pass(1s);
  EXPECT_FALSE(hand.files.Active());
  EXPECT_EQ(record.Sums().good, 1U);
}

TEST_F(HandRoom, CommandsOfAFileAreExpandedAndWaitForTheirAnswers) {
  linkControls.chkTerminal.SetChecked(false);
  file.chkFileLines.SetChecked(true);
  file.chkFileWait.SetChecked(true);
  file.txtLinePause.SetText("10");
  run.txtAnswerTime.SetText("200");
  sender.Send("OLDER\r\n", SendKind::ByHand);  // nobody answered it
  port.ForgetWritten();
  loop.Outside(50ms, [this] { Answer(); });
  Send("A{41}\r\n\r\nB\nC");
  loop.Pass(49ms);
  EXPECT_EQ(port.Written(), "AA\r\n");
  loop.Pass(20ms);
  EXPECT_EQ(port.Written(), "AA\r\nB\r\n") << "its answer came, and the pause is over";
  file.cmdFile.Click();  // Pause
  loop.Pass(1s);
  EXPECT_EQ(port.Written(), "AA\r\nB\r\n");
  file.cmdFile.Click();
  loop.Pass(1s);
  EXPECT_EQ(port.Written(), "AA\r\nB\r\nC\r\n");
  EXPECT_NE(Note().find("12 of 12 bytes sent"), std::string::npos) << Note();
  EXPECT_NE(Note().find("no answer to 2 lines"), std::string::npos) << Note();
  EXPECT_EQ(record.Sums().good, 1U);
  EXPECT_EQ(record.Sums().Of(Verdict::TimeOut), 2U);
  EXPECT_EQ(counters.lblerror.Caption(), "2");
}

TEST_F(HandRoom, ACycleAndAFileKeepOutOfEachOthersWay) {
  exchange.BeginRun();
  Send("A");
  EXPECT_FALSE(hand.files.Active());
  EXPECT_EQ(Note(), "a cycle is running; stop it before you send a file");
}

}  // namespace
}  // namespace quarlin
