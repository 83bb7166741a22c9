// SPDX-License-Identifier: GPL-3.0-or-later
// The script editor on the screen, worked by real keys.

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "base/files.h"
#include "script/edit/frm_editor.h"
#include "script/edit/jscript_words.h"
#include "script/jscript/engine.h"
#include "script/script_host.h"
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
    rig.Key(Qt::Key_J, Qt::AltModifier);  // no letter of the window's, and none of the text
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

  void linesAreIndentedByTheirBlocks() {
    struct Case {
      const char* typed;
      const char* expected;
    };
    for (const Case& one : {
             Case{"Sub A\nIf b Then\nc\nElse\nd\nEnd If\nEnd Sub\n",
                  "Sub A\n  If b Then\n    c\n  Else\n    d\n  End If\nEnd Sub\n"},
             Case{"Select Case x\nCase 1\ny\nCase 2 : z\nCase Else\ny\nEnd Select\n",
                  "Select Case x\n  Case 1\n    y\n  Case 2 : z\n  Case Else\n    y\nEnd Select\n"},
             Case{"Do\nFor i = 1 To 3 : Next\nIf a Then b\nnextOne = 1\nLoop While a\nc\n",
                  "Do\n  For i = 1 To 3 : Next\n  If a Then b\n  nextOne = 1\nLoop While a\nc\n"},
             Case{"x = \"Sub\" ' If a Then\nExit Sub\n", "x = \"Sub\" ' If a Then\nExit Sub\n"},
         }) {
      Rig rig("");
      for (const QString& line : QString(one.typed).split('\n', Qt::SkipEmptyParts)) {
        rig.Type(line);
        rig.Key(Qt::Key_Return, Qt::NoModifier);
      }
      QCOMPARE(QString::fromStdString(rig.view->Text()), QString(one.expected));
    }
  }

  void whatFitsIsOffered() {
    Rig rig("Function Doubled(number)\nEnd Function\n");
    rig.Key(Qt::Key_End);
    const auto complete = [&](const QString& typed) {
      rig.Type(typed);
      rig.Key(Qt::Key_Space);
      QVERIFY2(rig.view->isListActive(), qPrintable(typed));
      rig.Key(Qt::Key_Return, Qt::NoModifier);
      rig.Key(Qt::Key_Space, Qt::NoModifier);
    };
    for (const char* typed :
         {"FormMain.txtM", "FrmCommand.TextIO(3).Tex", "Doub", "Err.Num", "vbCrL", "RichApp"}) {
      complete(typed);
    }
    QVERIFY(rig.view->Text().ends_with(
        "FormMain.txtMax FrmCommand.TextIO(3).Text Doubled Err.Number vbCrLf RichAppendText "));
    for (const char* word : {"FormM", "Forma", "SetLo", "Len", "Mid", "ElseI"}) {
      rig.Type(word);
      QVERIFY2(rig.view->isListActive(), word);  // though what was typed so far is a word, too
      rig.view->cancelList();
      rig.Key(Qt::Key_Space, Qt::NoModifier);
    }
    rig.Type("formatNu");
    rig.Key(Qt::Key_Return, Qt::NoModifier);
    QVERIFY(rig.view->Text().ends_with(" FormatNumber"));
    rig.Type(" Mid(");
    QVERIFY(rig.view->SendScintilla(QsciScintilla::SCI_CALLTIPACTIVE) != 0);
    rig.Key(Qt::Key_Return, Qt::NoModifier);
    rig.Type("' a comment Loo");
    QVERIFY(!rig.view->isListActive());
  }

  void everyNameHasItsHelp() {
    Rig rig;
    for (const char* before :
         {"", "Err.", "AppendLog.", "StringReceived.", "TimerTask.", "FormMain.", "FrmCommand.", "txtMax.",
          "CBOSEND.", "lstError.", "Check1.", "Command1.", "Option4(1).", "Label7.", "HScroll1.", "Timer1.",
          "TextIO.", "ShpOutput(1)."}) {
      for (const char* language : {"VBScript", "JScript"}) {
        const auto found = rig.editor.Words.At(language, before, "");
        QVERIFY2(!found.empty(), before);
        for (const Suggestion& one : found) {
          QVERIFY2(one.help.size() > one.name.size() + 2, (before + one.name).c_str());
        }
      }
    }
  }

  void jscriptIsOfferedWhatItsEngineHasAndNothingOfTheOtherLanguage() {
    Rig rig("var pattern = /a/;\n", "bench.js");
    rig.Key(Qt::Key_End);
    std::string asked;
    for (const JscriptWord& word : JscriptWords()) {
      const std::string name(word.name);
      if (word.owner == ".") {
        asked += "if (!['', [], 0, new Date(), /a/].some(function (it) { return Object(it)." + name +
                 " !== undefined; })) throw '" + name + "';\n";
      } else if (!word.owner.empty() || std::isupper(static_cast<unsigned char>(name[0])) != 0) {
        const std::string whole = (word.owner.empty() ? "" : std::string(word.owner) + ".") + name;
        asked += "if (typeof " + whole + " === 'undefined') throw '" + whole + "';\n";
      }
    }
    QVERIFY(!WriteWholeFile(rig.folder / "asked.js", asked));
    rig.frm.Script().RunFile("asked.js");
    rig.loop.Pass(1s);
    QVERIFY2(rig.frm.Script().Runner().Loaded(),
             rig.prompts.shown.empty() ? "" : rig.prompts.shown[0].c_str());

    const auto names = [&](const char* before) {
      std::set<std::string> found;
      for (const Suggestion& one : rig.editor.Words.At("JScript", before, "")) found.insert(one.name);
      return found;
    };
    const auto all = names("");
    QVERIFY(all.contains("parseInt") && all.contains("txtMax") && all.contains("RichAppendText"));
    QVERIFY(!all.contains("Mid") && !all.contains("vbCrLf") && !all.contains("ElseIf") &&
            !all.contains("Sleep"));
    QVERIFY(names("Math.").contains("abs") && names("pattern.").contains("test"));
    QVERIFY(!names("txtMax.").contains("test"));
    QCOMPARE(rig.editor.Words.CallHelp("JScript", "x = Math.abs(", ""), "Math.abs(number): without its sign");
    QCOMPARE(rig.editor.Words.CallHelp("JScript", "text.replace(", "").substr(0, 8), "replace(");
  }

  void allThatIsFoundIsMarkedWhileTheBarIsOpen() {
    Rig rig("cat = 1 ' \xC3\xA4 CAT\nconcat\n");
    const auto marked = [&] {
      QString found;
      for (int i = 0; i < rig.view->length(); ++i) {
        if (rig.view->SendScintilla(QsciScintilla::SCI_INDICATORVALUEAT, 9, i) != 0)
          found += rig.view->text(i, i + 1);
      }
      return found;
    };
    rig.Key(Qt::Key_F);
    rig.Type("cat");
    QCOMPARE(marked(), "catCATcat");
    rig.Key(Qt::Key_Return, Qt::NoModifier);
    rig.view->setFocus();
    rig.Type("x");  // in the place of what was found
    rig.loop.Pass(FrmEditor::checkPause);
    QCOMPARE(marked(), "CATcat");
    rig.Find<QLineEdit>("editorFind").setFocus();
    rig.Key(Qt::Key_Escape, Qt::NoModifier);
    QCOMPARE(marked(), "");
  }

  void anOlderTextThatRunsIsToldWhoeverStartedIt() {
    Rig rig("x = 1\r\n\x1A");  // as old editors end a file
    QVERIFY(!rig.editor.Fault());
    rig.frm.Script().RunFile("bench.vbs");
    QVERIFY(rig.editor.Runs() && !rig.editor.RunsOlder());
    rig.Type("y");
    rig.Key(Qt::Key_S);
    QVERIFY(rig.editor.RunsOlder());
    QVERIFY(rig.Find<QLabel>("editorPlace").text().contains("an older text runs"));
    rig.frm.Script().RunFile("bench.vbs");
    QVERIFY(!rig.editor.RunsOlder());
    rig.frm.Script().StopScript();
  }

  void replaceAllCountsAndUndoTakesItBack() {
    const std::string text = "cat = 1\nCat2 = cat\n' \xC3\xA4 cat\n";
    Rig rig(text);
    rig.Key(Qt::Key_H);
    rig.Type("cat");
    rig.Key(Qt::Key_Tab, Qt::NoModifier);
    rig.Type("dog");
    rig.Find<QCheckBox>("editorFindWord").setChecked(true);
    rig.Find<QPushButton>("editorReplaceAll").click();
    QCOMPARE(rig.view->Text(), std::string("dog = 1\nCat2 = dog\n' \xC3\xA4 dog\n"));
    QVERIFY(rig.Find<QLabel>("editorFindNote").text().startsWith("3 "));
    rig.view->undo();
    QCOMPARE(rig.view->Text(), text);
    rig.Find<QCheckBox>("editorFindExpression").setChecked(true);
    rig.Find<QLineEdit>("editorFind").setText("(\\w+) = (\\w+)");
    rig.Find<QLineEdit>("editorReplace").setText("\\2 = \\1");
    rig.Find<QPushButton>("editorReplaceAll").click();
    QVERIFY(rig.view->Text().starts_with("1 = cat\ncat = Cat2\n"));
  }

  void nothingIsLostWithoutAQuestion() {
    Rig rig;
    rig.Type("y");
    rig.prompts.saveAnswer = SaveAnswer::Cancel;
    rig.Window().close();
    QVERIFY(rig.Window().isVisible() && rig.editor.Modified());
    rig.frm.RequestUnload();
    QVERIFY(!rig.loop.ExitStatus());
    QVERIFY(!WriteWholeFile(rig.folder / "other.vbs", "z = 1\n"));
    rig.frm.controls.script.txtScriptFile.SetText("other.vbs");
    rig.loop.Pass(1s);
    QCOMPARE(rig.editor.FileName(), std::string("bench.vbs"));
    QCOMPARE(rig.prompts.shown.size(), std::size_t{3});
    rig.prompts.saveAnswer = SaveAnswer::Save;
    rig.frm.controls.script.txtScriptFile.SetText("bench.vbs");
    rig.frm.controls.script.txtScriptFile.SetText("other.vbs");
    rig.loop.Pass(1s);
    QCOMPARE(rig.OnDisk(), std::string("yx = 1\n"));
    QCOMPARE(rig.view->Text(), std::string("z = 1\n"));
  }

  void whatCannotBeSavedStaysInTheWindow() {
    Rig rig;
    rig.Type("y");
    std::filesystem::remove_all(rig.folder.Path());
    rig.prompts.saveAnswer = SaveAnswer::Save;
    rig.Window().close();
    QVERIFY(rig.Window().isVisible() && rig.editor.Modified());
    QCOMPARE(rig.prompts.shown.size(), std::size_t{2});
    QVERIFY(rig.prompts.shown[1].find("bench.vbs was not saved: ") != std::string::npos);
    std::filesystem::create_directory(rig.folder.Path());
    rig.Window().close();
    QVERIFY(!rig.Window().isVisible());
    QCOMPARE(rig.OnDisk(), std::string("yx = 1\n"));
  }

  void aFileThatChangedOutsideIsReadAgainIfThatIsWanted() {
    Rig rig;
    rig.Type("y");
    QVERIFY(!WriteWholeFile(rig.file, "x = 2\n"));
    rig.loop.ServeDescriptors();
    rig.loop.Pass(1s);
    QCOMPARE(rig.prompts.shown.size(), std::size_t{1});
    QCOMPARE(rig.view->Text(), std::string("x = 2\n"));
    QVERIFY(!rig.editor.Modified());
    rig.view->undo();
    QCOMPARE(rig.view->Text(), std::string("yx = 1\n"));
  }

  void theScriptRunsFromTheEditorAndItsErrorsLeadToTheirLine() {
    Rig rig("AppendLog.RichAppendText 0, \"hello\" & vbCrLf\nSub ReceiveString()\n  x = 1 / 0\nEnd Sub\n");
    const auto mayStop = [&] {
      return rig.Find<QAction>("actionEditorStop").isEnabled() &&
             rig.Find<QAction>("actionDebugPause").isEnabled();
    };
    QVERIFY(!mayStop());
    rig.Key(Qt::Key_F5, Qt::NoModifier);
    QVERIFY(rig.frm.controls.script.chkEnableScript.Checked() && rig.editor.Runs() && mayStop());
    std::string text = "abc";
    rig.frm.Script().Offer(ScriptHook::ReceiveString, text);
    rig.loop.Pass(1s);
    auto& lines = rig.Find<QListWidget>("scriptOutput");
    QCOMPARE(lines.item(0)->text(), QString("hello"));
    QVERIFY(lines.item(lines.count() - 1)->text().startsWith("ReceiveString, line 3: "));
    emit lines.itemActivated(lines.item(lines.count() - 1));
    int line = 0, column = 0;
    rig.view->getCursorPosition(&line, &column);
    QCOMPARE(line, 2);
    rig.Key(Qt::Key_F5, Qt::ShiftModifier);
    QVERIFY(!rig.frm.controls.script.chkEnableScript.Checked() && !rig.editor.Runs() && !mayStop());
    QVERIFY(rig.prompts.shown.empty());  // the editor shows it: no box, no list
  }

  void theTryRowGivesATextToAHook() {
    Rig rig("Sub ReceiveChar()\n  CharReceived.OutputString = CharReceived.InputString & \"-\"\nEnd Sub\n");
    rig.Find<QComboBox>("tryHook").setCurrentText("ReceiveChar");
    auto& text = rig.Find<QLineEdit>("tryText");
    text.setFocus();
    rig.editor.Start();
    rig.editor.Tell("the script has an error");
    rig.Type("ab{0D}");
    rig.Key(Qt::Key_Return, Qt::NoModifier);
    rig.loop.Pass(1s);
    auto& lines = rig.Find<QListWidget>("scriptOutput");
    QCOMPARE(lines.item(lines.count() - 1)->text(), QString("ReceiveChar: \"ab{0D}\" becomes \"a-b-{0D}-\""));
    QCOMPARE(rig.Find<QLabel>("lblEditorTold").text(), "");
    QVERIFY(rig.editor.Runs());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ScriptEditorTest)
#include "script_editor_test.moc"
