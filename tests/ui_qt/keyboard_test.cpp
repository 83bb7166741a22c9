// SPDX-License-Identifier: GPL-3.0-or-later
// A whole test by keyboard alone, on a real pseudo-terminal: connect, send a command, take its answer as the
// expected one, run, look at the errors, save, quit.
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QTest>

#include "base/files.h"
#include "link/posix_device.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_loop.h"

namespace quarlin {
namespace {

// Answers each line with a weight; with the wrong one where `wrong` says so.
class Scale {
 public:
  Scale() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK)), watch_(master_, QSocketNotifier::Read) {
    grantpt(master_);
    unlockpt(master_);
    holdOpen_ = open(ptsname(master_), O_RDWR | O_NOCTTY);  // else the terminal hangs up between two clients
    QObject::connect(&watch_, &QSocketNotifier::activated, [this] { Answer(); });
  }
  ~Scale() {
    watch_.setEnabled(false);
    close(holdOpen_);
    close(master_);
  }
  QString Port() const { return ptsname(master_); }

  int wrong = -1;  // the number of the request, from 0

 private:
  void Answer() {
    char bytes[256];
    const ssize_t count = read(master_, bytes, sizeof bytes);
    for (ssize_t i = 0; i < count; ++i) {
      if (bytes[i] != '\n') continue;
      const std::string_view answer = answered_++ == wrong ? "13.0 kg\r\n" : "12.5 kg\r\n";
      QCOMPARE(write(master_, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
    }
  }

  int master_;
  int holdOpen_;
  int answered_ = 0;
  QSocketNotifier watch_;
};

void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
}

void Type(const QString& text) {
  Press(Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), text);
}

// Goes on with Tab until the widget of that name has the keyboard.
void TabTo(const char* name) {
  for (int i = 0; i < 100 && QApplication::focusWidget()->objectName() != name; ++i) Press(Qt::Key_Tab);
  QCOMPARE(QApplication::focusWidget()->objectName(), QString(name));
}

}  // namespace

class KeyboardTest : public QObject {
  Q_OBJECT

 private slots:
  void aWholeTest() {
    TempFolder folder;
    QtLoop loop;
    PosixDeviceSource devices(loop);
    ListedPrompts prompts;
    SilentTextOpener opener;
    Scale scale;
    FrmMain frm{{loop, ProgramFolder(folder.Path()), devices, prompts, opener, [] { return 0.5; }}};
    MainWindow window{frm};
    frm.Load("");
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto text = [&](const char* name) { return window.findChild<QLabel*>(name)->text(); };

    TabTo("cboSerial");
    Type(scale.Port());
    Press(Qt::Key_Return);
    QTRY_VERIFY(frm.LinkOpen());
    QTRY_COMPARE(QApplication::focusWidget()->objectName(), QString("CBOSEND"));

    // Sent again, a command moves to the front of the list below the box, and stays in the box.
    for (const char* command : {"READ", "ZERO", "READ"}) {
      const int answers = text("Label7").toInt();
      Type(command);
      Press(Qt::Key_Return);
      QTRY_COMPARE(text("Label7").toInt(), answers + 1);
      QCOMPARE(frm.controls.cycle.CBOSEND.Text(), std::string(command));
    }

    Press(Qt::Key_1, Qt::AltModifier);
    TabTo("Check1");
    Press(Qt::Key_Space);
    TabTo("txtAnswerTime");
    Type("5000");
    TabTo("Check2");
    Press(Qt::Key_Space);
    TabTo("Text1");
    Type("20");
    Press(Qt::Key_4, Qt::AltModifier);
    TabTo("chkSame");
    Press(Qt::Key_Space);
    TabTo("txtInterval");
    Type("1");

    scale.wrong = 7;
    Press(Qt::Key_F5);
    QTRY_VERIFY(!frm.Running() &&
                text("Label7") == "20");  // good answers are counted, so one more is asked for
    QCOMPARE(text("lblsend"), QString("21"));
    QCOMPARE(text("lblErrStr"), QString("1"));

    Press(Qt::Key_F7);
    QTRY_VERIFY(window.findChild<QWidget*>("lstError")->isVisible());
    Press(Qt::Key_R, Qt::ControlModifier);
    QVERIFY(ReadWholeFile(folder / "Report.txt").has_value());
    Press(Qt::Key_S, Qt::ControlModifier);
    QVERIFY(ReadWholeFile(folder / "config.cfg").has_value());
    QVERIFY(prompts.shown.empty());

    loop.Post([&] { Press(Qt::Key_Q, Qt::ControlModifier); });
    QCOMPARE(loop.Run(), 1);  // there was an error
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::KeyboardTest)
#include "keyboard_test.moc"
