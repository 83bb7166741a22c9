// SPDX-License-Identifier: GPL-3.0-or-later
// The debugger in the editor's window, worked by real keys: a script that stands in the middle of a test over
// a real socket, and a test that goes on afterwards as if nothing had been.

#include <poll.h>
#include <sys/socket.h>

#include <QLabel>
#include <QListWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>
#include <atomic>
#include <thread>

#include "base/files.h"
#include "link/posix_device.h"
#include "script/edit/frm_editor.h"
#include "script/vbscript_engine.h"
#include "support/bare_surroundings.h"
#include "support/free_port.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "ui/editor/script_view.h"
#include "ui/qt/editor_window.h"
#include "ui/qt/main_window.h"
#include "ui/qt/qt_loop.h"

namespace quarlin {
namespace {

constexpr const char* script = R"(Dim answers
Sub ReceiveString
  Dim text
  text = StringReceived.InputString
  answers = answers + Len(Checked(text))
  StringReceived.OutputString = text
  FrmCommand.txtOutput.Text = answers
End Sub
Function Checked(value)
  Checked = value
End Function
)";

// Answers each line, the first one with much more than any buffer of the program holds behind it.
class Instrument {
 public:
  Instrument() : server_(Socket::Make(AF_INET, SOCK_STREAM)), port(FreePort()) {
    const SocketAddress address = SocketAddress::Any(AF_INET, std::stoi(port));
    if (bind(server_.Get(), address.Pointer(), address.length) != 0 || listen(server_.Get(), 1) != 0) {
      throw std::runtime_error("no port");
    }
    talk_ = std::thread([this] { Talk(); });
  }
  ~Instrument() {
    shutdown(server_.Get(), SHUT_RDWR);
    talk_.join();
  }

  std::size_t Sent() const { return sent_; }

 private:
  void Talk() {
    pollfd called{server_.Get(), POLLIN, 0};
    poll(&called, 1, -1);
    const int peer = accept(server_.Get(), nullptr, nullptr);
    char character = 0;
    for (bool first = true; recv(peer, &character, 1, 0) == 1;) {
      if (character != '\r') continue;
      std::string answer = "12.5\r\n";
      if (first) answer.append(400'000, '7');
      first = false;
      sent_ += answer.size();
      for (std::size_t sent = 0; sent < answer.size();) {
        const ssize_t took = send(peer, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (took <= 0) break;
        sent += static_cast<std::size_t>(took);
      }
    }
    close(peer);
  }

  Socket server_;
  std::thread talk_;
  std::atomic<std::size_t> sent_ = 0;

 public:
  const std::string port;
};

struct Rig {
  Rig() {
    QVERIFY(!WriteWholeFile(file, script));
    frm.Load("");
    FrmMainControls& controls = frm.controls;
    controls.connection.cboSerial.SetText("NET");
    controls.connection.txtPort.SetText(instrument.port);
    controls.cycle.CBOSEND.SetText("READ");
    controls.run.txtInterval.SetText("1");
    controls.run.Check1.SetChecked(true);
    controls.run.txtAnswerTime.SetText("5000");
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    controls.script.txtScriptFile.SetText("bench.vbs");
    frm.Script().List().OnModal = nullptr;
    frm.Script().List().OnModal = [this] {
      frm.Script().List().controls.lstScript.SetListIndex(0);
      frm.Script().List().controls.cmdSelect.Click();
    };
    QTest::keyClick(&window, Qt::Key_F8);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* found = qobject_cast<EditorWindow*>(widget)) editor = found;
    }
    QVERIFY(editor != nullptr && QTest::qWaitForWindowActive(editor));
    view = &editor->View();
  }

  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(view, key, modifiers);
  }
  void BreakAt(int line) {
    view->GoTo(line, 0);
    Key(Qt::Key_F9);
  }

  // Runs the test until `end`; at each stand the next of these is done, from within the stand.
  void Run(std::vector<std::function<void()>> atStands, const std::function<bool()>& end) {
    QTimer look;
    std::size_t next = 0;
    int stood = 0;
    QObject::connect(&look, &QTimer::timeout, editor, [&] {
      if (!frm.Editor().Debugger().Stands()) {
        stood = 0;
      } else if (++stood == 1 && next < atStands.size()) {
        atStands[next++]();
        stood = 0;  // a step may have led to the next stand already
      }
    });
    look.start(10);
    frm.controls.connection.cmdOpen.Click();
    QTRY_VERIFY(frm.LinkOpen());
    frm.controls.script.chkEnableScript.SetChecked(true);
    frm.controls.run.Command1.Click();
    QTRY_VERIFY_WITH_TIMEOUT(next == atStands.size() && end(), 30000);
  }

