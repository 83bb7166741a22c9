#include "ui/qt/received_text_view.h"

#include <QAction>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <memory>
#include <utility>

#include "ui_qt/received_text_rig.h"

namespace quarlin {
namespace {

constexpr int mostLines = 100'000;

// Counts how often a widget is painted.
class PaintCounter : public QObject {
 public:
  explicit PaintCounter(QWidget& widget) {
    widget.installEventFilter(this);
    Take();
  }

  // The number since the last call.
  int Take() {
    QCoreApplication::processEvents();
    return std::exchange(count_, 0);
  }

  bool eventFilter(QObject*, QEvent* event) override {
    count_ += event->type() == QEvent::Paint;
    return false;
  }

 private:
  int count_ = 0;
};

}  // namespace

class ReceivedTextViewTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { rig = std::make_unique<ReceivedTextRig>(); }
  void cleanup() { rig.reset(); }

  void followsUntilScrolledUpAndAgainAfterEnd() {
    rig->AddLines(100);
    QCOMPARE(rig->Scroll(), rig->ScrollEnd());
    QVERIFY(rig->ScrollEnd() > 50);

    rig->ScrollTo(10);
    rig->AddLines(100);
    QCOMPARE(rig->Scroll(), 10);
    QVERIFY(rig->view.findChild<QPushButton*>("jumpToEnd")->isVisible());

    QTest::keyClick(&rig->view, Qt::Key_End);
    QCOMPARE(rig->Scroll(), rig->ScrollEnd());
    QVERIFY(!rig->view.findChild<QPushButton*>("jumpToEnd")->isVisible());
    rig->AddLines(10);
    QCOMPARE(rig->Scroll(), rig->ScrollEnd());
    QCOMPARE(rig->LineInRow(static_cast<int>(rig->view.verticalScrollBar()->pageStep()) - 1),
             QString("line 209"));
  }

  void scrollingBackToTheEndFollowsAgain() {
    rig->AddLines(100);
    rig->ScrollTo(10);
    rig->ScrollTo(rig->ScrollEnd());
    rig->AddLines(10);
    QCOMPARE(rig->Scroll(), rig->ScrollEnd());
  }

  void staysOnItsLinesWhileTheRingMoves() {
    rig->AddLines(mostLines);
    rig->ScrollTo(50);
    QCOMPARE(rig->LineInRow(0), QString("line 50"));
    rig->AddLines(20);
    QCOMPARE(rig->LineInRow(0), QString("line 50"));
    QCOMPARE(rig->Scroll(), 30);
    rig->ScrollTo(31);
    QCOMPARE(rig->LineInRow(0), QString("line 51"));
    rig->AddLines(100);
    QCOMPARE(rig->LineInRow(1), QString("line 121"));
    QCOMPARE(rig->Scroll(), 0);
  }

  void pausedItStaysAtTheEndToo() {
    rig->AddLines(100);
    const int at = rig->Scroll();
    QSignalSpy paused(&rig->view, &ReceivedTextView::pausedChanged);
    rig->view.SetPaused(true);
    rig->AddLines(100);
    QCOMPARE(rig->Scroll(), at);
    rig->ScrollTo(5);
    rig->view.SetPaused(false);
    QCOMPARE(rig->Scroll(), rig->ScrollEnd());
    QCOMPARE(paused.count(), 2);
  }

  void selectsWithTheMouse() {
    rig->Add("alpha beta_1=2\r\n\x02*IDN?\x03\r\n\r\nlast");
    rig->view.Refresh();

    rig->Drag(rig->At(0, 6), rig->At(0, 10));
    QCOMPARE(rig->view.SelectedText(), QString("beta"));
    rig->Drag(rig->At(3, 2), rig->At(0, 13));  // upwards
    QCOMPARE(rig->view.SelectedText(), QString("2\n\x02*IDN?\x03\n\nla"));
    rig->Press(rig->At(3, 4), Qt::ShiftModifier);  // its origin was in the last line
    QCOMPARE(rig->view.SelectedText(), QString("st"));
    rig->Release(rig->At(3, 4));
    rig->DoubleClick(rig->At(0, 8));
    QCOMPARE(rig->view.SelectedText(), QString("beta_1"));
    rig->DoubleClick(rig->At(0, 5) - QPoint(3, 0));  // the right half of the word's last letter
    QCOMPARE(rig->view.SelectedText(), QString("alpha"));
    rig->TripleClick(rig->At(1, 3));
    QCOMPARE(rig->view.SelectedText(), QString("\x02*IDN?\x03"));
    rig->clicksAt += 10'000;
    rig->Press(rig->At(0, 3));
    QCOMPARE(rig->view.SelectedText(), QString());
    rig->Release(rig->At(0, 3));
  }

