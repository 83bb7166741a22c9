// SPDX-License-Identifier: GPL-3.0-or-later
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

  void Send() { QCOMPARE(write(ends_[1], "x", 1), ssize_t{1}); }
  void Take() {
    char taken = 0;
    QCOMPARE(read(ends_[0], &taken, 1), ssize_t{1});
  }

  std::array<int, 2> ends_{};

 private slots:
  void init() { QCOMPARE(pipe(ends_.data()), 0); }
  void cleanup() {
    for (const int end : ends_) close(end);
  }

  // Where one of them were held up, only the patience would end it.
  void anEndlessCallerHoldsNeitherAlarmsNorTheWindowUp() {
    QtLoop loop;
    const Instant end = loop.Now() + 60s;
    int framesShown = 0;
    int ticks = 0;
    long calls = 0;
    const auto watch = loop.WatchReadable(ends_[0], [&] {
      ++calls;
      if ((calls > 1000 && framesShown > 15 && ticks > 30) || loop.Now() > end) loop.Quit(0);
    });
    Send();  // and it is never read
    QTimer frames;
    QObject::connect(&frames, &QTimer::timeout, [&] { ++framesShown; });
    frames.start(10);
    Alarm tick(loop, [&] {
      ++ticks;
      tick.At(loop.Now() + 5ms);
    });
    tick.At(loop.Now());
    loop.Run();
    QVERIFY(loop.Now() < end);
  }

  void aWatchMayEndInItsOwnHandler() {
    QtLoop loop;
    int served = 0;
    std::unique_ptr<Watch> watch = loop.WatchReadable(ends_[0], [&] {
      Take();
      if (++served < 1000) {
        Send();
      } else {
        watch.reset();
        loop.Quit(0);
      }
    });
    Send();
    loop.Run();
    QCOMPARE(served, 1000);
    Send();
    Alarm end(loop, [&loop] { loop.Quit(0); });
    end.At(loop.Now() + 20ms);
    loop.Run();
    QCOMPARE(served, 1000);
  }

  // From a handler, which holds alarms back elsewhere.
  void aWaitInAHandlerGoesOnWithEverything() {
    QtLoop loop;
    int served = 0, ticks = 0, ticksSeen = 0;
    const auto watch = loop.WatchReadable(ends_[0], [&] {
      Take();
      ++served;
    });
    Alarm tick(loop, [&] {
      ++ticks;
      tick.At(loop.Now() + 1ms);
    });
    Alarm begin(loop, [&] {
      Send();
      QVERIFY(!loop.RunUntil([] { return false; }, loop.Now()));
      QCOMPARE(served, 1);  // although there was no time for it
      Send();
      QVERIFY(loop.RunUntil([&] { return served == 2 && ticks >= 20; }, loop.Now() + 60s));
      const AlarmQueue::Hold hold(loop.Alarms());
      ticksSeen = ticks;
      loop.RunUntil([] { return false; }, loop.Now() + 5ms);
      QVERIFY(ticks > ticksSeen);  // a Hold from before the wait does not count
      std::optional<AlarmQueue::Hold> within;
      ticksSeen = ticks;
      const auto holds = [&] {
        if (!within) within.emplace(loop.Alarms());
        return false;
      };
      loop.RunUntil(holds, loop.Now() + 5ms);
      QCOMPARE(ticks, ticksSeen);
      loop.Quit(0);
    });
    begin.At(loop.Now());
    tick.At(loop.Now());
    loop.Run();
    QVERIFY(!loop.Alarms().Held());
  }
};

}  // namespace quarlin

QTEST_GUILESS_MAIN(quarlin::QtLoopTest)
#include "qt_loop_test.moc"
