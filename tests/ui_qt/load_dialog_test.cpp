// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/load_dialog.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <fstream>
#include <optional>

#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {

class LoadDialogTest : public QObject {
  Q_OBJECT

  struct Rig {
    template <typename Widget>
    Widget& The(const char* name) {
      return *dialog.findChild<Widget*>(name);
    }
    QString Note() { return The<QLabel>("loadNote").text(); }
    QString Cell(int row, int column) { return The<QTableWidget>("loadPreview").item(row, column)->text(); }
    void Type(const char* field, const QString& text) {
      The<QLineEdit>(field).clear();
      QTest::keyClicks(&The<QLineEdit>(field), text);
    }
    void Choose(const char* box, const char* key) { QTest::keyClicks(&The<QComboBox>(box), key); }
    void Press(const char* button) { QTest::mouseClick(&The<QPushButton>(button), Qt::LeftButton); }

    VirtualLoop loop;
    TempFolder folder;
    std::optional<LoadedNumbers> taken;
    LoadDialog dialog{loop, [this](LoadedNumbers numbers) { taken = std::move(numbers); }, nullptr};
  };

 private slots:
  void aTableIsProposedPreviewedAndRead() {
    Rig rig;
    WriteInPlace(rig.folder / "run.csv", "time;net [kg]\n0,5;12,5\n1,0;OVER\n1,5;13\n");
    rig.dialog.TakeFile(QString::fromStdString((rig.folder / "run.csv").string()));
    QCOMPARE(rig.The<QLineEdit>("loadRule").text(), QString("2"));
    QCOMPARE(rig.The<QTableWidget>("loadPreview").horizontalHeaderItem(3)->text(), QString("net (kg)"));
    QCOMPARE(rig.Cell(0, 2), QString("0.5"));
    QCOMPARE(rig.Cell(1, 3), QString("–"));
    QCOMPARE(rig.Note(), QString("2 numbers in the first 3 rows."));
    rig.Press("loadOpenButton");
    QVERIFY(!rig.taken);
    rig.loop.Pass(std::chrono::seconds(1));
    QVERIFY(rig.taken && rig.taken->byTime && !rig.dialog.isVisible());
    QCOMPARE(rig.taken->curves.at(0).At(2).value, 13.0);
    QCOMPARE(rig.taken->summary, std::string("2 numbers in 3 rows; 1 row lacks one: line 3 \"1,0;OVER\""));
  }

  void whatAnotherFileHasNotIsNotAskedOfIt() {
    Rig rig;
    const auto ruleFor = [&](std::string_view text) {
      WriteInPlace(rig.folder / "run.csv", text);
      rig.dialog.TakeFile(QString::fromStdString((rig.folder / "run.csv").string()));
      return rig.The<QLineEdit>("loadRule").text();
    };
    QCOMPARE(ruleFor("1;2;3\n4;5;6\n"), QString("1,2,3"));
    rig.Type("loadRule", "1,3");
    QCOMPARE(ruleFor("7;8;9\n"), QString("1,3"));
    QCOMPARE(ruleFor("12.5\n13\n"), QString("1"));
  }

  void whatIsWrongStandsBesideItsFieldAndThePreviewStays() {
    Rig rig;
    QApplication::clipboard()->setText("1 2\n3 4\n");
    rig.dialog.TakeClipboard();
    rig.Type("loadRule", "0");
    QVERIFY(rig.The<QLabel>("loadRuleTrouble").text().contains("\"0\" is no place"));
    QVERIFY(!rig.The<QPushButton>("loadOpenButton").isEnabled());
    QCOMPARE(rig.Cell(1, 2), QString("3"));
    rig.Type("loadRule", "2");
    rig.Choose("loadTimeBox", "Rows");
    rig.Type("loadTime", "-1");
    QVERIFY(!rig.The<QLabel>("loadTimeTrouble").text().isEmpty());
    QVERIFY(rig.The<QLabel>("loadRuleTrouble").text().isEmpty());
    rig.Type("loadTime", "10");
    QCOMPARE(rig.Cell(1, 2), QString("0.1"));
    QCOMPARE(rig.Cell(1, 3), QString("4"));
  }

  void whatCannotBeReadIsSaidInASentence() {
    Rig rig;
    rig.dialog.TakeFile("/nowhere.txt");
    QCOMPARE(rig.Note(), QString("nowhere.txt cannot be read: No such file or directory."));
    QApplication::clipboard()->setImage(QImage(4, 4, QImage::Format_RGB32));
    rig.dialog.TakeClipboard();
    QCOMPARE(rig.Note(), QString("The clipboard holds a picture and no text."));
    QApplication::clipboard()->setMimeData(new QMimeData);
    rig.dialog.TakeClipboard();
    QCOMPARE(rig.Note(), QString("The clipboard is empty."));
    QApplication::clipboard()->setText("abc");
    rig.dialog.TakeClipboard();
    rig.Press("loadOpenButton");
    rig.loop.Pass(std::chrono::seconds(1));
    QCOMPARE(rig.Note(),
             QString("No number in the 1 row of the clipboard; 1 row lacks one: line 1 \"abc\"."));
    QVERIFY(!rig.taken && rig.dialog.isVisible());
  }

  void theFirstEscapeEndsTheReadingAndTheSecondClosesTheWindow() {
    Rig rig;
    WriteInPlace(rig.folder / "long.txt", "1\n" + std::string(8 << 20, '\n'));
    rig.dialog.TakeFile(QString::fromStdString((rig.folder / "long.txt").string()));
    rig.Press("loadOpenButton");
    rig.loop.Outside(Duration::zero(), [&rig] {
      QVERIFY(rig.The<QProgressBar>("loadProgress").isVisible());
      QTest::keyClick(&rig.dialog, Qt::Key_Escape);
    });
    rig.loop.Pass(std::chrono::seconds(1));
    QVERIFY(!rig.taken && rig.dialog.isVisible());
    QCOMPARE(rig.Note(), QString("The reading was cancelled."));
    QTest::keyClick(&rig.dialog, Qt::Key_Escape);
    QVERIFY(!rig.dialog.isVisible());
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::LoadDialogTest)
#include "load_dialog_test.moc"
