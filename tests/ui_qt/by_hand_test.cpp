// SPDX-License-Identifier: GPL-3.0-or-later
// Keys, pastes, dropped files, quick sends and the history, through the real window to a scripted port.

#include "transmit/by_hand.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QImage>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QUrl>

#include "base/files.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/scripted_device.h"
#include "support/temp_folder.h"
#include "ui/qt/main_window.h"
#include "ui/qt/quick_model.h"
#include "ui/qt/received_text_view.h"

namespace quarlin {
namespace {

struct Rig {
  Rig() {
    WriteInPlace(folder / "Quick.txt",
                 "Read\tREAD\nZero\tZERO\t0\t0\tCtrl+F2\nSecond\tWITH THE SAME KEY\t0\t0\tCtrl+F2\n");
    frm.controls.connection.cboSerial.SetText("COM1");
    frm.Load("");
    frm.controls.connection.cmdOpen.Click();
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    view.setFocus();
  }

  void Terminal(bool on) { frm.controls.link.chkTerminal.SetChecked(on); }
  std::string Wire() {
    loop.Pass(std::chrono::seconds(1));
    std::string wire = port.Written();
    port.ForgetWritten();
    return wire;
  }
  std::string Note() { return frm.controls.status.lblStatusNote.Caption(); }

  TempFolder folder;
  VirtualLoop loop;
  ScriptedDeviceSource ports{loop};
  ScriptedDevice& port = ports.AddPort("COM1");
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{{loop, ProgramFolder(folder.Path()), ports, prompts, opener, [] { return 0.5; }}};
  MainWindow window{frm};
  ReceivedTextView& view = *window.findChild<ReceivedTextView*>("txtric");
  QWidget& frame = *window.findChild<QWidget*>("lineFrame");
  QComboBox& command = *window.findChild<QComboBox*>("CBOSEND");
};

}  // namespace

class ByHandTest : public QObject {
  Q_OBJECT

 private slots:
  void keysGoToTheLineAndTheWindowKeepsItsOwn() {
    Rig rig;
    rig.Terminal(true);
    QVERIFY(rig.frame.isVisible());
    const std::tuple<int, Qt::KeyboardModifiers, std::string> keys[] = {
        {Qt::Key_A, Qt::NoModifier, "a"},
        {Qt::Key_C, Qt::ControlModifier, "\x03"},
        {Qt::Key_S, Qt::ControlModifier, "\x13"},
        {Qt::Key_Return, Qt::NoModifier, "\r\n"},
        {Qt::Key_Tab, Qt::NoModifier, "\t"},
        {Qt::Key_Escape, Qt::NoModifier, "\x1b"},
        {Qt::Key_1, Qt::ControlModifier, "READ\r\n"},
        {Qt::Key_F2, Qt::ControlModifier, "ZERO\r\n"},
        {Qt::Key_Backtab, Qt::ShiftModifier, ""},
    };
    for (const auto& [key, modifiers, wire] : keys) {
      QTest::keyClick(&rig.view, static_cast<Qt::Key>(key), modifiers);
      QCOMPARE(rig.Wire(), wire);
    }
    QVERIFY(!rig.view.hasFocus());
    QVERIFY(!rig.frame.isVisible());
  }

