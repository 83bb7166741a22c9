// SPDX-License-Identifier: GPL-3.0-or-later
#include "results/report_text.h"

#include "results/result_rig.h"

namespace quarlin {
namespace {

using ReportTextRig = ResultRig;

const std::string dashes = std::string(51, '-') + "\r\n";

std::string FixedLines(std::string_view last) {
  return dashes + "Tx :120\r\nRx :118\r\n" + dashes + "Elapsed Time :00:10:05\r\n" + dashes +
         "Error     : 2\r\nError Str : 0\r\nError Len : 2\r\n" + dashes + std::string(last);
}

TEST_F(ReportTextRig, WhatThereIsToSayStandsBehindTheLinesThatAreAlwaysThere) {
  counters_.lblsend.SetCaption("120");
  counters_.Label7.SetCaption("118");
  counters_.lbltempo.SetCaption("00:10:05");
  counters_.lblerror.SetCaption("2");
  counters_.lblErrorLen.SetCaption("2");
  const std::string nothingListed = FixedLines("Last 0 Errors:\r\n" + dashes);
  EXPECT_EQ(ReportText(Result()), nothingListed);

  facts_.lineErrors.emplace();
  EXPECT_EQ(ReportText(Result()), nothingListed);
  facts_.lineErrors->framing = 5;
  EXPECT_EQ(ReportText(Result()),
            nothingListed + dashes + "Line errors : 5 (parity 0, framing 5, overrun 0)\r\n");

  facts_.lineErrors->parity = 2;
  facts_.scriptErrors.count = 4;
  facts_.logLosses = {"LOG.TXT lacks 12 bytes"};
  facts_.faultsOnPurpose = "3 dropped";
  display_.lstError.AddItem("TIME OUT (1/3)", "03/02/26 12:00:01 No. 17");
  display_.lstError.AddItem("a script's own line", "");
  display_.lstError.AddItem("ERROR STRING LENGTH", "03/02/26 12:00:09 No. 21: 22 characters instead of 23");
  EXPECT_EQ(ReportText(Result()),
            FixedLines("Faults on purpose : 3 dropped\r\n" + dashes + "Last 3 Errors:\r\n" + dashes) +
                "TIME OUT (1/3)\r\na script's own line\r\nERROR STRING LENGTH\r\n\r\n" + dashes +
                "Script errors : 4\r\nLine errors : 7 (parity 2, framing 5, overrun 0)\r\n" +
                "LOG.TXT lacks 12 bytes\r\n" + dashes + "Errors in detail:\r\n" + dashes +
                "TIME OUT (1/3)  03/02/26 12:00:01 No. 17\r\n" +
                "ERROR STRING LENGTH  03/02/26 12:00:09 No. 21: 22 characters instead of 23\r\n");
}

TEST_F(ReportTextRig, ADetailLeavesWithItsEntry) {
  display_.lstError.AddItem("first", "at one");
  display_.lstError.AddItem("second", "at two");
  display_.lstError.RemoveItem(0);
  const std::string text = ReportText(Result());
  EXPECT_EQ(text.find("at one"), std::string::npos);
  EXPECT_NE(text.find("second  at two\r\n"), std::string::npos);
}

}  // namespace
}  // namespace quarlin
