// SPDX-License-Identifier: GPL-3.0-or-later
// The script list and the command panel on the screen, worked by real clicks and keys.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "base/files.h"
#include "script/script_host.h"
#include "script/vbscript_engine.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/qt/form_window.h"
#include "ui/qt/lamp.h"
#include "ui/qt/main_window.h"
#include "ui/qt/spin_arrows.h"
#include "ui/qt/widget_text.h"

namespace quarlin {
namespace {

struct Rig {
  explicit Rig(std::string_view script) {
    if (!script.empty()) QVERIFY(!WriteWholeFile(folder / "bench.vbs", script));
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
  }

  FrmCommand& Panel() { return frm.Script().Panel(); }
  static QWidget& PanelWindow() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "FrmCommand") return *widget;
    }
    throw std::logic_error("no command window");
  }
  template <typename Widget>
  static Widget& Find(const QString& name) {
    return *PanelWindow().findChild<Widget*>(name);
  }

  // Clicks the box; `work` is done with the list once it is open.
  void Enable(const std::function<void(QDialog& list)>& work) {
    bool listed = false;
    QTimer::singleShot(0, &window, [&] {
      auto* list = qobject_cast<FormWindow*>(QApplication::activeModalWidget());
      QVERIFY(list != nullptr);
      listed = true;
      work(*list);
    });
    auto& tabs = *window.findChild<QTabWidget*>("tabs");
    for (int i = 0; i < tabs.count(); ++i) {
      if (tabs.tabText(i) == "Script") tabs.setCurrentIndex(i);
    }
    window.findChild<QCheckBox*>("chkEnableScript")->click();
    QVERIFY(listed);
    QVERIFY2(QApplication::activeModalWidget() == nullptr, "the main window takes input again");
  }
  void EnableAndShow() {
    Enable([](QDialog& list) {
      list.findChild<QListWidget*>("lstScript")->setCurrentRow(0);
      list.findChild<QCheckBox*>("chkCommand")->click();
      list.findChild<QPushButton*>("cmdSelect")->click();
    });
    QVERIFY(QTest::qWaitForWindowExposed(&PanelWindow()));
  }

  TempFolder folder;
  VirtualLoop loop;
  NoDevices ports;
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{
      {loop, ProgramFolder(folder.Path()), ports, prompts, opener, [] { return 0.5; }, false,
       [](std::string_view, vbs::Services& services) { return std::make_unique<VbscriptEngine>(services); }}};
  MainWindow window{frm};
};

// Each turn lays out one widget further outwards.
void LayOut() {
  for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
}

QPoint Arrow(const QWidget& arrows, bool upper) {
  return {arrows.width() / 2, upper ? arrows.height() / 4 : arrows.height() * 3 / 4};
}

}  // namespace

class ScriptWindowsTest : public QObject {
  Q_OBJECT

 private slots:
  void aDoubleClickTakesTheScript() {
    Rig rig("RichAppendText 0, \"runs\"");
    rig.Enable([](QDialog& list) {
      QCOMPARE(list.windowTitle(), QString("Script List"));
      auto& files = *list.findChild<QListWidget*>("lstScript");
      QCOMPARE(files.item(0)->text(), QString("bench.vbs"));
      const QPoint place = files.visualItemRect(files.item(0)).center();
      QTest::mouseClick(files.viewport(), Qt::LeftButton, {}, place);
      QTest::qWait(80);  // the click has been shown before the second one comes
      QTest::mouseDClick(files.viewport(), Qt::LeftButton, {}, place);
    });
    QCOMPARE(rig.frm.controls.display.txtric.Ring().Bytes(), std::size_t{4});
    QTRY_COMPARE(rig.window.findChild<QLineEdit*>("txtScriptFile")->text(), QString("bench.vbs"));
    QCOMPARE(rig.window.findChild<QCheckBox*>("chkEnableScript")->toolTip(), QString("bench.vbs"));
    QVERIFY(!rig.Panel().Visible());
  }

  void escapeLeavesTheListWithoutAChoice() {
    Rig rig("x = 1");
    rig.Enable([](QDialog& list) { QTest::keyClick(&list, Qt::Key_Escape); });
    QVERIFY(!rig.frm.controls.script.chkEnableScript.Checked());
    QTRY_VERIFY(!rig.window.findChild<QCheckBox*>("chkEnableScript")->isChecked());
  }

