// SPDX-License-Identifier: GPL-3.0-or-later
// Timers and controls in virtual time.

#include "controls/timer.h"

#include <gtest/gtest.h>

#include <memory>

#include "controls/collection.h"
#include "controls/controls.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

class TimerRig : public testing::Test {
 protected:
  struct Group : ControlGroup {
    using ControlGroup::ControlGroup;
    Timer tick{*this, "tick", 100};
  };

  TimerRig() {
    group.tick.OnTimer = [this] {
      ticks.push_back((loop.Now() - start) / 1ms);
      if (whileTicking) whileTicking();
    };
  }

  VirtualLoop loop;
  Group group{loop};
  Instant start = loop.Now();
  std::vector<std::int64_t> ticks;
  std::function<void()> whileTicking;
};

using Ticks = std::vector<std::int64_t>;

TEST_F(TimerRig, ALateTickDoesNotPushTheNextOnesBack) {
  whileTicking = [&] {
    if (ticks.size() == 2) loop.Pause(loop.Now() + 130ms);
  };
  group.tick.SetEnabled(true);
  loop.Pass(500ms);
  EXPECT_EQ(ticks, (Ticks{100, 200, 330, 400, 500})) << "the tick of 300 ms is late, the grid stays";
}

TEST_F(TimerRig, RestsUntilItIsWokenOrResumed) {
  group.tick.SetEnabled(true);
  whileTicking = [&] { group.tick.Rest(); };
  loop.Pass(1010ms);
  EXPECT_EQ(ticks, Ticks{100});
  group.tick.Wake();
  loop.Pass(20ms);
  group.tick.Resume();
  loop.Pass(500ms);
  EXPECT_EQ(ticks, (Ticks{100, 1010, 1100}));
}

TEST_F(TimerRig, ADisabledTimerCannotBeWoken) {
  group.tick.Wake();
  group.tick.Resume();
  loop.Pass(1s);
  EXPECT_TRUE(ticks.empty());
}

TEST_F(TimerRig, IntervalZeroTicksAgainAndAgainAndTimeStillPasses) {
  group.tick.SetInterval(0);
  group.tick.SetEnabled(true);
  loop.Pass(1ms);
  EXPECT_GT(ticks.size(), 100U);
}

TEST_F(TimerRig, AYieldHoldsTheTicksBack) {
  whileTicking = [&] {
    if (ticks.size() == 1) loop.WaitUntil([] { return false; }, loop.Now() + 250ms);
  };
  group.tick.SetEnabled(true);
  loop.Pass(400ms);
  EXPECT_EQ(ticks, (Ticks{100, 350, 400})) << "never one inside another";
}

TEST_F(TimerRig, TheOutsideWorldGoesOnWhileTheProgramYields) {
  bool clicked = false;
  loop.Outside(30ms, [&] { clicked = true; });
  EXPECT_TRUE(loop.WaitUntil([&] { return clicked; }, loop.Now() + 1s));
  EXPECT_EQ(loop.Now() - start, 30ms);
}

TEST_F(TimerRig, AnAlarmMayEndItsOwnerWhileItFires) {
  std::unique_ptr<Alarm> alarm;
  alarm = std::make_unique<Alarm>(loop, [&] { alarm.reset(); });
  alarm->At(loop.Now() + 1ms);
  loop.Pass(10ms);
  EXPECT_EQ(alarm, nullptr);
}

TEST_F(TimerRig, AHandlerThatThrowsHoldsNoLaterTickUp) {
  group.tick.SetEnabled(true);
  whileTicking = [&] {
    if (ticks.size() == 1) throw std::runtime_error("in the handler");
  };
  EXPECT_THROW(loop.Pass(100ms), std::runtime_error);
  loop.Pass(100ms);
  EXPECT_EQ(ticks, (Ticks{100, 200}));
}

TEST_F(TimerRig, PostedCallsRunInOrderAfterTheHandler) {
  std::string order;
  whileTicking = [&] {
    loop.Post([&] { order += "b"; });
    loop.Post([&] { order += "c"; });
    order += "a";
    group.tick.SetEnabled(false);
  };
  group.tick.SetEnabled(true);
  loop.Pass(100ms);
  EXPECT_EQ(order, "abc");
}

struct SampleGroup : ControlGroup {
  using ControlGroup::ControlGroup;
  OptionArray<3> option{*this, "option", {"A", "B", "C"}, 0};
  CheckBox box{*this, "box", "Box"};
  ComboBox list{*this, "list", {"one", "two"}, "one"};
  Label count{*this, "count", "2147483646"};
};

TEST(Controls, HandlersRunOnlyWhereTheValueChanges) {
  VirtualLoop loop;
  SampleGroup group(loop);
  std::string calls;
  group.option.OnClick([&] { calls += 'o'; });
  group.box.Click = [&] { calls += 'b'; };
  group.list.Change = [&] { calls += 'l'; };
  group.option[0].SetValue(true);
  group.option[2].SetValue(true);
  group.option[2].SetValue(false);
  group.box.SetValue(0);
  group.box.SetValue(2);
  group.list.SetText("one");
  group.list.SetText("typed");
  EXPECT_EQ(calls, "obl");
  EXPECT_FALSE(group.option.Selected()) << "the one that was cleared was the selected one";
  EXPECT_EQ(group.list.ListIndex(), -1);
}

TEST(Controls, AHandlerIsSetOnceAndNoneIsNoCrash) {
  VirtualLoop loop;
  struct Group : ControlGroup {
    using ControlGroup::ControlGroup;
    CommandButton cmdGo{*this, "cmdGo", "Go"};
    OptionArray<2> Option1{*this, "Option1", {"CR", "LF"}, 0};
  } group(loop);
  group.cmdGo.Click();
  int clicks = 0;
  group.Option1.OnClick([&] { ++clicks; });
  EXPECT_THROW(
      group.Option1[1].Click = [] {}, std::logic_error);
  group.Option1[1].SetValue(true);
  EXPECT_EQ(clicks, 1);
}

TEST(Controls, ACounterKeepsItsValueAtItsEnd) {
  VirtualLoop loop;
  SampleGroup group(loop);
  group.count.Increment();
  group.count.Increment();
  EXPECT_EQ(group.count.Caption(), "2147483647");
}

TEST(Controls, ManyChangesAreOneRepaint) {
  VirtualLoop loop;
  SampleGroup group(loop);
  ControlCollection collection;
  collection.Add(group);
  int frames = 0;
  collection.Changes().onFirst = [&] { ++frames; };
  for (int i = 0; i < 1000; ++i) group.box.SetChecked(i % 2 == 0);
  group.list.SetText("x");
  EXPECT_EQ(frames, 1);
  EXPECT_EQ(collection.Changes().Take().size(), 2U);
  EXPECT_EQ(collection.Find("option", 2), &group.option[2]);
  EXPECT_EQ(collection.Find("Option", 2), nullptr);
}

}  // namespace
}  // namespace quarlin
