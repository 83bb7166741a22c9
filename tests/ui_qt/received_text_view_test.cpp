// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/received_text_view.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPaintEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>

#include "base/files.h"
#include "display/line_times.h"
#include "support/temp_folder.h"
#include "ui_qt/received_text_rig.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

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

  // How far to the right it was painted last.
  int Right() const { return right_; }

  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Paint) return false;
    ++count_;
    right_ = static_cast<QPaintEvent*>(event)->rect().right();
    return false;
  }

 private:
  int count_ = 0;
  int right_ = 0;
};

}  // namespace

class ReceivedTextViewTest : public QObject {
  Q_OBJECT

  std::unique_ptr<ReceivedTextRig> rig;

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

    rig->view.SetShowsCodes(true);  // what is selected stays so
    rig->view.CopyAsShown();
    QCOMPARE(clipboard->text(), QString("← A<ESC>é<CR><LF>\n← BC<CR>\n"));
  }

  void findShowsAndSelectsOneMatchAfterTheOther() {
    rig->AddLines(5000);
    using enum SearchDirection;
    struct Step {
      const char* text;
      SearchDirection direction;
      bool caseSensitive;
      const char* found;  // the line of the match
      std::uint64_t number;
    };
    const Step steps[] = {
        {"LINE 77", Forward, false, "line 77", 1},  // wraps from the end, where the view stood
        {"LINE 77", Forward, false, "line 770", 2},
        {"LINE 77", Forward, false, "line 771", 3},
        {"LINE 77", Backward, false, "line 770", 2},
        {"LINE 77", Backward, false, "line 77", 1},
        {"LINE 77", Backward, false, "line 779", 11},
        {"LINE 77", Forward, true, nullptr, 0},
        {"line 7795", Forward, true, nullptr, 0},
        {"", Forward, false, nullptr, 0},
        {"line 77", Forward, true, "line 77", 1},
        {"line 778", Forward, true, "line 778", 1},  // typed on: begins at the present match
    };
    for (const Step& step : steps) {
      const QString text = QString::fromUtf8(step.text);
      rig->view.SetSearch({text, step.caseSensitive});
      QCOMPARE(rig->view.FindNext(step.direction), step.found != nullptr);
      if (step.found == nullptr) continue;
      QCOMPARE(rig->view.SelectedText(), text.toLower());
      QTRY_VERIFY(rig->view.Search().counted);
      QCOMPARE(rig->view.Search().number, step.number);
      const int row = QString(step.found).mid(5).toInt() - rig->Scroll();
      QVERIFY2(row >= 0 && row < rig->view.verticalScrollBar()->pageStep(), step.found);
      QVERIFY(!rig->view.Following());
    }
  }

  void findScrollsSideways() {
    rig->Add(std::string(300, '.') + "needle" + std::string(300, '.'));
    rig->view.Refresh();
    QVERIFY(rig->view.horizontalScrollBar()->isVisible());
    rig->view.SetSearch({"NEEDLE"});
    QVERIFY(rig->view.FindNext(SearchDirection::Forward));
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

  // Only what text covers is painted anew; what a long line has left behind goes with it.
  void paintsAsFarAsTextReaches() {
    rig->AddLines(100);
    PaintCounter painted(*rig->view.viewport());
    for (int i = 0; i < 2; ++i) {  // after the first the empty display's hint is gone
      rig->AddLines(1);
      painted.Take();
    }
    QVERIFY(painted.Right() > rig->At(0, 8).x());  // "line 100"
    QVERIFY(painted.Right() < rig->At(0, 20).x());
    rig->Add(std::string(static_cast<std::size_t>(rig->Cells()), 'x') + "\r\n");
    rig->view.Refresh();
    painted.Take();
    QVERIFY(painted.Right() > rig->At(0, rig->Cells() - 1).x());
    rig->AddLines(100);
    painted.Take();
    QVERIFY(painted.Right() > rig->At(0, rig->Cells() - 1).x());
    rig->AddLines(1);
    painted.Take();
    QVERIFY(painted.Right() < rig->At(0, 20).x());
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
    rig->view.SetSearch({"line"});
    QVERIFY(!rig->view.FindNext(SearchDirection::Forward));
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

  // Long lines in several rows: scrolling goes by rows, the line at the top stays, and all of it is there.
  void wrapsLongLines() {
    const std::size_t cells = static_cast<std::size_t>(rig->Cells());
    for (int i = 0; i < 100; ++i)
      rig->Add(std::string(2 * cells + 1, static_cast<char>('A' + i % 26)) + "\r\n");
    rig->view.Refresh();
    rig->ScrollTo(10);
    rig->view.SetWraps(true);
    QCOMPARE(rig->Scroll(), 30);
    QCOMPARE(rig->ScrollEnd(), 300 - static_cast<int>(rig->view.verticalScrollBar()->pageStep()));
    QVERIFY(!rig->view.horizontalScrollBar()->isVisible());
    QCOMPARE(rig->LineInRow(2), QString(static_cast<int>(2 * cells + 1), 'K'));
    rig->Drag(rig->At(2, 0), rig->At(3, 2));
    QCOMPARE(rig->view.SelectedText(), QString("K\nLL"));
    rig->view.resize(rig->view.width() * 2, rig->view.height());
    QCOMPARE(rig->LineInRow(0).at(0), QChar('K'));
    rig->view.SetWraps(false);
    QCOMPARE(rig->Scroll(), 10);
  }

  // An error with the exchange that it is about; what comes later joins it.
  void showsErrorsOnlyWithTheirExchanges() {
    const auto exchange = [&](int number, bool fails) {
      rig->Add("READ " + std::to_string(number) + "\r\n", TextKind::Sent);
      rig->Add("12.5\r\n");
      if (fails) rig->Add("ERROR CHECKSUM\r\n", TextKind::Error, colors::red);
    };
    for (int i = 0; i < 100; ++i) exchange(i, i % 50 == 7);
    rig->view.SetErrorsOnly(true);
    QCOMPARE(rig->LineInRow(0), QString("READ 7"));
    QCOMPARE(rig->LineInRow(3), QString("READ 57"));
    QCOMPARE(rig->LineInRow(5), QString("ERROR CHECKSUM"));
    exchange(100, false);
    exchange(101, true);
    rig->view.Refresh();
    QCOMPARE(rig->LineInRow(6), QString("READ 101"));

    rig->view.SetSearch({"read 1"});
    for (const char* found : {"101", "101"}) {  // in the lines that are shown
      QVERIFY(rig->view.FindNext(SearchDirection::Forward));
      rig->TripleClick(rig->At(6, 2));
      QCOMPARE(rig->view.SelectedText(), "READ " + QString(found));
    }
    QCOMPARE(rig->view.Search().count, 1U);
    rig->Drag(rig->At(5, 0), rig->At(7, 2));
    QCOMPARE(rig->view.SelectedText(), QString("ERROR CHECKSUM\nREAD 101\n12"));

    QVERIFY(rig->view.ShowLine(20));  // not among them
    QVERIFY(!rig->view.ErrorsOnly());
    QCOMPARE(rig->view.SelectedText(), QString("12.5"));
    QVERIFY(!rig->view.ShowLine(1'000'000));
  }

  void showsTheLineOfATime() {
    rig->loop.SetLocal(std::chrono::local_days(std::chrono::year(2026) / 2 / 3) + 19h);
    for (int i = 0; i < 100; ++i) {
      rig->AddLines(1);
      rig->loop.Pass(10s);
    }
    struct Case {
      const char* time;
      const char* line;  // none: not kept
    };
    const Case cases[] = {{"19:00:00", "line 0"},  {"19:05:14.9", "line 31"}, {"19:05:15.1", "line 32"},
                          {"19:16:30", "line 99"}, {"19:16:31", nullptr},     {"18:59:59", nullptr}};
    for (const Case& row : cases) {
      QCOMPARE(rig->view.ShowTime(*TimeOfDay(row.time)), row.line != nullptr);
      if (row.line != nullptr) QCOMPARE(rig->view.SelectedText(), QString(row.line));
    }
    for (const char* text : {"", "19", "24:00", "19:60", "19:00:00.", "19:00:61", "19:00x"}) {
      QVERIFY2(!TimeOfDay(text), text);
    }
  }

  void savesWhatItShows() {
    TempFolder folder;
    const auto file = folder.Path() / "display.txt";
    rig->AddLines(20'000);
    std::uint64_t lines = 0;
    QVERIFY(!rig->view.Save(file, lines));
    QCOMPARE(lines, 20'000U);
    const std::string text = *ReadWholeFile(file);
    QVERIFY(text.starts_with("← line 0\n← line 1\n"));
    QVERIFY(text.ends_with("← line 19999\n"));
    QCOMPARE(std::count(text.begin(), text.end(), '\n'), 20'000);
    QVERIFY(rig->view.Save(folder.Path(), lines));
  }

  // 100,000 lines: what a click or a key asks for is there at once.
  void isQuickWithAFullDisplay() {
    for (int i = 0; i < mostLines; ++i)
      rig->Add("ST,GS,+00012.345 kg and more of it " + std::to_string(i) + "\r\n");
    rig->view.Refresh();
    const auto taken = [](auto action) {
      QElapsedTimer timer;
      timer.start();
      action();
      return timer.elapsed();
    };
    rig->view.SetSearch({"nowhere"});
    const qint64 search = taken([&] { rig->view.FindNext(SearchDirection::Forward); });
    qint64 slowest = 0;
    for (const auto set : {&ReceivedTextView::SetWraps, &ReceivedTextView::SetShowsCodes,
                           &ReceivedTextView::SetHexView, &ReceivedTextView::SetErrorsOnly}) {
      slowest = std::max(slowest, taken([&] { (rig->view.*set)(true); }));
    }
    qInfo("find %lld ms, slowest view %lld ms", search, slowest);
    QVERIFY(search < 1000 && slowest < 2000);  // ten times what is wanted: the machine may be busy
  }
};

}  // namespace quarlin

QTEST_MAIN(quarlin::ReceivedTextViewTest)
#include "received_text_view_test.moc"
