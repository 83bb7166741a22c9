// SPDX-License-Identifier: GPL-3.0-or-later
// The first start in a real window, with the simulated instrument as it is installed.

#include <signal.h>

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "base/files.h"
#include "link/posix_device.h"
#include "script/script_host.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_loop.h"

namespace quarlin {
namespace {

struct Start {
  explicit Start(const TempFolder& folder, const Bundle& bundle, std::string_view commandLine = "")
      : frm{{loop,
             ProgramFolder(folder.Path()),
             devices,
             prompts,
             opener,
             [] { return 0.5; },
             false,
             {},
             bundle}} {
    window.resize(1024, 680);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    frm.Load(commandLine);
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *window.findChild<Widget*>(name);
  }
  bool Offers() { return Find<QWidget>("welcomeStrip").isVisible(); }
  std::string Note() { return frm.controls.status.lblStatusNote.Caption(); }
  std::string Port() { return frm.controls.connection.cboSerial.Text(); }

  QtLoop loop;
  PosixDeviceSource devices{loop};
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm;
  MainWindow window{frm};
};

// What comes with the program, and a place for what nobody keeps.
struct Installed {
  Installed() {
    WriteInPlace(bundle.instrument, "#!/bin/sh\necho $$ > '" + (folder / "number").string() + "'\nexec '" +
                                        BIN_FOLDER + "/quarlin-instrument' \"$@\"\n");
    std::filesystem::permissions(bundle.instrument, std::filesystem::perms::owner_all);
    std::filesystem::create_directory(bundle.scratch);
    std::filesystem::create_directories(bundle.examples / "scripts");
    WriteInPlace(bundle.examples / "Command.txt", "SN\nREAD\n");
    WriteInPlace(bundle.examples / "scripts" / "first.vbs", "");
    std::string record = "txtlenrx";
    record.resize(20, ' ');
    record += "21";
    record.resize(122, ' ');
    WriteInPlace(bundle.examples / "config.cfg", record);
  }

  pid_t Instrument() const { return std::stoi(ReadWholeFile(folder / "number").value_or("0")); }
  bool InstrumentRuns() const { return kill(Instrument(), 0) == 0; }

  TempFolder folder;
  Bundle bundle{folder / "demo", folder / "instrument", folder / "scratch"};
};

}  // namespace

class WelcomeTest : public QObject {
  Q_OBJECT

 private slots:
  void aTryWithoutAnInstrumentLeavesNothingBehind() {
    const TempFolder folder;
    const Installed installed;
    Start start(folder, installed.bundle);
    QVERIFY(start.Offers());
    auto& copy = start.Find<QPushButton>("copyExamplesButton");
    QVERIFY(copy.hasFocus());
    QTest::keyClick(&copy, Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!start.Offers());
    QTRY_VERIFY(start.frm.LinkOpen());
    QVERIFY2(start.Note().ends_with("Enter sends READ once, Start (F5) sends it every 500 ms"),
             start.Note().c_str());

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QTRY_COMPARE(start.frm.controls.counters.Label7.Caption(), "1");
    QVERIFY(start.frm.Configuration().Save());
    const std::string saved = ReadWholeFile(folder / "config.cfg").value_or("");
    QVERIFY(saved.find("COM1") != std::string::npos);
    QVERIFY(saved.find("quarlin-instrument") == std::string::npos);

    auto& tryAction = start.Find<QAction>("actionTry");
    QVERIFY(tryAction.isChecked());
    tryAction.trigger();
    QVERIFY(!tryAction.isChecked());
    QVERIFY(!start.frm.LinkOpen());
    QCOMPARE(start.Port(), "COM1");
    QTRY_VERIFY(!installed.InstrumentRuns());
    QVERIFY(std::filesystem::is_empty(installed.bundle.scratch));
  }

