// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/error_panel.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSplitter>
#include <QTest>

#include "support/virtual_loop.h"
#include "ui/qt/error_table.h"

namespace quarlin {
namespace {

struct Rig {
  Rig() {
    panel.Show(rows);
    panel.resize(800, 200);
    panel.show();
    table.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
  }

  void Fail(Verdict verdict, int times = 1) {
    for (int i = 0; i < times; ++i) {
      const std::uint64_t number = record.AddRequest("READ\r\n", record.LastNumber() * 2);
      record.Say(number, {verdict, "nothing received"});
      record.Close(number);
    }
  }

  int Shown() { return table.model()->rowCount(); }
  QString Cell(int row, int column) { return table.model()->index(row, column).data().toString(); }

  VirtualLoop loop;
  DisplayControls controls{loop};
  RunRecord record{loop.Clocks()};
  ErrorRows rows{loop.Clocks(), record, controls.txtric};
  ErrorPanel panel;
  ErrorTable& table = *panel.findChild<ErrorTable*>("lstError");
};

}  // namespace

class ErrorPanelTest : public QObject {
  Q_OBJECT

 private slots:
  void aFloodOfErrorsArrivesInBatches() {
    Rig rig;
    QSignalSpy inserted(rig.table.model(), &QAbstractItemModel::rowsInserted);
    rig.record.Begin();
    rig.Fail(Verdict::TimeOut, 5000);
    QTRY_COMPARE(rig.Shown(), 5001);
    QCOMPARE(inserted.count(), 1);
    QCOMPARE(rig.Cell(5000, 1), QString("5000"));
    QVERIFY(rig.table.verticalScrollBar()->value() == rig.table.verticalScrollBar()->maximum());
  }

  void scrolledBackItStaysWithItsRowsAlsoWhileOldOnesLeave() {
    Rig rig;
    rig.Fail(Verdict::TimeOut, static_cast<int>(ErrorRows::mostRows) - 1);  // and their heading
    QTRY_COMPARE(rig.Shown(), static_cast<int>(ErrorRows::mostRows));
    rig.table.verticalScrollBar()->setValue(4000);
    const auto top = [&rig] { return rig.Cell(rig.table.rowAt(0), 1); };
    QTRY_COMPARE(top(), QString("4000"));
    rig.Fail(Verdict::TimeOut, 100);
    QTRY_COMPARE(rig.Cell(rig.Shown() - 1, 1), QString("10099"));
    QCOMPARE(top(), QString("4000"));
  }

  void oneKindIsShownCopiedAndLedToItsPlace() {
    Rig rig;
    rig.Fail(Verdict::TimeOut);
    rig.Fail(Verdict::NotEqual);
    rig.Fail(Verdict::TimeOut);
    QTRY_COMPARE(rig.Shown(), 4);
    auto& kinds = *rig.panel.findChild<QComboBox*>("errorKindBox");
    QTest::keyClicks(&kinds, "string");
    emit kinds.activated(kinds.currentIndex());
    QCOMPARE(rig.Shown(), 2);
    QSignalSpy wanted(&rig.panel, &ErrorPanel::lineWanted);
    rig.table.setFocus();
    rig.table.selectRow(1);
    QTest::keyClick(&rig.table, Qt::Key_Return);
    QCOMPARE(wanted.count(), 1);
    QCOMPARE(wanted[0][0].value<std::uint64_t>(), std::uint64_t{2});
    QTest::keyClick(&rig.table, Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines[0], QString("Time\tNo.\tWhat\tExpected\tGot\tms\tRequest"));
    QCOMPARE(lines[1].section('\t', 1), QString("2\tstring not equal\t\tnothing received\t\tREAD<CR><LF>"));
  }

  void minimisingLeavesTheTableAsHighAsItWas() {
    Rig rig;
    QSplitter split(Qt::Vertical);
    split.addWidget(new QWidget);
    split.addWidget(&rig.panel);
    split.resize(800, 600);
    split.show();
    QVERIFY(QTest::qWaitForWindowExposed(&split));
    split.setSizes({200, 400});
    const int height = rig.panel.height();
    split.showMinimized();
    QTest::qWait(50);
    split.showNormal();
    QTest::qWait(50);
    const int after = rig.panel.height();
    rig.panel.setParent(nullptr);  // the rig owns it
    QCOMPARE(after, height);
  }

  void clearingEmptiesTheTableAndNothingElse() {
    Rig rig;
    rig.Fail(Verdict::Err, 3);
    QTRY_COMPARE(rig.Shown(), 4);
    rig.panel.findChild<QPushButton*>("clearErrorsButton")->click();
    QTRY_COMPARE(rig.Shown(), 0);
    QCOMPARE(rig.record.Sums().Of(Verdict::Err), std::uint64_t{3});
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ErrorPanelTest)
#include "error_panel_test.moc"