  void thePanelShowsWhatTheScriptSetsAndBringsBackWhatTheUserDoes() {
    Rig rig(
        "Sub InitTask\r\n ShpOutput(23).FillColor = vbRed: ShpOutput(0).BackColor = vbGreen\r\n"
        " comboIO(19).AddItem \"a\": comboIO(19).AddItem \"b\": txtOutput = \"ready\": TextIO(7) = 41\r\n"
        " ChkInput(5).Caption = \"Valve\": FrameInput.Caption = \"Keys\"\r\n"
        " FrmCommand.Caption = \"Bench\": txtInput.SetFocus\r\nEnd Sub");
    rig.EnableAndShow();
    QCOMPARE(rig.PanelWindow().windowTitle(), QString("Bench"));
    QTRY_COMPARE(rig.Find<Lamp>("ShpOutput_23").ColorShown(), QColor(255, 0, 0));
    QCOMPARE(rig.Find<Lamp>("ShpOutput_0").ColorShown(), QColor(0, 255, 0));
    QCOMPARE(rig.Find<QLineEdit>("txtOutput").text(), QString("ready"));
    QCOMPARE(rig.Find<QCheckBox>("ChkInput_5").text(), QString("Valve"));
    QCOMPARE(rig.Find<QGroupBox>("FrameInput").title(), QString("Keys"));
    QCOMPARE(rig.PanelWindow().focusWidget(), &rig.Find<QLineEdit>("txtInput"));

    FrmCommandControls& controls = rig.Panel().controls;
    rig.Find<QCheckBox>("ChkInput_5").click();
    QVERIFY(controls.ChkInput[5].Checked());
    auto& choice = rig.Find<QComboBox>("comboIO_19");
    QCOMPARE(choice.count(), 2);
    emit choice.activated(1);
    QCOMPARE(controls.comboIO[19].Text(), std::string("b"));

    auto& number = rig.Find<QLineEdit>("TextIO_7");
    auto& arrows = rig.Find<SpinArrows>("VScrollIO_7");
    QTest::mouseClick(&arrows, Qt::LeftButton, {}, Arrow(arrows, true));
    QTest::mouseDClick(&arrows, Qt::LeftButton, {}, Arrow(arrows, true));  // faster than a frame
    QCOMPARE(controls.TextIO[7].Text(), std::string("43"));
    QTest::mouseClick(&arrows, Qt::LeftButton, {}, Arrow(arrows, false));
    QTest::keyClick(&arrows, Qt::Key_Down);
    QTest::keyClick(&arrows, Qt::Key_Down);
    QTest::keyClick(&arrows, Qt::Key_Up);
    QTRY_COMPARE(number.text(), QString("41"));
    number.selectAll();
    QTest::keyClicks(&number, "0");
    QTest::mouseClick(&arrows, Qt::LeftButton, {}, Arrow(arrows, false));
    QTRY_COMPARE(number.text(), QString("-1"));  // what was typed counts
  }

