// SPDX-License-Identifier: GPL-3.0-or-later
// What the plot gets of a running test: a point for each good answer at its time, a gap and a mark for every
// other, and the value behind the filter.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>

#include "curves/frm_plot.h"
#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

class PlotRig : public RequestRig {
 protected:
  PlotRig() { controls().run.HScroll1.SetValue(500); }  // milliseconds between requests

  FrmPlot& plot() { return frm.Plot(); }
  const Series& Raw(std::size_t curve) { return plot().Shown().Curves()[curve]->raw; }

  // "12.3 - 12.5": the values of a curve, a gap as "-".
  std::string Values(const Series& series) {
    std::string text;
    for (std::size_t i = 0; i < series.Size(); ++i) {
      const double value = series.At(i).value;
      text += (i == 0 ? "" : " ") + (std::isnan(value) ? std::string("-") : fmt::format("{:g}", value));
    }
    return text;
  }
};

TEST_F(PlotRig, GoodAnswersArePointsAndTheOthersGapsWithMarks) {
  controls().receive.txtlenrx.SetText("11");
  plot().Open();
  Run({"ST   12.3\r\n", "", "ST   12\r\n", "ST   12.5\r\n"}, 2);
  EXPECT_EQ(Values(Raw(0)), "12.3 - - 12.5");
  ASSERT_EQ(plot().Marks().size(), 2u);
  EXPECT_EQ(plot().Marks()[0].kind, MarkKind::TimeOut);
  EXPECT_EQ(plot().Marks()[1].kind, MarkKind::WrongAnswer);
  EXPECT_NEAR(Raw(0).At(3).time - Raw(0).At(0).time, 1.5, 0.02);
}

struct RuleCase {
  std::string source, rule, which;
  std::vector<std::string> curves;
};

TEST_F(PlotRig, EachRuleTakesItsNumbersAlsoOfARunThatWentBefore) {
  Run({"A 1,5 kg;7\r\n", "B 2,5;8\r\n", "nothing\r\n"}, 3);
  plot().Open();  // what the record has kept is made up for
  for (const RuleCase& example : std::vector<RuleCase>{
           {"Answers", "Number", "1", {"1.5 2.5 -"}},
           {"Answers", "Number", "1, 2", {"1.5 2.5 -", "7 8 -"}},
           {"Answers", "Column", "2", {"7 8 -"}},
           {"Answers", "Expression", "B (?<value>[0-9,]+)", {"- 2.5 -"}},
           {"Answers", "Expression", "(", {"- 2.5 -"}},  // no expression: the curve before stays
           {"Parser output", "Number", "1", {"1.5 2.5 -"}}}) {
    controls().curves.cboCurveSource.SetText(example.source);
    controls().curves.cboCurveRule.SetText(example.rule);
    controls().curves.txtCurveRule.SetText(example.which);
    ASSERT_EQ(plot().Shown().Curves().size(), example.curves.size()) << example.which;
    for (std::size_t i = 0; i < example.curves.size(); ++i) {
      EXPECT_EQ(Values(Raw(i)), example.curves[i]) << example.which;
    }
    EXPECT_EQ(plot().controls.lblCurveTrouble.Caption().empty(), example.which != "(") << example.which;
  }
  EXPECT_EQ(Raw(0).unit, "kg");
}

TEST_F(PlotRig, ARunThatBeganBehindAClosedWindowReplacesTheOneBefore) {
  plot().Open();
  Run({"1\r\n", "2\r\n", "3\r\n"}, 3);
  plot().OnClose();
  Run({"7\r\n", "8\r\n"}, 2);
  bool shown = false;  // the curves of before are gone, so a view must hear of it
  plot().OnCurves = [&] { shown = true; };
  plot().Open();
  EXPECT_EQ(Values(Raw(0)), "7 8");
  EXPECT_TRUE(shown);
}

TEST_F(PlotRig, TheLiveValueGoesThroughTheFilterWithTheWindowClosed) {
  controls().curves.txtFilterWidth.SetText("2");
  controls().curves.cboFilter.SetText("Moving average");
  EXPECT_FALSE(plot().Filtered());
  Run({"1\r\n", "2\r\n", "4\r\n"}, 3);
  EXPECT_EQ(plot().Filtered(), 3.0);
  EXPECT_EQ(controls().curves.lblFiltered.Caption(), "filtered 3");
  controls().curves.txtFilterWidth.SetText("4");
  EXPECT_EQ(plot().Filtered(), 2.0);
  controls().curves.txtFilterWidth.SetText("0");
  EXPECT_FALSE(plot().controls.lblFilterTrouble.Caption().empty());
  EXPECT_EQ(plot().Filtered(), 2.0);  // the filter before goes on
  controls().curves.cboFilter.SetText("None");
  EXPECT_FALSE(controls().curves.lblFiltered.Visible());
}

TEST_F(PlotRig, APointLeadsToItsExchangeInTheTraffic) {
  plot().Open();
  Run({"1\r\n", "", "2\r\n"}, 2);
  std::vector<std::string> lines;
  plot().OnLineWanted = [&](std::uint64_t line) {
    const TextLine text = controls().display.txtric.Ring().Line(line);
    lines.push_back(text.text.substr(0, text.visible));
  };
  plot().ShowAnswerAt(Raw(0).At(2).time);
  plot().ShowExchange(plot().Marks().front().exchange);
  EXPECT_EQ(lines, (std::vector<std::string>{"READ", "READ"}));
}

}  // namespace
}  // namespace quarlin