  void anInstrumentThatDiesIsToldAndOneThatLivesEndsWithTheProgram() {
    const TempFolder folder;
    const Installed installed;
    {
      Start start(folder, installed.bundle);
      auto& tryAction = start.Find<QAction>("actionTry");
      auto& connection = start.frm.controls.connection;
      start.frm.controls.receive.Option4[static_cast<std::size_t>(RxEnd::ManualChar)].SetValue(true);
      start.frm.controls.link.txtterm.SetText("000");
      for (const bool reconnects : {false, true}) {  // nobody waits for this one, nor misses it
        connection.chkReconnect.SetChecked(reconnects);
        tryAction.trigger();
        QTRY_VERIFY(start.frm.LinkOpen());
        kill(installed.Instrument(), SIGKILL);
        QTRY_COMPARE(start.Note(), "the simulated instrument has gone: it ended by itself");
        QVERIFY(!tryAction.isChecked());
        QCOMPARE(connection.cmdOpen.Caption(), "Connect");
        QCOMPARE(start.Port(), "COM1");
        QCOMPARE(start.frm.controls.link.txtterm.Text(), "000");
        QVERIFY(!connection.cboSerial.BackColor());
      }
      tryAction.trigger();
      QTRY_VERIFY(start.frm.LinkOpen());
      QVERIFY(installed.InstrumentRuns());
    }
    QVERIFY(!installed.InstrumentRuns());
    QVERIFY(std::filesystem::is_empty(installed.bundle.scratch));
  }

  void anOpenLinkIsLeftAlone() {
    const TempFolder folder;
    const Installed installed;
    Start start(folder, installed.bundle);
    auto& connection = start.frm.controls.connection;
    connection.cboSerial.SetText("NET");
    connection.chkUDP.SetChecked(true);
    connection.cmdOpen.Click();
    QVERIFY(start.frm.LinkOpen());
    start.Find<QAction>("actionTry").trigger();
    QCOMPARE(start.Note(),
             "UDP 127.0.0.1:4001 is in use: disconnect first, then the simulated instrument can be tried");
    QVERIFY(!start.Find<QAction>("actionTry").isChecked());
    QVERIFY(start.frm.LinkOpen());
  }

  void theExamplesAreTakenUpAndTheOfferDoesNotComeBack() {
    const TempFolder folder;
    const Installed installed;
    {
      Start start(folder, installed.bundle);
      start.Find<QPushButton>("copyExamplesButton").click();
      QVERIFY(!start.Offers());
      QCOMPARE(start.frm.controls.receive.txtlenrx.Text(), "21");
      QCOMPARE(start.frm.controls.cycle.CBOSEND.List().front(), "SN");
      QCOMPARE(start.frm.Script().List().controls.lstScript.ListCount(), 1);
      QVERIFY(!start.frm.LinkOpen());
    }
    Start again(folder, installed.bundle);
    QVERIFY(!again.Offers());
  }

  void nothingIsOfferedUnasked_data() {
    QTest::addColumn<QString>("words");
    QTest::addColumn<bool>("installed");
    QTest::newRow("there is a command line") << "LOGPAR" << true;
    QTest::newRow("nothing is installed") << "" << false;
  }

  void nothingIsOfferedUnasked() {
    QFETCH(QString, words);
    QFETCH(bool, installed);
    const TempFolder folder;
    const Installed complete;
    Start start(folder, installed ? complete.bundle : Bundle{"/nowhere/demo", "/nowhere/instrument", "/tmp"},
                words.toStdString());
    QVERIFY(!start.Offers());
    start.Find<QMenu>("menuHelp").popup({});
    for (const char* name : {"actionTry", "actionCopyExamples"}) {
      QCOMPARE(start.Find<QAction>(name).isEnabled(), installed);
      QCOMPARE(start.Find<QAction>(name).toolTip().contains("/nowhere/"), !installed);
    }
    start.Find<QMenu>("menuHelp").hide();
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::WelcomeTest)
#include "welcome_test.moc"