  void aDoubleClickedDragGoesByWords() {
    rig->Add("one two three four\r\n");
    rig->view.Refresh();
    rig->Press(rig->At(0, 5));
    rig->Release(rig->At(0, 5));
    rig->Mouse(QEvent::MouseButtonDblClick, rig->At(0, 5));
    rig->Mouse(QEvent::MouseMove, rig->At(0, 10));
    QCOMPARE(rig->view.SelectedText(), QString("two three"));
    rig->Mouse(QEvent::MouseMove, rig->At(0, 1));
    QCOMPARE(rig->view.SelectedText(), QString("one two"));
    rig->Release(rig->At(0, 1));
  }

  void aDragBelowTheViewScrolls() {
    rig->AddLines(100);
    rig->ScrollTo(0);
    rig->Press(rig->At(0, 0));
    rig->Mouse(QEvent::MouseMove, rig->At(30, 0));
    QTRY_VERIFY(rig->Scroll() > 20);
    rig->Release(rig->At(30, 0));
    QVERIFY(rig->view.SelectedText().startsWith("line 0\n"));
    QVERIFY(rig->view.SelectedText().count('\n') > 40);
  }

  void theSelectionStaysOnItsTextAndEndsWithIt() {
    rig->AddLines(mostLines);
    rig->ScrollTo(0);
    rig->Drag(rig->At(1, 5), rig->At(3, 6));
    QCOMPARE(rig->view.SelectedText(), QString("1\nline 2\nline 3"));
    rig->AddLines(1);
    QCOMPARE(rig->view.SelectedText(), QString("1\nline 2\nline 3"));
    rig->AddLines(2);
    QCOMPARE(rig->view.SelectedText(), QString("line 3"));
    rig->AddLines(1);
    QCOMPARE(rig->view.SelectedText(), QString());
  }

  void copiesAsTextAndAsHex() {
    rig->Add("A\x1B\xE9\r\nBC\r");
    rig->view.Refresh();
    QClipboard* clipboard = QGuiApplication::clipboard();
    QTest::keyClick(&rig->view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&rig->view, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard->text(), QString::fromLatin1("A\x1B\xE9\nBC"));
    rig->view.CopyAsHex();
    QCOMPARE(clipboard->text(), QString("41 1B E9 0D 0A\n42 43"));

    rig->view.SetHexView(true);
    QCOMPARE(rig->view.SelectedText(), QString());
    rig->view.SelectAll();
    QCOMPARE(rig->view.SelectedText(), QString::fromLatin1("41 1B E9 0D 0A  |A\x1B\xE9|\n42 43 0D  |BC|"));
    rig->view.CopyAsHex();
    QCOMPARE(clipboard->text(), QString("41 1B E9 0D 0A\n42 43 0D"));
  }

  void findShowsAndSelectsOneMatchAfterTheOther() {
    rig->AddLines(5000);
    struct Step {
      const char* text;
      bool backward;
      bool caseSensitive;
      bool found;
      const char* rowText;  // of the line that shows the match
    };
    const Step steps[] = {
        {"LINE 77", false, false, true, "line 77"},  // wraps from the end, where the view stood
        {"LINE 77", false, false, true, "line 770"},   {"LINE 77", false, false, true, "line 771"},
        {"LINE 77", true, false, true, "line 770"},    {"LINE 77", true, false, true, "line 77"},
        {"LINE 77", true, false, true, "line 779"},    {"LINE 77", false, true, false, "line 779"},
        {"line 7795", false, true, false, "line 779"}, {"", false, false, false, "line 779"},
        {"\u20AC", false, false, false, "line 779"},   {"line 77", false, true, true, "line 77"},
        {"line 778", false, true, true, "line 778"},  // typed on: begins at the present match
    };
    for (const Step& step : steps) {
      const QString text = QString::fromUtf8(step.text);
      QCOMPARE(rig->view.Find(text, step.backward, step.caseSensitive), step.found);
      const QString line = QString::fromUtf8(step.rowText);
      QCOMPARE(rig->view.SelectedText(), step.found ? text.toLower() : line.left(7));
      const int row = line.mid(5).toInt() - rig->Scroll();
      QVERIFY2(row >= 0 && row < rig->view.verticalScrollBar()->pageStep(), step.rowText);
      QVERIFY(!rig->view.Following());
    }
  }

