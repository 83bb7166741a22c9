// SPDX-License-Identifier: GPL-3.0-or-later
// What the table of errors tells of runs, of what was sent by hand and of a link that goes away, and the line
// that tells how a run ended.
#include "testmodes/error_rows.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

class ErrorRowsRig : public RequestRig {
 protected:
  // The rows without the time of day and the request: "No.|what|expected|got|ms", and headings.
  Lines Rows() {
    Lines lines;
    const ErrorRows& rows = frm.Errors();
    for (std::uint64_t i = rows.FirstRow(); i < rows.EndRow(); ++i) {
      const ErrorRow& row = rows.Row(i);
      std::string line = row.heading.substr(0, row.heading.find(','));
      for (int column = 1; column <= 5 && !row.IsHeading(); ++column) {
        line += (column == 1 ? "" : "|") + ErrorCell(row, static_cast<ErrorColumn>(column));
      }
      lines.push_back(line);
    }
    return lines;
  }

  // The line of the display that a row leads to.
  std::string LineOf(std::uint64_t row) {
    const TextLine line = controls().display.txtric.Ring().Line(frm.Errors().Row(row).displayLine);
    return line.text.substr(0, line.visible);
  }
};

struct ErrorCase {
  std::string what;
  std::function<void(ReceiveControls&)> set;
  std::string answer;
  std::string row;
};

TEST_F(ErrorRowsRig, EachKindTellsWhatWasToComeAndWhatCame) {
  const auto same = [](const std::string& expected) {
    return [expected](ReceiveControls& receive) {
      receive.chkSame.SetChecked(true);
      receive.txtparser.SetText(expected);
    };
  };
  const std::string longHead(100, 'x');
  const std::vector<ErrorCase> cases{
      {"silence", {}, "", "1|time-out|an answer within 200 ms|nothing received|"},
      {"half", {}, "12.5", "1|time-out|an answer within 200 ms|4 bytes without terminator|"},
      {"other text", same("12.5\r\n"), "12.6\r\n", "1|string not equal|12.5<CR><LF>|12.6<CR><LF>|10.0"},
      {"far behind", same(longHead + "A\r\n"), longHead + "B\r\n",
       "1|string not equal|..." + std::string(24, 'x') + "A<CR><LF>|..." + std::string(24, 'x') +
           "B<CR><LF>|10.0"},
      {"length", [](ReceiveControls& receive) { receive.txtlenrx.SetText("7"); }, "12.5\r\n",
       "1|wrong length|7 characters|6 characters: 12.5<CR><LF>|10.0"},
      {"sum", [](ReceiveControls& receive) { receive.cboCheckSum.SetListIndex(1); }, "123456\r\n",
       "1|wrong checksum|CB|56|10.0"},
      {"ERR", {}, "ERR\x02\r\n", "1|ERR||ERR<STX><CR><LF>|10.0"},
  };
  for (const ErrorCase& row : cases) {
    SCOPED_TRACE(row.what);
    controls().receive.chkSame.SetChecked(false);
    controls().receive.txtlenrx.SetText("0");
    controls().receive.cboCheckSum.SetListIndex(0);
    if (row.set) row.set(controls().receive);
    frm.Errors().Clear();
    controls().run.chkTimeout.SetChecked(true);
    controls().run.txtTimeout.SetText("1");
    Run({row.answer}, 1);
    if (Running()) StartCycle();
    ASSERT_GE(Rows().size(), 2U);
    EXPECT_EQ(Rows()[1], row.row);
  }
}

TEST_F(ErrorRowsRig, RowsStandUnderTheirRunAndLeadToTheirRequest) {
  controls().receive.txtlenrx.SetText("6");
  scale.Fail(DeviceCall::Write, std::errc::no_buffer_space, 1);
  controls().cycle.cmdSend.Click();
  Run({"12.5\r\n", "wrong\r\n", "12.5\r\n"}, 2);
  Run({"12.5\r\n"}, 1);
  scale.Unplug();
  Pass(1s);
  EXPECT_EQ(Rows(),
            (Lines{"Before the first run", "1|not sent||No buffer space available|", "Run 1",
                   "2|wrong length|6 characters|7 characters: wrong<CR><LF>|10.0", "Run 2", "After run 2",
                   "|link lost||COM1 9600,n,8,1 has gone: No such device  COMM Error Flags = 0|"}));
  const std::uint64_t first = frm.Errors().FirstRow();
  EXPECT_EQ(LineOf(first + 3), "READ");
  EXPECT_EQ(frm.Errors().Row(first + 2).heading.substr(26),
            "READ every 500 ms - finished: 3 sent, 2 answered, 1 error, 10.0 ms mean");
}

TEST_F(ErrorRowsRig, TheLineAboutARunHoldsTheVerdictOnItsLastString) {
  controls().receive.cboCheckSum.SetListIndex(1);
  Run({"123456\r\n"}, 1);
  EXPECT_EQ(Note(), "finished: 1 sent, 1 answered, 1 error, 10.0 ms mean");
  controls().test.chkStop.SetChecked(true);
  Run({"123456\r\n"}, 5);
  EXPECT_EQ(Note(),
            "stopped (ERROR CHECKSUM: CHECKSUM NOT EQUAL): 1 sent, 1 answered, 1 error, 10.0 ms mean");
}

// Whatever is pressed, the status bar has a word for it.
TEST_F(ErrorRowsRig, NoButtonStaysWithoutAnAnswer) {
  Connect();  // that is, disconnect
  struct Answer {
    const CommandButton& button;
    std::string words;
  };
  FrmMainControls& all = controls();
  for (const auto& [button, words] : std::vector<Answer>{
           {all.cycle.cmdSend, "not connected; nothing was sent"},
           {all.run.Command1, "started; waiting for a connection"},
           {all.run.Command1, "stopped: nothing was sent"},
           {all.config.cmdSave[1], "there is no config.cfg in the program folder; nothing was loaded"},
           {all.config.cmdSave[0], "config.cfg"},
           {all.test.cmdReport, "the report was written: "},
           {all.test.cmdEditDialog, "Dialog.txt was made"},
           {all.test.cmdEditDialog, "Dialog.txt is opened"},
           {all.script.cmdEditScript, "no script is chosen"},
           {all.connection.cmdsearchcom, "1 port found"}}) {
    button.Click();
    EXPECT_EQ(Note().substr(0, words.size()), words);
  }
}

TEST_F(ErrorRowsRig, TheOldestRowsLeaveAndAClearedTableKeepsTheHeadingOfTheRun) {
  controls().run.txtAnswerTime.SetText("1");
  controls().run.HScroll1.SetValue(1);
  StartCycle();
  Pass(25s);
  const ErrorRows& rows = frm.Errors();
  EXPECT_EQ(rows.Errors(), ErrorRows::mostRows);
  EXPECT_EQ(rows.Errors() + rows.Forgotten(), frm.Record().Sums().Of(Verdict::TimeOut));
  EXPECT_EQ(rows.Of(ErrorKind::TimeOut), ErrorRows::mostRows);
  StartCycle();
  StartCycle();
  frm.Errors().Clear();
  StartCycle();
  EXPECT_EQ(Rows(), (Lines{"Run 2"}));
}

}  // namespace
}  // namespace quarlin
