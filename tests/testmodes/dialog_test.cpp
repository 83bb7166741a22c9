// SPDX-License-Identifier: GPL-3.0-or-later
// The dialog test over a scripted port: which answer a request finds, how it is sent, logged and shown,
// and what the table of faults makes of it.

#include "testmodes/dialog.h"

#include <gtest/gtest.h>

#include "support/sender_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;

class DialogRig : public SenderRig {
 protected:
  void Table(std::string_view content) { WriteInPlace(folder / "Dialog.txt", content); }

  // What goes out at once.
  std::string Ask(std::string_view request) {
    port.ForgetWritten();
    dialog.DialogAnswer(request);
    return port.Written();
  }
  std::string AskEach(const std::vector<std::string>& requests) {
    std::string answers;
    for (const std::string& request : requests) answers += Ask(request);
    return answers;
  }
  std::string SentWithin(Duration duration) {
    port.ForgetWritten();
    loop.Pass(duration);
    return port.Written();
  }

  Dialog dialog{{loop, link, expander, sender, traffic, status}, ProgramFolder(folder.Path())};
};

TEST(DialogKey, CodesWhatCannotBeTyped) {
  EXPECT_EQ(EncodeDialogKey("W\r", false), "W{0D}");
  EXPECT_EQ(EncodeDialogKey("P\r\n", true), "{50}{0D}{0A}");
  EXPECT_EQ(EncodeDialogKey("\0\x1F \x7F\xFF"s, false), "{00}{1F} \x7F\xFF");
  EXPECT_EQ(EncodeDialogKey("{\xFF", true), "{7B}{FF}");
}

TEST_F(DialogRig, FindsTheAnswerByAnyFormOfItsKey) {
  struct Case {
    std::string table, request, answer;
  };
  const std::vector<Case> cases{
      {"READ=12.5 kg", "READ", "12.5 kg\r\n"},
      {"read=12.5 kg", "Read", "12.5 kg\r\n"},
      {"{02}R=OK", "\x02R", "OK\r\n"},
      {"{02}{52}=OK", "\x02R", "OK\r\n"},
      {"\x02R=OK", "\x02R", "OK\r\n"},
      {"\x02R=third\n{02}{52}=second\n{02}R=first", "\x02R", "first\r\n"},
      {"\x02R=third\n{02}{52}=second\n{02}R=", "\x02R", "second\r\n"},
      {"\x02R=third\n{02}{52}=' '", "\x02R", "third\r\n"},
      {"{41}{3D}=equals", "A=", "equals\r\n"},
      {"READ=' padded '", "READ", "padded\r\n"},
      {"READ=   ", "READ", ""},
      {"READ=1", "WRITE", ""},
      {"READ={}", "READ", "\0\r\n"s},
      {"READ={100}", "READ", ""},  // expands to nothing
      {"READ=AB[CHECKSUMSYS]{03}", "READ", "AB03\x03\r\n"},
      {"READ=1", "", ""},
  };
  for (const auto& [table, request, answer] : cases) {
    Table("[COMMAND]\n" + table);
    EXPECT_EQ(Ask(request), answer) << table;
  }
  Table("READ=1");
  EXPECT_EQ(Ask("READ"), "");
  Table("[COMMAND]\nA=" + std::string(3000, 'x'));
  EXPECT_EQ(Ask("A").size(), 2047U + 2);
}

TEST_F(DialogRig, NoTableNoAnswerAndNoTrace) {
  EXPECT_EQ(Ask("READ"), "");
  Table("[COMMAND]\nREAD=");
  EXPECT_EQ(Ask("READ"), "");
  EXPECT_EQ(Log(), "");
  EXPECT_TRUE(shown.empty());
  EXPECT_TRUE(Notes().empty());
  EXPECT_EQ(lampFlashes, 0);
}

TEST_F(DialogRig, LogsAndShowsWhatWasSent) {
  Table("[COMMAND]\nREAD=AB[CHECKSUMSYS]");
  Ask("READ");
  EXPECT_EQ(Log(), "AB03\r\n");
  run.chkhhmmss.SetChecked(true);
  framing.ChkCrLfAppTx.SetChecked(true);
  Terminator(0);
  EXPECT_EQ(Ask("READ"), "AB03\r");
  EXPECT_EQ(Log(), "AB03\r\n-->21/11/26 10:00:00\r\nAB03\r");
  EXPECT_EQ(shown, (std::vector<std::string>{"AB03\r\n", "AB03\r", "\r\n"})) << "the stamp is not shown";
  EXPECT_EQ(colorsShown, std::vector<Color>(3, colors::blue));
  EXPECT_EQ(lampFlashes, 2);
}

TEST_F(DialogRig, AChangedTableCountsAtOnce) {
  for (char value = '0'; value <= '9'; ++value) {
    Table("[COMMAND]\nREAD="s + value);
    EXPECT_EQ(Ask("READ"), value + "\r\n"s);
  }
}

TEST_F(DialogRig, VariantsTakeTurns) {
  const std::string table = "[COMMAND]\nA=1\nB=b\n[command2]\nA=2\n[COMMAND3]\n{41}=3\nC=c\n[COMMAND5]\nA=5";
  Table(table);
  EXPECT_EQ(AskEach({"A", "B", "A", "C", "A", "A", "b"}), "1\r\nb\r\n2\r\nc\r\n3\r\n1\r\nb\r\n");
  Table(table);  // written again as it was
  EXPECT_EQ(Ask("A"), "2\r\n");
  Table(table + "\n");
  EXPECT_EQ(Ask("A"), "1\r\n");
}

