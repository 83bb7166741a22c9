// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/traffic_panel.h"

#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <memory>

#include "base/files.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"
#include "ui/qt/find_box.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

struct PanelRig {
  PanelRig() {
    loop.SetLocal(std::chrono::local_days(std::chrono::year(2026) / 2 / 3) + 19h);
    for (int i = 0; i < 17; ++i) {
      display.txtric.Append("\x02weight " + std::to_string(i) + "\r\n", TextKind::Received, colors::black);
      loop.Pass(1s);
    }
    panel.resize(900, 400);
    panel.View().Show(display.txtric);
    panel.show();
  }

  template <typename Part>
  Part& Find(const char* name) {
    return *panel.findChild<Part*>(name);
  }
  FindBox& Box() { return Find<FindBox>("findText"); }
  void Press(const char* action) { Find<QAction>(action).trigger(); }

  VirtualLoop loop;
  DisplayControls display{loop};
  TrafficPanel panel;
};

}  // namespace

class TrafficPanelTest : public QObject {
  Q_OBJECT

  std::unique_ptr<PanelRig> rig;

 private slots:
  void init() { rig = std::make_unique<PanelRig>(); }
  void cleanup() { rig.reset(); }

  void countsWhatItFindsAndTellsWhatIsWrong() {
    struct Step {
      const char* text;
      const char* press;  // an action, if any
      const char* note;
      const char* error;  // its beginning
    };
    const Step steps[] = {
        {"WEIGHT", nullptr, "0/17", ""},
        {"WEIGHT", "actionFindNext", "1/17", ""},
        {"WEIGHT", "actionFindPrevious", "17/17", ""},
        {"WEIGHT", "actionFindCase", "none", ""},
        {"<STX>w", "actionCodes", "0/17", ""},
        {"t 1(", "actionFindExpression", "", "missing closing parenthesis, at character 5"},
        {"t 1\\d$", nullptr, "0/7", ""},
        {"", nullptr, "", ""},
    };
    for (const Step& step : steps) {
      rig->Box().setText(step.text);
      if (step.press != nullptr) rig->Press(step.press);
      QTRY_COMPARE(rig->Box().Note(), QString(step.note));
      const auto* error = rig->panel.findChild<QLabel*>("findError");
      QCOMPARE(error != nullptr && error->isVisible(), *step.error != '\0');
      if (*step.error != '\0') QCOMPARE(error->text(), QString(step.error));
    }
  }

  void anExpressionThatIsWrongStaysSoWhileTheLastSearchStillCounted() {
    for (int i = 0; i < 60'000; ++i) {
      rig->display.txtric.Append("weight\r\n", TextKind::Received, colors::black);
    }
    rig->panel.View().Refresh();
    rig->Press("actionFindExpression");
    rig->Box().setText("w");
    QVERIFY(!rig->panel.View().Search().counted);
    rig->Box().setText("w(");
    QTest::qWait(20);
    QVERIFY(!rig->panel.View().Search().error.isEmpty());
  }

  // The button brings back the column that was chosen last.
  void choosesTheTimes() {
    QCOMPARE(rig->panel.View().Times(), TimeColumn::Off);
    rig->Press("actionTimes");
    QCOMPARE(rig->panel.View().Times(), TimeColumn::Clock);
    rig->Press("actionTimesRequest");
    rig->Press("actionTimes");
    QVERIFY(rig->Find<QAction>("actionTimesOff").isChecked());
    rig->Press("actionTimes");
    QCOMPARE(rig->panel.View().Times(), TimeColumn::SinceRequest);
    rig->Press("actionTimesOff");
    QVERIFY(!rig->Find<QAction>("actionTimes").isChecked());
  }

  void goesToATime() {
    rig->Press("actionGoToTime");
    auto& time = rig->Find<QLineEdit>("goTime");
    const auto& message = rig->Find<QLabel>("goMessage");
    QVERIFY(message.text().contains("19:00:00.000 to 19:00:16.000"));
    for (const auto& [text, answer] : {std::pair("soon", "no time"), std::pair("18:00:00", "Nothing came")}) {
      time.setText(text);
      QTest::keyClick(&time, Qt::Key_Return);
      QVERIFY(message.text().contains(answer));
    }
    time.setText("19:00:05.2");
    QTest::keyClick(&time, Qt::Key_Return);
    QVERIFY(!time.isVisible());
    QCOMPARE(rig->panel.View().SelectedText(), QString("\x02weight 5"));
  }

  void savesAndSaysWhat() {
    const TempFolder folder;
    const QString file = QString::fromStdString((folder.Path() / "shown.txt").string());
    QSignalSpy told(&rig->panel, &TrafficPanel::told);
    rig->Press("actionCodes");
    rig->Press("actionSaveDisplay");
    auto* dialog = rig->panel.findChild<QFileDialog*>();
    emit dialog->fileSelected(file);
    emit dialog->fileSelected(QString::fromStdString(folder.Path().string()));
    dialog->close();
    QCOMPARE(told.at(0).at(0).toString(), "17 lines of the display are in " + file);
    QVERIFY(told.at(1).at(0).toString().contains("was not written: Is a directory"));
    QVERIFY(ReadWholeFile(file.toStdString())->starts_with("\u2190 <STX>weight 0<CR><LF>\n"));
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::TrafficPanelTest)
#include "traffic_panel_test.moc"