  void whatIsNotForTheLineGoesIntoTheCommandBox() {
    Rig rig;
    QVERIFY(!rig.frame.isVisible());
    QTest::keyClick(&rig.view, Qt::Key_R);
    QVERIFY(rig.command.lineEdit()->hasFocus());
    QCOMPARE(rig.frm.controls.cycle.CBOSEND.Text(), std::string("r"));
    rig.Terminal(true);
    rig.frm.controls.connection.cmdOpen.Click();  // Disconnect
    rig.view.setFocus();
    QVERIFY(!rig.frame.isVisible());
    QGuiApplication::clipboard()->setText("ead");
    QTest::keyClick(&rig.view, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(rig.command.currentText(), QString("read"));
    QVERIFY(rig.Note().starts_with("not connected"));
    QCOMPARE(rig.Wire(), std::string());
  }

  void aClipboardWithoutTextIsSaid() {
    Rig rig;
    rig.Terminal(true);
    QGuiApplication::clipboard()->setImage(QImage(2, 2, QImage::Format_RGB32));
    QTest::keyClick(&rig.view, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(rig.Note(), std::string("there is no text on the clipboard"));
    QGuiApplication::clipboard()->setText("A\nB");
    QTest::keyClick(&rig.view, Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(rig.Wire(), std::string("A\r\nB"));
  }

  void aDroppedFileIsOfferedAndEnterSendsIt() {
    Rig rig;
    WriteInPlace(rig.folder / "f.bin", "12345");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString((rig.folder / "f.bin").string()))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&rig.window, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&rig.window, &drop);
    auto& button = *rig.window.findChild<QPushButton*>("cmdFile");
    QTRY_VERIFY(button.isVisible() && button.hasFocus());
    QCOMPARE(rig.Wire(), std::string());
    QTest::keyClick(&button, Qt::Key_Return);
    QCOMPARE(rig.Wire(), std::string("12345"));
  }

  void upAndDownWalkThroughWhatWasSent() {
    Rig rig;
    for (const char* text : {"ONE", "TWO"}) {
      rig.command.setFocus();
      rig.command.lineEdit()->selectAll();
      QTest::keyClicks(&rig.command, text);
      QTest::keyClick(&rig.command, Qt::Key_Return);
    }
    rig.command.lineEdit()->selectAll();
    QTest::keyClicks(&rig.command, "TYP");
    const std::pair<Qt::Key, const char*> steps[] = {{Qt::Key_Up, "TWO"},
                                                     {Qt::Key_Up, "ONE"},
                                                     {Qt::Key_Up, "ONE"},
                                                     {Qt::Key_Down, "TWO"},
                                                     {Qt::Key_Down, "TYP"}};
    for (const auto& [key, text] : steps) {
      QTest::keyClick(rig.command.lineEdit(), key);
      QCOMPARE(rig.frm.controls.cycle.CBOSEND.Text(), std::string(text));
    }
    rig.loop.Pass(CommandHistory::savePause);
    QCOMPARE(ReadWholeFile(rig.folder / "History.txt").value_or(""), std::string("TWO\nONE\n"));
  }

  void aFieldIsEditedInPlaceAndTheEnterThatEndsItSendsNothing() {
    Rig rig;
    QTest::keyClick(&rig.window, Qt::Key_5, Qt::AltModifier);
    auto& table = *rig.window.findChild<QTableView*>("quickTable");
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, QuickModel::Command));
    rig.Wire();
    QTest::keyClick(&table, Qt::Key_F2);
    auto* editor = table.viewport()->findChild<QLineEdit*>();
    QVERIFY(editor != nullptr);
    editor->setText("WEIGH");
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(rig.frm.Hand().quick.Rows()[0].command, std::string("WEIGH"));
    QCOMPARE(rig.Wire(), std::string());
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_Return);
    QCOMPARE(rig.Wire(), std::string("WEIGH\r\n"));
    QVERIFY(!table.model()->setData(table.model()->index(1, QuickModel::Key), "A", Qt::EditRole));
    QVERIFY(rig.Note().find("could not be typed") != std::string::npos);
  }

  // The next field is open already when the frame comes that shows the one before.
  void tabGoesOnToTheNextFieldAndWhatIsTypedThereStays() {
    Rig rig;
    QTest::keyClick(&rig.window, Qt::Key_5, Qt::AltModifier);
    auto& table = *rig.window.findChild<QTableView*>("quickTable");
    table.setFocus();
    table.setCurrentIndex(table.model()->index(0, QuickModel::Name));
    table.edit(table.currentIndex());
    auto* name = table.viewport()->findChild<QLineEdit*>();
    QTest::keyClicks(name, "Mass");
    QTest::keyClick(name, Qt::Key_Tab);
    auto* command = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    QVERIFY(command != nullptr && command != name);
    QTest::keyClicks(command, "MAS");
    rig.frm.Hand().quick.Set(1, {"Zero", "TARE"});  // and another row changes
    QTRY_COMPARE(table.model()->index(1, QuickModel::Command).data().toString(), QString("TARE"));
    QTest::qWait(100);
    QCOMPARE(QApplication::focusWidget(), command);
    QTest::keyClicks(command, "S");
    QTest::keyClick(command, Qt::Key_Return);
    QCOMPARE(rig.frm.Hand().quick.Rows()[0].name, std::string("Mass"));
    QTRY_COMPARE(rig.frm.Hand().quick.Rows()[0].command, std::string("MASS"));
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ByHandTest)
#include "by_hand_test.moc"
