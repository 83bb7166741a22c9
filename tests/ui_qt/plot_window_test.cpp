// SPDX-License-Identifier: GPL-3.0-or-later
// The plot window beside the main one: a run drawn in it, its filter, and the way back to the traffic.
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <cmath>

#include "base/files.h"
#include "curves/frm_plot.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/scripted_device.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/plot/curve_canvas.h"
#include "ui/qt/main_window.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

struct Rig {
  Rig() {
    frm.controls.connection.cboSerial.SetText("COM1");
    frm.Load("");
    window.ShowAsLast();
    if (!QTest::qWaitForWindowActive(&window)) qFatal("the window does not come to the front");
    frm.controls.connection.cmdOpen.Click();
    frm.controls.cycle.CBOSEND.SetText("READ");
    frm.controls.run.Check1.SetChecked(true);
    frm.controls.run.txtAnswerTime.SetText("50");
    QTest::keyClick(&window, Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
    for (QWidget* beside : QApplication::topLevelWidgets()) {
      if (beside->objectName() == "FrmPlot") plot = beside;
    }
  }

  void Answer(std::vector<std::string> answers) {
    scale.AnswerLines('\r', ScriptedDevice::InTurn(std::move(answers)), 1ms);
    frm.controls.run.Command1.Click();
    loop.Pass(3s);
    frm.controls.run.Command1.Click();
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *plot->findChild<Widget*>(name);
  }

  void Type(const char* box, const QString& text) {
    auto& edit = Find<QLineEdit>(box);
    edit.setFocus();
    edit.selectAll();
    QTest::keyClicks(&edit, text);
    QTest::keyClick(&edit, Qt::Key_Return);
  }

  TempFolder folder;
  VirtualLoop loop;
  ScriptedDeviceSource ports{loop};
  ScriptedDevice& scale = ports.AddPort("COM1");
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{{loop, ProgramFolder(folder.Path()), ports, prompts, opener, [] { return 0.5; }}};
  MainWindow window{frm};
  QWidget* plot = nullptr;
};

}  // namespace

class PlotWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void aRunIsDrawnAndATickLeadsToItsRequest() {
    Rig rig;
    QVERIFY(rig.plot != nullptr && rig.plot->isVisible());
    rig.Answer({"12.5 kg\r\n", "", "12.7 kg\r\n"});
    auto& canvas = rig.Find<CurveCanvas>("canvas");
    const Series& drawn = *canvas.Curves().at(0).series;
    QCOMPARE(drawn.At(0).value, 12.5);
    QVERIFY(std::isnan(drawn.At(1).value));
    QCOMPARE(drawn.At(2).value, 12.7);
    QTRY_VERIFY(rig.Find<QLabel>("lblPlotNote").text().startsWith("Live: "));

    std::optional<std::uint64_t> line;
    rig.frm.Plot().OnLineWanted = nullptr;
    rig.frm.Plot().OnLineWanted = [&](std::uint64_t wanted) { line = wanted; };
    emit canvas.MarkClicked(rig.frm.Plot().Marks().front().exchange);
    QVERIFY(line);
    QVERIFY(rig.frm.controls.display.txtric.Ring().Line(*line).text.find("READ") == 0);
  }

  void theFiguresAreCopiedAndNotThePicture() {
    Rig rig;
    rig.Answer({"12.344 \xC2\xB5g\r\n", "12.346 \xC2\xB5g\r\n"});
    auto& table = rig.Find<QTableWidget>("statisticsTable");
    QTRY_VERIFY(table.item(0, 1) != nullptr && table.item(0, 1)->text() == "2");
    QCOMPARE(table.item(5, 1)->text(), QString("0.002"));  // not what the subtraction makes of the last digit
    QCOMPARE(table.item(5, 2)->text(), QString("µg"));
    QApplication::clipboard()->clear();
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    QTRY_VERIFY(QApplication::clipboard()->text().startsWith("Count\t2\t\n"));
  }

  void theFilterShowsItsFieldsAndWhatIsWrongWithThem() {
    Rig rig;
    rig.Answer({"1\r\n", "2\r\n", "4\r\n"});
    rig.Find<QTabWidget>("panes").setCurrentIndex(1);
    auto& kind = rig.Find<QComboBox>("cboFilter");
    kind.setFocus();
    QTest::keyClicks(&kind, "Mov");
    auto& canvas = rig.Find<CurveCanvas>("canvas");
    QTRY_COMPARE(canvas.Curves().size(), std::size_t{2});
    rig.Type("txtFilterWidth", "2");
    QTRY_VERIFY(rig.Find<QWidget>("txtFilterWidth").isVisible());
    QVERIFY(!rig.Find<QWidget>("txtFilterCutoff").isVisible());
    QCOMPARE(canvas.Curves().at(1).series->At(2).value, 3.0);

    rig.Type("txtFilterWidth", "0");
    auto& trouble = rig.Find<QLabel>("lblFilterTrouble");
    QTRY_VERIFY(trouble.isVisible() && trouble.text().contains("0"));
    QCOMPARE(canvas.Curves().at(1).series->At(2).value, 3.0);  // the curve before stays

    rig.Type("txtFilterWidth", "2");
    QTRY_VERIFY(!trouble.isVisible());
    rig.Find<QPushButton>("filterWriteButton").click();
    const auto filtered = ReadWholeFile(rig.folder / "filter.dat").value_or("");
    QVERIFY2(filtered.starts_with("1\n1.5\n3\n"), filtered.c_str());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::PlotWindowTest)
#include "plot_window_test.moc"
