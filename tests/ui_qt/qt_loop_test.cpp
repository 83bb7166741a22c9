// The real event loop: a descriptor that calls without a rest leaves alarms and the window their turn.

#include "ui/qt/qt_loop.h"

#include <unistd.h>

#include <QTest>
#include <QTimer>
#include <array>
#include <memory>

namespace quarlin {

using namespace std::chrono_literals;

class QtLoopTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { QCOMPARE(pipe(ends_.data()), 0); }
  void cleanup() {
    for (const int end : ends_) close(end);
  }

  void anEndlessCallerHoldsNeitherAlarmsNorTheWindowUp() {
    QtLoop loop;
    long calls = 0;
    const auto watch = loop.WatchReadable(ends_[0], [&] { ++calls; });
    Send();  // and it is never read
    QTimer frames;
    int framesShown = 0;
    QObject::connect(&frames, &QTimer::timeout, [&] { ++framesShown; });
    frames.start(10);
    int ticks = 0;
    Alarm tick(loop, [&] {
      ++ticks;
      tick.At(loop.Now() + 5ms);
    });
    tick.At(loop.Now());
    RunFor(loop, 500ms);
    QVERIFY2(calls > 1000, qPrintable(QString::number(calls)));
    QVERIFY2(framesShown > 15, qPrintable(QString::number(framesShown)));
    QVERIFY2(ticks > 30, qPrintable(QString::number(ticks)));
  }

  void aWatchMayEndInItsOwnHandler() {
    QtLoop loop;
    int served = 0;
    std::unique_ptr<Watch> watch = loop.WatchReadable(ends_[0], [&] {
      Take();
      if (++served < 1000) Send();
      if (served == 1000) watch.reset();
    });
    Send();
    RunFor(loop, 200ms);
    QCOMPARE(served, 1000);
    Send();
    RunFor(loop, 20ms);
    QCOMPARE(served, 1000);
  }

 private:
  void Send() { QCOMPARE(write(ends_[1], "x", 1), ssize_t{1}); }
  void Take() {
    char taken = 0;
    QCOMPARE(read(ends_[0], &taken, 1), ssize_t{1});
  }
  static void RunFor(QtLoop& loop, Duration duration) {
    Alarm end(loop, [&loop] { loop.Quit(0); });
    end.At(loop.Now() + duration);
    loop.Run();
  }

  std::array<int, 2> ends_{};
};

}  // namespace quarlin

QTEST_GUILESS_MAIN(quarlin::QtLoopTest)
#include "qt_loop_test.moc"
