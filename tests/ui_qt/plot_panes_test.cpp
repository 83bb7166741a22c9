// SPDX-License-Identifier: GPL-3.0-or-later
// The panes beside the curves: figures of what is chosen, and the fields and figures of a filter.

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

#include "ui/qt/filter_pane.h"
#include "ui/qt/statistics_pane.h"

namespace quarlin {

class PlotPanesTest : public QObject {
  Q_OBJECT

 private slots:
  void figuresOfWhatIsChosen();
  void fieldsOfTheKind();
  void theFilterBeforeStaysWhileTheNewOneIsNone();
};

void PlotPanesTest::figuresOfWhatIsChosen() {
  StatisticsPane pane;
  int asked = 0;
  pane.OnWanted = [&](int curve, bool betweenCursors) {
    ++asked;
    StatisticsPane::Stretch stretch{{{0, 1e9 + 1}, {1, 1e9 + 2}, {2, gapValue}, {3, 1e9 + 4}}, "kg", true};
    if (curve == 1) stretch.points = {{0, 7}};
    if (betweenCursors) stretch.points.resize(2);
    return stretch;
  };
  pane.SetCurves({"weight", "other"});
  pane.Refresh();
  QTest::qWait(0);
  QCOMPARE(asked, 0);  // nobody sees it
  pane.show();
  const auto copied = [&] {
    pane.findChild<QPushButton*>("statisticsCopyButton")->click();
    return QGuiApplication::clipboard()->text();
  };
  QTRY_VERIFY(copied().startsWith(
      "Count\t3\t\nMean\t1000000002.33333\tkg\nStandard deviation\t1.52752523165195\tkg\n"));
  QVERIFY(copied().contains("Drift per hour\t3600\tkg/h\n"));
  const auto* table = pane.findChild<QTableWidget*>("statisticsTable");
  QCOMPARE(table->item(1, 1)->text(), "1000000002.3");  // no digits that the deviation makes worthless
  auto* range = pane.findChild<QComboBox*>("statisticsRangeBox");
  QVERIFY(!range->isEnabled());
  pane.SetCursors(true);
  range->setCurrentIndex(1);
  QTRY_COMPARE(table->item(0, 1)->text(), "2");
  pane.SetCursors(false);
  pane.findChild<QComboBox*>("statisticsCurveBox")->setCurrentIndex(1);
  QTRY_COMPARE(table->item(0, 1)->text(), "1");
  QCOMPARE(table->item(2, 1)->text(), "–");
}

void PlotPanesTest::fieldsOfTheKind() {
  FilterPane pane;
  pane.show();
  const std::pair<FilterKind, QStringList> cases[] = {
      {FilterKind::None, {}},
      {FilterKind::Median, {"txtFilterRate", "txtFilterWidth"}},
      {FilterKind::Exponential, {"txtFilterAlpha", "txtFilterRate"}},
      {FilterKind::Chebyshev, {"txtFilterCutoff", "txtFilterOrder", "txtFilterRate", "txtFilterRipple"}},
      {FilterKind::Notch, {"txtFilterFrequency", "txtFilterQ", "txtFilterRate"}},
  };
  for (const auto& [kind, names] : cases) {
    FilterSettings settings;
    settings.kind = kind;
    settings.frequency = 20;
    pane.ShowFilter(settings, false, {});
    QStringList seen;
    for (const QLineEdit* edit : pane.findChildren<QLineEdit*>()) {
      if (edit->isVisible()) seen.append(edit->objectName());
    }
    seen.sort();
    QCOMPARE(seen, names);
  }
}

void PlotPanesTest::theFilterBeforeStaysWhileTheNewOneIsNone() {
  FilterPane pane;
  pane.show();
  FilterSettings settings{.kind = FilterKind::MovingAverage, .width = 10, .rate = 10};
  pane.ShowFilter(settings, false, {});
  const auto text = [&](const char* name) { return pane.findChild<QLabel*>(name)->text(); };
  QCOMPARE(text("filterDelay"), "450 ms (4.5 values)");
  QCOMPARE(text("filterSettling"), "900 ms (9 values)");
  QCOMPARE(text("filterNoise"), "to 1/3.162");
  settings.kind = FilterKind::Median;
  const auto* trouble = pane.findChild<QLabel*>("lblFilterTrouble");
  QVERIFY(!trouble->isVisible());
  pane.ShowFilter(settings, false, ObjectionTo(settings));
  QVERIFY(trouble->isVisible());
  QApplication::processEvents();
  const auto* field = pane.findChild<QLineEdit*>("txtFilterWidth");
  QVERIFY(trouble->y() >= field->geometry().bottom());
  QVERIFY(trouble->y() < pane.findChild<QLineEdit*>("txtFilterRate")->y());
  QCOMPARE(text("filterDelay"), "450 ms (4.5 values)");
  pane.ShowFilter({.kind = FilterKind::MovingAverage, .width = 10, .rate = 10}, true, {});
  QVERIFY(!trouble->isVisible());
  QCOMPARE(text("filterDelay"), "none");
}

}  // namespace quarlin

QTEST_MAIN(quarlin::PlotPanesTest)
#include "plot_panes_test.moc"
