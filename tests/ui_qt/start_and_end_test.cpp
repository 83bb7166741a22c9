// SPDX-License-Identifier: GPL-3.0-or-later
// What the window keeps from one start to the next, and what it asks before it goes.

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QWheelEvent>

#include "base/files.h"
#include "support/bare_surroundings.h"
#include "support/listed_prompts.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/qt/main_window.h"
#include "ui/qt/received_text_view.h"

namespace quarlin {
namespace {

// One start of the program.
struct Run {
  explicit Run(const TempFolder& folder, std::string_view commandLine = "")
      : frm{{loop, ProgramFolder(folder.Path()), devices, prompts, opener, [] { return 0.5; }}} {
    window.ShowAsLast();
    QCoreApplication::processEvents();
    frm.Load(commandLine);
  }

  // As a click on the close box does it.
  bool Close() {
    window.close();
    loop.Pass(std::chrono::seconds(1));
    return loop.ExitStatus().has_value();
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *window.findChild<Widget*>(name);
  }
  QAction& Action(const char* name) { return Find<QAction>(name); }
  ReceivedTextView& Display() { return Find<ReceivedTextView>("txtric"); }
  std::string FontSize() { return frm.controls.display.lblfontsize.Caption(); }
  std::string Note() { return frm.controls.status.lblStatusNote.Caption(); }

  VirtualLoop loop;
  NoDevices devices;
  ListedPrompts prompts;
  SilentTextOpener opener;
  FrmMain frm;
  MainWindow window{frm};
};

}  // namespace

class StartAndEndTest : public QObject {
  Q_OBJECT

 private slots:
  void theWindowAndItsFontAreKept() {
    const TempFolder folder;
    const auto file = (folder / "scale.cfg").string();
    std::string size;
    {
      Run run(folder);
      QVERIFY(run.window.isMaximized());  // the screen of the test is a small one
      run.Action("actionSidePanel").setChecked(false);
      run.Action("actionHex").trigger();
      run.Find<QTabWidget>("tabs").setCurrentIndex(2);
      run.Action("actionLargerText").trigger();
      run.Action("actionLargerText").trigger();
      size = run.FontSize();
      QVERIFY(run.frm.Configuration().SaveAs(file));
      QVERIFY(run.window.windowTitle().endsWith("scale.cfg"));
      QVERIFY(run.Close());
    }
    Run run(folder);
    QVERIFY(!run.Find<QWidget>("sidePanel").isVisible());
    QVERIFY(run.Display().HexView());
    QCOMPARE(run.Find<QTabWidget>("tabs").currentIndex(), 2);
    QCOMPARE(run.FontSize(), size);
    QCOMPARE(run.Display().font().pointSize(), std::stoi(size));
    QVERIFY(!run.window.windowTitle().contains("scale.cfg"));
    QCOMPARE(run.frm.Configuration().Recent.Files().size(), std::size_t{1});
    run.Action("actionOrdinaryText").trigger();
    QVERIFY(run.FontSize() != size);
  }

  void ctrlAndTheWheelZoomToReadableSizes() {
    const TempFolder folder;
    Run run(folder);
    struct Turn {
      int notches;
      Qt::KeyboardModifiers keys;
      std::string size;
    };
    for (const Turn& turn : {Turn{3, Qt::NoModifier, run.FontSize()}, Turn{500, Qt::ControlModifier, "48"},
                             Turn{-2, Qt::ControlModifier, "46"}, Turn{-500, Qt::ControlModifier, "6"}}) {
      QWheelEvent wheel({5, 5}, run.Display().mapToGlobal(QPointF(5, 5)), {}, {0, turn.notches * 120},
                        Qt::NoButton, turn.keys, Qt::NoScrollPhase, false);
      QCoreApplication::sendEvent(run.Display().viewport(), &wheel);
      QCOMPARE(run.FontSize(), turn.size);
    }
  }

  void aLoadedFontWinsAndOneThatIsNotInstalledIsSaid() {
    const TempFolder folder;
    std::string kept;
    {
      Run run(folder);
      ComboBox& font = run.frm.controls.display.ComboFont;
      QVERIFY(!font.List().empty());
      kept = font.Text();
      font.SetText("Font of another computer");
      QCOMPARE(run.Note(),
               "the font \"Font of another computer\" is not installed; the display uses " + kept);
      run.frm.controls.config.cmdSave[0].Click();
      font.SetText(kept);
      QVERIFY(run.Close());
    }
    QVERIFY(ReadWholeFile(folder / "position.ini")->find("Font=" + kept) != std::string::npos);
    Run run(folder, "LOAD");
    QCOMPARE(run.frm.controls.display.ComboFont.Text(), "Font of another computer");
    QCOMPARE(run.Display().font().family().toStdString(), kept);
  }

  void whatTheUserEditedIsAskedAboutInHerWords() {
    const TempFolder folder;
    Run run(folder);
    run.prompts.saveAnswer = SaveAnswer::Cancel;
    run.Find<QCheckBox>("Check1").click();
    auto& timeOuts = run.Find<QLineEdit>("txtTimeout");
    timeOuts.selectAll();
    QTest::keyClicks(&timeOuts, "9");  // without Enter: closing takes it
    auto& speed = run.Find<QComboBox>("ComboBaud");
    speed.setCurrentIndex(2);
    emit speed.activated(2);
    QVERIFY(!run.Close());
    QCOMPARE(run.prompts.shown.size(), std::size_t{1});
    for (const char* caption : {"Wait Answer", "Baud rate", "Time-outs that stop the run"}) {
      QVERIFY2(run.prompts.shown[0].find(caption) != std::string::npos, run.prompts.shown[0].c_str());
    }
    run.prompts.saveAnswer = SaveAnswer::Save;
    QVERIFY(run.Close());
    QVERIFY(ReadWholeFile(folder / "config.cfg").has_value());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::StartAndEndTest)
#include "start_and_end_test.moc"