  void theScriptBindsWhatTheUserTypesAndMarks() {
    Rig rig(
        "Sub InitTask\r\n TextIO(0).MaxLength = 3: TextIO(1) = \"kept\": TextIO(1).Locked = True\r\n"
        " TextIO(2) = \"one two\": TextIO(2).SelStart = 4: TextIO(2).SelLength = 3\r\n"
        " ChkInput(0).FontBold = True: FrameOutput.Font.Size = 14: FrameOutput.FontItalic = True\r\nEnd Sub");
    rig.EnableAndShow();
    FrmCommandControls& controls = rig.Panel().controls;
    for (const char* name : {"TextIO_0", "TextIO_1"}) {
      auto& box = rig.Find<QLineEdit>(name);
      QTRY_VERIFY(box.maxLength() == 3 || box.isReadOnly());
      box.setFocus();
      QTest::keyClicks(&box, "12345");
      QTest::keyClick(&box, Qt::Key_Return);
    }
    QCOMPARE(controls.TextIO[0].Text(), std::string("123"));
    QCOMPARE(controls.TextIO[1].Text(), std::string("kept"));
    auto& marked = rig.Find<QLineEdit>("TextIO_2");
    QTRY_COMPARE(marked.selectedText(), QString("two"));
    rig.PanelWindow().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&rig.PanelWindow()));
    marked.setFocus();
    QTest::keyClick(&marked, Qt::Key_Home, Qt::ShiftModifier);
    const Marked whole = controls.TextIO[2].Selection();
    QCOMPARE(whole.start + whole.length, static_cast<int>(marked.selectionEnd()));
    QVERIFY(whole.length >= 4);
    QTRY_VERIFY(rig.Find<QCheckBox>("ChkInput_0").font().bold());
    QVERIFY(!rig.Find<QCheckBox>("ChkInput_1").font().bold());
    QCOMPARE(rig.Find<QGroupBox>("FrameOutput").font().pointSizeF(), 14.0);
  }

  void whatTheScriptMovesIsSeenThereAndStays() {
    Rig rig("Sub InitTask\r\n txtOutput.Move 3000, 1500, 3000: TextIO(0).Move 1500, 300\r\nEnd Sub");
    rig.EnableAndShow();
    QWidget& panel = rig.PanelWindow();
    panel.resize(panel.size() + QSize(40, 40));
    LayOut();
    auto& text = rig.Find<QLineEdit>("txtOutput");
    QTRY_COMPARE(text.pos(), QPoint(200, 100));
    QCOMPARE(text.width(), 200);
    QVERIFY(panel.childAt(text.mapTo(&panel, text.rect().center())) == &text);
    QCOMPARE(rig.Find<QLineEdit>("TextIO_0").pos(), QPoint(100, 20));
  }

  void aModalPanelGoesBackToItsScript() {
    Rig rig(
        "Sub InitTask\r\n TextIO(0).SetFocus: FrmCommand.Show 1: txtOutput = \"got \" & TextIO(0)\r\n"
        " FrmCommand.Show\r\nEnd Sub");
    rig.loop.Outside(std::chrono::seconds(1), [&] {
      QWidget& panel = rig.PanelWindow();
      QVERIFY(panel.isModal());
      QVERIFY(QTest::qWaitForWindowActive(&panel));
      auto& box = rig.Find<QLineEdit>("TextIO_0");
      box.setFocus();
      QTest::keyClicks(&box, "42");
      QTest::keyClick(&box, Qt::Key_Escape);
    });
    rig.Enable([](QDialog& list) {
      list.findChild<QListWidget*>("lstScript")->setCurrentRow(0);
      list.findChild<QPushButton*>("cmdSelect")->click();
    });
    QCOMPARE(rig.Panel().controls.txtOutput.Text(), std::string("got 42"));
    QVERIFY(rig.frm.controls.script.chkEnableScript.Checked());
    QVERIFY(rig.PanelWindow().isVisible() && !rig.PanelWindow().isModal());
  }

  void closingThePanelSwitchesScriptingOff() {
    Rig rig("x = 1");
    rig.EnableAndShow();
    QVERIFY(!rig.PanelWindow().close());
    QVERIFY(!rig.PanelWindow().isVisible());
    QVERIFY(!rig.frm.controls.script.chkEnableScript.Checked());
  }

  void thePanelGoesOnTopAndBackWithoutHiding() {
    Rig rig("x = 1");
    rig.EnableAndShow();
    const QWindow& handle = *rig.PanelWindow().windowHandle();
    QVERIFY(!handle.flags().testFlag(Qt::WindowStaysOnTopHint));
    rig.Panel().SetTopMost(true);
    QVERIFY(handle.flags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(rig.PanelWindow().isVisible());
    rig.Panel().SetTopMost(false);
    QVERIFY(!handle.flags().testFlag(Qt::WindowStaysOnTopHint));
  }

  void aScriptMayPlaceTheControlsOfThePanelOnly() {
    Rig rig("");
    rig.Panel().SetVisible(true);
    rig.Panel().controls.TextIO[0].SetPlace({150.0, 300.0, 1500.0, 450.0});
    auto& number = rig.Find<QLineEdit>("TextIO_0");
    QTRY_COMPARE(number.geometry(), QRect(10, 20, 100, 30));
    auto& port = *rig.window.findChild<QComboBox*>("cboSerial");
    const QRect before = port.geometry();
    rig.frm.controls.connection.cboSerial.SetPlace({0.0, 0.0, 15.0, 15.0});
    QTRY_VERIFY(rig.frm.Collection().Changes().Empty());
    LayOut();
    QCOMPARE(port.geometry(), before);
  }

  void theWindowGrowsWithTheCaptionsButOnlyThen() {
    Rig rig("");
    rig.Panel().SetVisible(true);
    QWidget& panel = rig.PanelWindow();
    const int before = panel.width();
    rig.Panel().controls.ChkInput[0].SetCaption("a switch of some words");
    QTRY_VERIFY(panel.width() > before);
    LayOut();
    panel.resize(400, 300);
    rig.Panel().controls.ChkInput[13].SetCaption("1");
    QTRY_COMPARE(rig.Find<QCheckBox>("ChkInput_13").text(), QString("1"));
    LayOut();
    QCOMPARE(panel.size(), QSize(400, 300));
  }

  void everyControlOfThePanelIsThereOnceReachableAndExplained() {
    Rig rig("");
    rig.Panel().SetVisible(true);
    QWidget& panel = rig.PanelWindow();
    panel.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&panel));
    rig.Find<QLineEdit>("TextIO_0").setFocus();
    QStringList visited;
    for (int i = 0; i < 150; ++i) {
      visited << QApplication::focusWidget()->objectName();
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    for (const Control* control : rig.Panel().Collection().All()) {
      const QString name = WidgetName(*control);
      const auto widgets = panel.findChildren<QWidget*>(name);
      QVERIFY2(widgets.size() == 1, qPrintable(name));
      if (control->Kind() == ControlKind::Frame) continue;
      const QString index = control->Index() ? QString("(%1)").arg(*control->Index()) : QString();
      QVERIFY2(!widgets[0]->toolTip().isEmpty() && widgets[0]->toolTip().contains(index), qPrintable(name));
      QVERIFY2(control->Kind() == ControlKind::Shape || visited.contains(name), qPrintable(name));
      const QSize needed = widgets[0]->minimumSizeHint();
      QVERIFY2(widgets[0]->width() >= needed.width() && widgets[0]->height() >= needed.height(),
               qPrintable(name));
    }
    QVERIFY2(panel.width() <= 1024 && panel.height() <= 700, "too large for a small screen");
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ScriptWindowsTest)
#include "script_windows_test.moc"