  void findScrollsSideways() {
    rig->Add(std::string(300, '.') + "needle" + std::string(300, '.'));
    rig->view.Refresh();
    QVERIFY(rig->view.horizontalScrollBar()->isVisible());
    QVERIFY(rig->view.Find("NEEDLE", false, false));
    const int first = rig->view.horizontalScrollBar()->value();
    QVERIFY(first <= 300 && first + rig->view.horizontalScrollBar()->pageStep() >= 306);
    QVERIFY(rig->Pixels(QColor(0, 120, 0)) > 0);
  }

  void paintsTheColoursOfTheText() {
    const QColor pureBlue(0, 0, 255);
    rig->Add("black\r\n");
    rig->view.Refresh();
    QCOMPARE(rig->Pixels(Qt::red), 0);
    rig->Add("##### red\r\n", colors::red);
    rig->Add("##### blue\r\n", colors::blue);
    rig->view.Refresh();
    QVERIFY(rig->Pixels(Qt::red) > 20);
    QVERIFY(rig->Pixels(pureBlue) > 20);

    rig->view.setPalette(PaletteOn(QColor(30, 30, 30), Qt::white));
    QCOMPARE(rig->Pixels(pureBlue), 0);  // too dark to be read there
    QVERIFY(rig->Pixels(Qt::white) > 20);
  }

  void paintsWhenSomethingChangesThatIsSeen() {
    PaintCounter painted(*rig->view.viewport());
    rig->AddLines(1);
    QVERIFY(painted.Take() > 0);
    rig->Add("more");
    rig->view.Refresh();
    QVERIFY(painted.Take() > 0);
    rig->AddLines(100);
    QVERIFY(painted.Take() > 0);
    rig->ScrollTo(10);
    QVERIFY(painted.Take() > 0);
    rig->AddLines(100);
    QCOMPARE(painted.Take(), 0);
    rig->display.txtric.Clear();
    rig->view.Refresh();
    QVERIFY(painted.Take() > 0);
  }

  void aClearedDisplayIsEmptyAndFollows() {
    rig->AddLines(100);
    rig->Add(std::string(3000, 'x'));
    rig->view.Refresh();
    rig->view.horizontalScrollBar()->setValue(100);
    rig->ScrollTo(10);
    rig->view.SelectAll();
    rig->display.txtric.Clear();
    QCOMPARE(rig->view.SelectedText(), QString());  // also before the next frame
    rig->view.Refresh();
    QGuiApplication::clipboard()->setText("of others");
    rig->view.Copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("of others"));
    QCOMPARE(rig->Pixels(Qt::black), 0);
    QCOMPARE(rig->ScrollEnd(), 0);
    QVERIFY(!rig->view.horizontalScrollBar()->isVisible());
    QVERIFY(!rig->view.Find("line", false, false));
    rig->Drag(rig->At(0, 0), rig->At(3, 3));
    QCOMPARE(rig->view.SelectedText(), QString());
    rig->AddLines(100);
    QCOMPARE(rig->Scroll(), rig->ScrollEnd());
    QVERIFY(rig->Pixels(Qt::black) > 0);
  }

  void tellsWhatIsTyped() {
    QSignalSpy typed(&rig->view, &ReceivedTextView::typed);
    QTest::keyClick(&rig->view, 'a');
    QTest::keyClick(&rig->view, Qt::Key_Return);
    QTest::keyClick(&rig->view, Qt::Key_C, Qt::ControlModifier);
    QTest::keyClick(&rig->view, Qt::Key_Down);
    QKeyEvent foreign(QEvent::KeyPress, 0, Qt::NoModifier, QString::fromUtf8("\u00E9\u20AC"));
    QCoreApplication::sendEvent(&rig->view, &foreign);
    QByteArray all;
    for (const QList<QVariant>& call : typed) all += call.first().toByteArray();
    QCOMPARE(all, QByteArray("a\r\xE9?"));
  }

  void theMenuClearsAndSwitches() {
    QSignalSpy cleared(&rig->view, &ReceivedTextView::clearRequested);
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
    QCoreApplication::sendEvent(rig->view.viewport(), &event);
    auto* menu = rig->view.findChild<QMenu*>();
    QVERIFY(menu != nullptr);
    for (QAction* action : menu->actions()) {
      if (action->text() == "C&lear" || action->isCheckable()) action->trigger();
    }
    menu->close();
    QCOMPARE(cleared.count(), 1);
    QVERIFY(rig->view.Paused() && rig->view.ShowsTimes() && rig->view.HexView());
  }

 private:
  std::unique_ptr<ReceivedTextRig> rig;
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ReceivedTextViewTest)
#include "received_text_view_test.moc"
