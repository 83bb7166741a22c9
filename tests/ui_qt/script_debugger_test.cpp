// SPDX-License-Identifier: GPL-3.0-or-later
// The debugger in the editor's window, worked by real keys: a script that stands in the middle of a test over
// a real socket, and a test that goes on afterwards as if nothing had been.

#include <poll.h>
#include <sys/socket.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QTreeWidget>
#include <atomic>
#include <thread>

#include "base/files.h"
#include "base/scope_flag.h"
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
  explicit Rig(std::string_view text = script) {
    QVERIFY(!WriteWholeFile(file, text));
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

  // Does `work`; at each stand meanwhile the next of these is done, from within the stand. They must all
  // come.
  void Do(std::vector<std::function<void()>> atStands, const std::function<void()>& work,
          const std::function<bool()>& end) {
    QTimer look;
    std::size_t next = 0;
    bool acts = false;
    QObject::connect(&look, &QTimer::timeout, editor, [&] {
      if (QTest::currentTestFailed()) return frm.Script().StopScript();
      if (acts || StandsAt() == 0 || next >= atStands.size()) return;
      const ScopeFlag acting(acts);
      atStands[next++]();
    });
    look.start(10);
    work();
    QTRY_VERIFY_WITH_TIMEOUT(next == atStands.size() && end(), 30000);
  }

  // Runs the test until `end`.
  void Run(std::vector<std::function<void()>> atStands, const std::function<bool()>& end) {
    Do(
        std::move(atStands),
        [this] {
          frm.controls.connection.cmdOpen.Click();
          QTRY_VERIFY(frm.LinkOpen());
          frm.controls.script.chkEnableScript.SetChecked(true);
          frm.controls.run.Command1.Click();
        },
        end);
  }

  // Starts the script by its key, which returns when its top level has.
  void Start(std::vector<std::function<void()>> atStands, const std::function<bool()>& end) {
    Do(
        std::move(atStands), [this] { Key(Qt::Key_F5); }, end);
  }

  template <class Widget>
  Widget& Find(const char* name) {
    return *editor->findChild<Widget*>(name);
  }
  bool Runs() { return frm.Script().Runner().Loaded(); }

  // The value of a variable in the tree.
  QString Shown(const char* name) {
    const auto found =
        Find<QTreeWidget>("debugValues").findItems(name, Qt::MatchExactly | Qt::MatchRecursive, 0);
    return found.isEmpty() ? QString("(not there)") : found.front()->text(1);
  }
  static void Enter(QLineEdit& line, const char* text) {
    line.selectAll();
    QTest::keyClicks(&line, text);
    QTest::keyClick(&line, Qt::Key_Return);
  }
  void SetCondition(const char* condition) {
    Key(Qt::Key_F9, Qt::ControlModifier);
    // One that was answered goes only when the script does not stand any more.
    const auto dialogs = editor->findChildren<QWidget*>("conditionDialog");
    Enter(*dialogs.back()->findChild<QLineEdit*>(), condition);
  }
  void MoveMouse(int line, int column) {
    const auto position = view->SendScintilla(QsciScintilla::SCI_FINDCOLUMN, line - 1, long{column});
    const auto at = [&](unsigned int message) {
      return static_cast<int>(view->SendScintilla(message, 0L, position));
    };
    const QPoint place(at(QsciScintilla::SCI_POINTXFROMPOSITION) + 2,
                       at(QsciScintilla::SCI_POINTYFROMPOSITION) + 4);
    QMouseEvent event(QEvent::MouseMove, place, view->mapToGlobal(place), Qt::NoButton, {}, {});
    QApplication::sendEvent(view->viewport(), &event);
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
               QCOMPARE(inMainWindow(), "waits at line 4 of bench.vbs (F8)");
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
               auto& calls = rig.Find<QListWidget>("debugCalls");
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
    QVERIFY(inMainWindow() != "waits at line 6 of bench.vbs (F8)");
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

  void aScriptThatNeverYieldsIsPausedByItsKey() {
    Rig rig("n = 1\nDo\n  n = n + 1\nLoop\n");
    QTimer press;
    press.setSingleShot(true);
    QObject::connect(&press, &QTimer::timeout, rig.editor,
                     [&] { rig.Key(Qt::Key_F5, Qt::ControlModifier | Qt::ShiftModifier); });
    press.start(1);
    rig.Start({[&] {
                 QVERIFY(rig.StandsAt() >= 3);
                 QVERIFY(rig.Shown("n").toInt() > 1);
                 rig.Key(Qt::Key_F5);
                 press.start(1);
               },
               [&] { rig.Key(Qt::Key_F5, Qt::ShiftModifier); }},
              [&] { return !rig.Runs(); });
    QVERIFY(rig.prompts.shown.empty());
  }

  void everyKeyOfTheDebuggerDoesItsPart() {
    Rig rig(
        "For i = 1 To 5\n  sum = sum + Squared(i)\nNext\nx = 1 \\ 0\n"
        "Function Squared(n)\n  Squared = n * n\nEnd Function\n");
    rig.Find<QComboBox>("debugErrors").setCurrentIndex(1);
    rig.view->GoTo(2, 0);
    rig.SetCondition("i = nobody");
    rig.Start({[&] {
                 QVERIFY(rig.Find<QLabel>("debugState").text().contains("nobody"));
                 rig.SetCondition("i = 3");
                 rig.Key(Qt::Key_F5);
               },
               [&] {
                 QCOMPARE(rig.Shown("sum"), "5");
                 rig.Enter(rig.Find<QLineEdit>("debugWatch"), "Squared(i) + sum");
                 QCOMPARE(rig.Shown("Squared(i) + sum"), "14");
                 rig.MoveMouse(2, 3);
                 QTRY_COMPARE(QToolTip::text(), "sum = 5");
                 rig.view->GoTo(6, 0);
                 rig.Key(Qt::Key_F10, Qt::ControlModifier);
               },
               [&] {
                 QCOMPARE(rig.StandsAt(), 6);
                 QCOMPARE(rig.Shown("n"), "3");
                 rig.Key(Qt::Key_F11, Qt::ShiftModifier);
               },
               [&] {
                 QCOMPARE(rig.StandsAt(), 3);
                 QCOMPARE(rig.Shown("sum"), "14");
                 rig.Key(Qt::Key_F5);
               },
               [&] {
                 QCOMPARE(rig.StandsAt(), 4);
                 QVERIFY(rig.Find<QLabel>("debugState").text().contains("Division by zero"));
                 QCOMPARE(rig.Shown("sum"), "55");
                 QTest::keyClicks(rig.view, "= ");
                 QTRY_COMPARE(rig.Find<QLabel>("lblEditorFault").text().left(7), "line 4:");
                 rig.Key(Qt::Key_F5, Qt::ShiftModifier);
               }},
              [&] { return !rig.Runs(); });
    QVERIFY(rig.prompts.shown.empty());
  }

  void whateverEndsWhileItStandsEndsInOrder() {
    struct Case {
      const char* what;
      std::function<void(Rig& rig)> done;
      bool runs;          // afterwards
      std::size_t asked;  // questions and boxes
    };
    const std::vector<Case> cases{
        {"the editor closes", [](Rig& rig) { rig.editor->close(); }, true, 0},
        {"the editor opens another file",
         [](Rig& rig) {
           rig.frm.Editor().New("VBScript");
           QVERIFY(rig.StandsAt() == 2 && rig.Find<QLabel>("debugState").text().contains("bench.vbs"));
           rig.Find<QListWidget>("debugCalls").setCurrentRow(1);
           QCOMPARE(rig.frm.Editor().FileName(), "bench.vbs");
           rig.Key(Qt::Key_F5);
         },
         true, 0},
        {"Restart", [](Rig& rig) { rig.Key(Qt::Key_F5, Qt::ControlModifier); }, true, 0},
        {"the program's window closes",
         [](Rig& rig) {
           rig.Key(Qt::Key_Space);  // not saved
           rig.window.close();
         },
         false, 1},
    };
    for (const Case& each : cases) {
      Rig rig("Sub SendString\n  n = 1\nEnd Sub\nCall Deeper(1)\nSub Deeper(x): SendString: End Sub\n");
      rig.prompts.saveAnswer = SaveAnswer::Discard;
      rig.BreakAt(2);
      rig.Start({[&] {
                  rig.BreakAt(2);  // once only
                  each.done(rig);
                }},
                [&] { return rig.StandsAt() == 0 && rig.Runs() == each.runs; });
      QVERIFY2(rig.prompts.shown.size() == each.asked, each.what);
      rig.frm.controls.script.chkEnableScript.SetChecked(false);
    }
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ScriptDebuggerTest)
#include "script_debugger_test.moc"