TEST_F(DialogRig, FaultsAreAnnouncedAndCounted) {
  Table("[COMMAND]\nA=abc\nB=xyz\nC=c\n[FAULTS]\na=drop every 2\n*=double 1\nC=");
  EXPECT_EQ(Ask("A"), "abc\r\n");
  EXPECT_EQ(Ask("A"), "");
  EXPECT_EQ(Ask("B"), "xyz\r\nxyz\r\n");
  EXPECT_EQ(Ask("C"), "c\r\n") << "an entry of its own shields a request from the one for all";
  EXPECT_EQ(shown,
            (std::vector<std::string>{"abc\r\n", "-- answer dropped (fault)\r\n",
                                      "-- answer doubled (fault)\r\n", "xyz\r\n", "xyz\r\n", "c\r\n"}));
  EXPECT_EQ(colorsShown[1], colors::darkRed);
  EXPECT_EQ(Log(), "abc\r\nxyz\r\nxyz\r\nc\r\n");
  EXPECT_EQ(dialog.Faults.Of(Fault::Drop), 1U);
  EXPECT_EQ(dialog.Faults.Of(Fault::Double), 1U);
}

TEST_F(DialogRig, FaultsOfACodedRequestAndTheTerminatorStays) {
  Table("[COMMAND]\n{02}R=ABCDEF\n[FAULTS]\n{02}R=truncate 1\n");
  const std::string answer = Ask("\x02R");
  EXPECT_LT(answer.size(), 8U);
  EXPECT_TRUE(answer.starts_with("ABC"));
  EXPECT_TRUE(answer.ends_with("\r\n"));
}

TEST_F(DialogRig, UnreadableFaultsAreToldOnceAndIgnored) {
  std::vector<std::string> told;
  dialog.OnTrouble = [&](std::string_view text) { told.emplace_back(text); };
  Table("[COMMAND]\nA=1\n[FAULTS]\nA=drop often\nB=drop 1\n*=drop\n");
  EXPECT_EQ(AskEach({"A", "A"}), "1\r\n1\r\n");
  EXPECT_EQ(told, std::vector<std::string>{"Dialog.txt: faults that cannot be read: \"A\", \"*\""});
}

TEST_F(DialogRig, DelayedAnswersGoOutInTheOrderOfTheirTimes) {
  Table("[COMMAND]\nA=a\nB=b\nC=c\n[FAULTS]\nA=delay 200\nB=delay 100\n");
  EXPECT_EQ(AskEach({"A", "B", "A", "C"}), "c\r\n");
  run.chkhhmmss.SetChecked(true);
  EXPECT_EQ(SentWithin(99ms), "");
  EXPECT_EQ(SentWithin(1ms), "b\r\n");
  framing.Combo2.SetText("120");
  Terminator(2);
  EXPECT_EQ(SentWithin(2s), "a\r\na\r\n");
  EXPECT_EQ(dialog.Faults.delayed, 3U);
  EXPECT_EQ(shown, (std::vector<std::string>{"c\r\n", "b\r\n", "a\r\n", "a\r\n"}));
}

TEST_F(DialogRig, AClosedLinkThrowsDelayedAnswersAway) {
  Table("[COMMAND]\nA=a\n[FAULTS]\nA=delay 200\n");
  Ask("A");
  link.CommClose();
  link.CommOpen("COM1", "9600,n,8,1");
  EXPECT_EQ(SentWithin(1s), "") << "asked on another connection";
  Ask("A");
  dialog.LinkClosed();
  EXPECT_EQ(SentWithin(1s), "");
  EXPECT_EQ(dialog.Faults.discarded, 2U);
  EXPECT_EQ(Log(), "");
}

TEST_F(DialogRig, TheLinkMayBeClosedWhileADelayedAnswerIsSent) {
  Table("[COMMAND]\nA=a\n[FAULTS]\nA=delay 200, double 1\n");
  Ask("A");
  Ask("A");
  port.BlockWrites();
  loop.Outside(250ms, [&] {
    link.CommClose();
    dialog.LinkClosed();
  });
  EXPECT_EQ(SentWithin(5s), "");
  EXPECT_EQ(dialog.Faults.discarded, 1U);
  EXPECT_EQ(shown.size(), 1U) << "that it is doubled on purpose; nothing of it left";
}

TEST_F(DialogRig, WaitingAnswersAreBounded) {
  Table("[COMMAND]\nA=a\n[FAULTS]\nA=delay 200\n");
  for (int i = 0; i < 1200; ++i) Ask("A");
  EXPECT_EQ(dialog.Faults.discarded, 200U);
  EXPECT_EQ(Notes().size(), 1U);
  EXPECT_EQ(SentWithin(1s).size(), 3000U);
}

TEST_F(DialogRig, TheFirstTableAnswers) {
  Table(CommentedFirstDialog());
  EXPECT_EQ(Ask("READ"), "12.5 kg\r\n");
  EXPECT_EQ(Ask("sn"), "SN 004711\r\n");
  EXPECT_EQ(Ask("\x02READ\x03"),
            "\x02"
            "12.5 kg36\x03\r\n");
  std::string active = CommentedFirstDialog();
  for (std::size_t at; (at = active.find("\n;[")) != std::string::npos;) active.erase(at + 1, 1);
  for (const char* line : {"\n;READ", "\n;*"}) {
    for (std::size_t at; (at = active.find(line)) != std::string::npos;) active.erase(at + 1, 1);
  }
  Table(active);
  Ask("READ");
  EXPECT_EQ(SentWithin(1s).size(), 9U);
  Ask("READ");
  EXPECT_NE(SentWithin(1s).find("12.6"), std::string::npos);
  EXPECT_EQ(Notes().size(), 0U) << "its examples are understood";
}

}  // namespace
}  // namespace quarlin
