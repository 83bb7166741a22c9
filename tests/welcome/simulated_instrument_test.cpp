// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/simulated_instrument.h"

#include <gtest/gtest.h>

#include <csignal>

#include "support/poll_loop.h"
#include "support/temp_folder.h"
#include "support/virtual_loop.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

// Real processes in virtual time: it passes while nothing is waited for.
struct Rig {
  explicit Rig(std::string_view script) {
    WriteInPlace(folder / "instrument", "#!/bin/sh\n" + std::string(script));
    std::filesystem::permissions(folder / "instrument", std::filesystem::perms::owner_all);
    instrument.Hooks.ready = [this](const std::string&) { ready = true; };
    instrument.Hooks.ended = [this](std::string_view why) { end = why; };
  }

  bool Comes(const std::function<bool()>& done) {
    PollLoop machine;
    for (const Instant limit = machine.Now() + 60s; !done() && machine.Now() < limit; machine.Pass(1ms)) {
      loop.ServeDescriptors();
      loop.Settle();
    }
    return done();
  }

  TempFolder folder;
  VirtualLoop loop;
  SimulatedInstrument instrument{loop, folder / "instrument", folder.Path()};
  bool ready = false;
  std::optional<std::string> end;
};

TEST(SimulatedInstrument, AnEndIsExplained) {
  struct Row {
    std::string_view script;
    Duration passes;
    std::string_view why;
  };
  for (const Row& row : {
           Row{"echo 'quarlin-instrument: no pseudo-terminal' >&2\nexit 1\n", 0s,
               "quarlin-instrument: no pseudo-terminal"},
           Row{"exit 0\n", 0s, "it ended by itself"},
           Row{"exec sleep 1000\n", 10s, "its port did not come within 10 s"},
       }) {
    Rig rig(row.script);
    ASSERT_EQ(rig.instrument.Start(), "");
    rig.loop.Pass(row.passes);
    EXPECT_TRUE(rig.Comes([&] { return rig.end.has_value(); })) << row.script;
    EXPECT_EQ(rig.end, row.why);
    EXPECT_FALSE(rig.instrument.Runs());
  }
}

TEST(SimulatedInstrument, AnEndIsNoticedAlsoWhereTheSystemReapsOurChildren) {
  const auto before = std::signal(SIGCHLD, SIG_IGN);  // as a launcher may leave it to us
  Rig rig("exit 0\n");
  EXPECT_EQ(rig.instrument.Start(), "");
  EXPECT_TRUE(rig.Comes([&] { return rig.end.has_value(); }));
  std::signal(SIGCHLD, before);
}

TEST(SimulatedInstrument, OneThatWillNotEndIsMadeTo) {
  Rig rig("trap '' TERM\nln -s /dev/null \"$2\"\necho /dev/null\nwhile :; do sleep 0.01; done\n");
  ASSERT_EQ(rig.instrument.Start(), "");
  ASSERT_TRUE(rig.Comes([&] { return rig.ready; }));
  rig.instrument.End();
  rig.loop.Pass(1999ms);
  EXPECT_TRUE(rig.instrument.Runs());
  rig.loop.Pass(1ms);
  EXPECT_TRUE(rig.Comes([&] { return rig.end.has_value(); }));
  EXPECT_EQ(rig.end, "");
  for (const auto& entry : std::filesystem::directory_iterator(rig.folder.Path())) {
    EXPECT_EQ(entry.path().filename(), "instrument");  // the link that it left is gone
  }
}

}  // namespace
}  // namespace quarlin