  // The value of a variable in the tree.
  QString Shown(const char* name) {
    const auto found = editor->findChild<QTreeWidget*>("debugValues")
                           ->findItems(name, Qt::MatchExactly | Qt::MatchRecursive, 0);
    return found.isEmpty() ? QString("(not there)") : found.front()->text(1);
  }
  int StandsAt() { return frm.Editor().Debugger().Stands() ? frm.Editor().Debugger().Place().line : 0; }

  TempFolder folder;
  std::filesystem::path file = folder / "bench.vbs";
  Instrument instrument;
  QtLoop loop;
  PosixDeviceSource devices{loop};
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{
      {loop, ProgramFolder(folder.Path()), devices, prompts, opener, [] { return 0.5; }, false,
       [](std::string_view, vbs::Services& services) { return std::make_unique<VbscriptEngine>(services); }}};
  MainWindow window{frm};
  EditorWindow* editor = nullptr;
  ScriptView* view = nullptr;
};

}  // namespace

class ScriptDebuggerTest : public QObject {
  Q_OBJECT

 private slots:
  void aTestGoesOnAfterAStandAsIfNothingHadBeen() {
    Rig rig;
    rig.BreakAt(3);  // a declaration: the mark goes to the next line that does something
    const auto inMainWindow = [&] {
      return QString::fromStdString(rig.frm.controls.status.lblStatusCycle.Caption());
    };
    rig.Run({[&] {
               QCOMPARE(rig.StandsAt(), 4);
               QCOMPARE(inMainWindow(), "the script stands at line 4 of bench.vbs; the test waits");
               QVERIFY(rig.editor->windowTitle().contains("stands at line 4"));
               QCOMPARE(rig.Shown("text"), "Empty");
               QTest::qWait(500);  // while the flood comes
               rig.Key(Qt::Key_F10);
             },
             [&] {
               QCOMPARE(rig.StandsAt(), 5);
               QVERIFY(rig.Shown("text").startsWith("\"12.5"));
               rig.Key(Qt::Key_F11);
             },
             [&] {
               QCOMPARE(rig.StandsAt(), 10);
               auto& calls = *rig.editor->findChild<QListWidget*>("debugCalls");
               QCOMPARE(calls.count(), 2);
               QCOMPARE(calls.item(1)->text(), "ReceiveString, line 5");
               calls.setCurrentRow(1);
               QVERIFY(rig.Shown("text").startsWith("\"12.5"));
               rig.Key(Qt::Key_F11, Qt::ShiftModifier);
             },
             [&] {
               QCOMPARE(rig.StandsAt(), 6);
               QVERIFY(rig.Shown("answers").toInt() >= 6);
               rig.BreakAt(4);  // away with it
               rig.Key(Qt::Key_F5);
             }},
            [&] { return rig.instrument.Sent() > 400'100; });
    rig.frm.controls.run.Command1.Click();
    const auto arrived = [&] { return rig.frm.Script().Panel().controls.txtOutput.Text(); };
    QTRY_COMPARE(arrived(), std::to_string(rig.instrument.Sent()));
    QCOMPARE(rig.frm.controls.counters.lblerror.Integer(), 0);
    QCOMPARE(rig.frm.controls.script.lblScriptErrors.Integer(), 0);
    QVERIFY(inMainWindow() != "the script stands at line 6 of bench.vbs; the test waits");
  }

  void breakpointsMoveWithTheirLinesAndSurviveARestart() {
    Rig rig;
    rig.BreakAt(10);
    rig.view->GoTo(1, 0);
    rig.Key(Qt::Key_Return);
    rig.Key(Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(rig.frm.Editor().Debugger().BreakpointsOf(rig.file), (std::vector<Breakpoint>{{11, u""}}));
    rig.Run({[&] {
              QCOMPARE(rig.StandsAt(), 11);
              QVERIFY(rig.Shown("value").startsWith("\"12.5"));
              rig.frm.controls.script.chkEnableScript.SetChecked(false);  // ends it where it stands
            }},
            [&] { return rig.StandsAt() == 0; });
    QVERIFY(!rig.frm.controls.script.chkEnableScript.Checked());
    QCOMPARE(rig.prompts.shown.size(), std::size_t{0});
    rig.frm.controls.run.Command1.Click();
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ScriptDebuggerTest)
#include "script_debugger_test.moc"
