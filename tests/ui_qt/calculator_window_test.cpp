// SPDX-License-Identifier: GPL-3.0-or-later
// The calculator, worked by real keys from the main window on.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "calculator/frm_calculator.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/qt/byte_edit.h"
#include "ui/qt/main_window.h"
#include "ui/qt/received_text_view.h"

namespace quarlin {
namespace {

struct Rig {
  Rig() {
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->objectName() == "FrmCalculator") calculator = widget;
    }
    QVERIFY(calculator != nullptr && QTest::qWaitForWindowActive(calculator));
  }

  template <typename Widget = ByteEdit>
  Widget& Find(const char* name) {
    return *calculator->findChild<Widget*>(name);
  }
  QString Text(const char* name) { return Find(name).toPlainText(); }

  // What is tinted as marked in a view.
  QString Marked(const char* name) { return Find(name).extraSelections().at(0).cursor.selectedText(); }

  // As if the user typed it, from the mnemonic of the view on.
  void Type(Qt::Key mnemonic, const QString& text) {
    QTest::keyClick(calculator, mnemonic, Qt::AltModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), text);
  }

  TempFolder folder;
  VirtualLoop loop;
  NoDevices devices;
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{{loop, ProgramFolder(folder.Path()), devices, prompts, opener, [] { return 0.5; }}};
  MainWindow window{frm};
  QWidget* calculator = nullptr;
};

}  // namespace

class CalculatorWindowTest : public QObject {
  Q_OBJECT

 private slots:
  void theViewsFollowEachOtherAndBadInputLosesNothing() {
    Rig rig;
    QCOMPARE(QApplication::focusWidget()->objectName(), QString("textEdit"));
    rig.Type(Qt::Key_T, "A{{{0D}");
    QCOMPARE(rig.Text("hexEdit"), QString("41 7B 0D"));
    QCOMPARE(rig.Text("decimalEdit"), QString("65 123 13"));
    rig.Type(Qt::Key_H, "0x41,$42 4G");
    QCOMPARE(rig.Text("textEdit"), QString("AB{04}"));  // up to the letter
    QTRY_COMPARE(rig.Find<QLabel>("lblHexTrouble").text(), QString("\"G\" is no hexadecimal digit"));
    QCOMPARE(rig.Text("hexEdit"), QString("0x41,$42 4G"));
    rig.frm.controls.numbers.Combo1.SetText("0x41, 0x42");  // by a script
    QCOMPARE(rig.Text("hexEdit"), QString("0x41,$42 4G"));
    QCOMPARE(rig.Text("binaryEdit"), QString("0b01000001, 0b01000010, 0b00000100"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backspace);
    QTRY_COMPARE(rig.Find<QLabel>("lblHexTrouble").text(), QString());

    rig.Find("textEdit").setFocus();
    QTest::keyClick(&rig.Find("textEdit"), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(&rig.Find("textEdit"), Qt::Key_Right);
    QTest::keyClick(&rig.Find("textEdit"), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(rig.Marked("hexEdit"), QString("$42"));
    QCOMPARE(rig.Marked("decimalEdit"), QString("66"));
    QCOMPARE(rig.Marked("binaryEdit"), QString("0b01000010"));
    QTRY_COMPARE(rig.Find<QLabel>("lblLength").text(), QString("3 characters, 1 selected: number 2"));
  }

  void aSumIsShownAndGoesIntoTheCommand() {
    Rig rig;
    rig.Type(Qt::Key_D, "49 50 51 52 53 54 55 56 57");
    rig.Find<QPushButton>("cmdSum_7").click();
    QTRY_COMPARE(rig.Find<QLineEdit>("txtSumDecimal").text(), QString("19255"));
    QCOMPARE(rig.Find<QLineEdit>("txtSumHex").text(), QString("4B37"));
    rig.frm.Calculator().controls.cboSumForm.SetListIndex(3);
    QTRY_COMPARE(rig.Find<QLineEdit>("txtSumText").text(), QString("7K"));
    auto& command = *rig.window.findChild<QComboBox*>("CBOSEND")->lineEdit();
    command.setText("<>");
    command.setCursorPosition(1);
    const auto sent = [&] { return QString::fromStdString(rig.frm.controls.cycle.CBOSEND.Text()); };
    QTest::keyClick(rig.calculator, Qt::Key_I, Qt::AltModifier);
    QTRY_COMPARE(sent(), QString("<123456789>"));
    QTest::keyClick(rig.calculator, Qt::Key_M, Qt::AltModifier);
    QTRY_COMPARE(sent(), QString("<123456789[CHECKSUMCRC16MODBUSRAWLOW]>"));
  }

  void whatIsTakenAndPastedKeepsItsControlCharacters() {
    Rig rig;
    rig.frm.controls.display.txtric.Append("ok\r\n", TextKind::Received, colors::black);
    rig.frm.controls.display.txtric.Append("a note\r\n", TextKind::Own, colors::black);
    auto& traffic = *rig.window.findChild<ReceivedTextView*>("txtric");
    traffic.Refresh();
    rig.Find<QPushButton>("cmdTakeTraffic").click();
    QTRY_VERIFY(rig.Find<QLabel>("lblTextTrouble").text().startsWith("no characters"));
    traffic.SelectAll();
    rig.Find<QPushButton>("cmdTakeTraffic").click();
    QCOMPARE(rig.Text("textEdit"), QString("ok{0D}{0A}"));

    QApplication::clipboard()->setText("x\r\ny\t");
    rig.Type(Qt::Key_T, "");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QCOMPARE(rig.Text("hexEdit"), QString("78 0D 0A 79 09 0D"));
    QApplication::clipboard()->setText(QString(70'000, 'x'));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_V, Qt::ControlModifier);
    QTRY_VERIFY(rig.Find<QLabel>("lblTextTrouble").text().endsWith("takes 65536 characters at most"));
    QCOMPARE(rig.Text("hexEdit"), QString("78 0D 0A 79 09 0D"));
    QTest::keyClick(rig.calculator, Qt::Key_Escape);
    QVERIFY(!rig.calculator->isVisible());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::CalculatorWindowTest)
#include "calculator_window_test.moc"
