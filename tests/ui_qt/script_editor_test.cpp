// SPDX-License-Identifier: GPL-3.0-or-later
// The script editor on the screen, worked by real keys.

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "base/files.h"
#include "script/edit/frm_editor.h"
#include "script/jscript/engine.h"
#include "script/vbscript_engine.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/editor/script_view.h"
#include "ui/qt/editor_window.h"
#include "ui/qt/main_window.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

std::unique_ptr<ScriptEngine> MakeEngine(std::string_view language, vbs::Services& services) {
  if (language == "VBScript") return std::make_unique<VbscriptEngine>(services);
  return std::make_unique<jscript::Engine>(services);
}

struct Rig {
  explicit Rig(std::string_view script = "x = 1\n", const std::string& name = "bench.vbs")
      : file(folder / name) {
    QVERIFY(!WriteWholeFile(file, script));
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    frm.controls.script.txtScriptFile.SetText(name);
    QTest::keyClick(&window, Qt::Key_F8);
    QVERIFY(QTest::qWaitForWindowActive(&Window()));
    view = Window().findChild<ScriptView*>("scriptText");
    view->setFocus();
  }

  EditorWindow& Window() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* found = qobject_cast<EditorWindow*>(widget)) return *found;
    }
    throw std::logic_error("no editor window");
  }
  template <typename Widget>
  Widget& Find(const char* name) {
    return *Window().findChild<Widget*>(name);
  }
  void Key(int key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  std::string OnDisk() { return ReadWholeFile(file).value_or("?"); }

  TempFolder folder;
  std::filesystem::path file;
  VirtualLoop loop;
  NoDevices devices;
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm{
      {loop, ProgramFolder(folder.Path()), devices, prompts, opener, [] { return 0.5; }, false, MakeEngine}};
  MainWindow window{frm};
  FrmEditor& editor = frm.Editor();
  ScriptView* view = nullptr;
};

}  // namespace

class ScriptEditorTest : public QObject {
  Q_OBJECT

 private slots:
  void whatIsTypedIsCheckedAMomentLaterAndSaved() {
    Rig rig;
    rig.Key(Qt::Key_End);
    rig.Type("If y");
    QVERIFY(!rig.editor.Fault());  // not while somebody types
    rig.loop.Pass(FrmEditor::checkPause);
    QVERIFY(rig.editor.Fault());
    QCOMPARE(rig.editor.Fault()->place.line, 2);
    const auto squiggle = [&] {
      return rig.view->SendScintilla(QsciScintilla::SCI_INDICATORVALUEAT, 8, rig.view->length() - 1) != 0;
    };
    QVERIFY(squiggle());
    QTRY_VERIFY(rig.Find<QLabel>("lblEditorFault").text().startsWith("line 2: "));
    rig.Type(" Then z = 2");
    rig.loop.Pass(FrmEditor::checkPause);
    QVERIFY(!rig.editor.Fault() && !squiggle());
    QVERIFY(rig.Window().windowTitle().startsWith("bench.vbs*"));
    rig.Key(Qt::Key_S);
    QCOMPARE(rig.OnDisk(), std::string("x = 1\nIf y Then z = 2"));
    QVERIFY(rig.Window().windowTitle().startsWith("bench.vbs -"));
  }

  void encodingsAndLineEndsStayAsTheyWere() {
    for (const std::string& text : std::vector<std::string>{"a = 1\r\n' \xE4\r\n",
                                                            "\xEF\xBB\xBF"
                                                            "a = 1\r' \xC3\xA4\r",
                                                            std::string("\xFF\xFE"
                                                                        "a\0=\0"
                                                                        "1\0\n\0\xAC\x20",
                                                                        12),
                                                            "' \xC3\xA4\r\nb = 2\nc = 3\r"}) {
      Rig rig(text);
      rig.Key(Qt::Key_Space, Qt::NoModifier);
      rig.Key(Qt::Key_Z);
      rig.Key(Qt::Key_Space, Qt::NoModifier);
      rig.Key(Qt::Key_Backspace, Qt::NoModifier);
      rig.Key(Qt::Key_S);
      QCOMPARE(rig.OnDisk(), text);
    }
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ScriptEditorTest)
#include "script_editor_test.moc"
