// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/serial_settings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quarlin {
namespace {

// What a port was left with, so that a field that a text does not name is seen to keep its value.
const SerialSettings before{
    .baud = 300, .parity = Parity::Mark, .dataBits = 5, .stopBits = StopBits::OneAndHalf, .ctsFlow = true};

SerialSettings Line(std::uint32_t baud, Parity parity, int dataBits, StopBits stopBits) {
  SerialSettings settings = before;
  settings.baud = baud;
  settings.parity = parity;
  settings.dataBits = dataBits;
  settings.stopBits = stopBits;
  return settings;
}

template <typename Change>
SerialSettings Changed(Change change) {
  SerialSettings settings = before;
  change(settings);
  return settings;
}

TEST(SerialSettings, BothFormsChangeWhatTheyName) {
  const std::vector<std::pair<std::string, SerialSettings>> cases = {
      {"9600,n,8,1", Line(9600, Parity::None, 8, StopBits::One)},
      {" 250000 , E , 7 , 2 ", Line(250000, Parity::Even, 7, StopBits::Two)},
      {"4000000,o,6,1.5", Line(4'000'000, Parity::Odd, 6, StopBits::OneAndHalf)},
      {"12000000,n,8,1", Line(12'000'000, Parity::None, 8, StopBits::One)},
      {"1,s,5,1", Line(1, Parity::Space, 5, StopBits::One)},
      {"19200", Line(19200, Parity::Mark, 5, StopBits::OneAndHalf)},
      {"19200,o", Line(19200, Parity::Odd, 5, StopBits::OneAndHalf)},
      {"300,m,5,1.5,x", Changed([](auto& s) { s.xonXoff = true, s.ctsFlow = false; })},
      {"300,m,5,1.5, P", Changed([](auto& s) { s.rtsToggle = true; })},
      {"baud=9600 parity=N data=8 stop=1", Line(9600, Parity::None, 8, StopBits::One)},
      {"  STOP = 2   Data=7 PARITY=e ", Line(300, Parity::Even, 7, StopBits::Two)},
      {"baud=1200 baud=2400", Line(2400, Parity::Mark, 5, StopBits::OneAndHalf)},
      {"xon=on octs=off odsr=ON to=on",
       Changed([](auto& s) { s.xonXoff = s.dsrFlow = true, s.ctsFlow = false; })},
      {"dtr=on rts=off", Changed([](auto& s) { s.dtr = true, s.rts = false; })},
      {"dtr=on rts=on dtr=hs rts=tg", Changed([](auto& s) { s.dtrFlow = s.rtsToggle = true; })},
      {"rts=hs dtr=hs rts=on dtr=off", Changed([](auto& s) { s.rts = true, s.dtr = false; })},
  };
  for (const auto& [text, expected] : cases) {
    SerialSettings settings = before;
    EXPECT_TRUE(BuildCommDcb(text, settings)) << text;
    EXPECT_EQ(settings, expected) << text;
  }
}

TEST(SerialSettings, ATextThatNoLineUnderstandsChangesNothing) {
  for (const std::string text : {"",
                                 " ",
                                 ",",
                                 "9600,",
                                 "9600,,8",
                                 "9600,n,8,1,",
                                 "9600,n,8,1,y",
                                 "9600,n,8,1,x,p",
                                 "0,n,8,1",
                                 "-9600,n,8,1",
                                 "+9600",
                                 "96OO",
                                 "9600.5",
                                 "99999999999999999999",
                                 "9600,x,8,1",
                                 "9600,none",
                                 "9600,n,4,1",
                                 "9600,n,9,1",
                                 "9600,n,08,1",
                                 "9600,n,8,0",
                                 "9600,n,8,3",
                                 "9600,n,8,1.50",
                                 "9600 n 8 1",
                                 "baud=",
                                 "baud=0",
                                 "baud",
                                 "baud=9600,parity=N",
                                 "baud=9600 speed=5",
                                 "baud=9600 parity",
                                 "parity=even",
                                 "data= stop=1",
                                 "=9600",
                                 "xon=yes",
                                 "xon=hs",
                                 "odsr=1",
                                 "dtr=tg",
                                 "rts=toggle",
                                 "to=5"}) {
    SerialSettings settings = before;
    EXPECT_FALSE(BuildCommDcb(text, settings)) << text;
    EXPECT_EQ(settings, before) << text;
  }
}

TEST(SerialSettings, ADriverThatTookSomethingElseIsFoundOut) {
  const SerialSettings wanted{.baud = 250000, .parity = Parity::Even, .dataBits = 7};
  const auto with = [&](auto change) {
    SerialSettings taken = wanted;
    change(taken);
    return RunsAs(taken, wanted);
  };
  EXPECT_TRUE(with([](auto& s) { s.baud = 245000; }));
  EXPECT_TRUE(with([](auto& s) { s.baud = 255000; }));
  EXPECT_TRUE(with([](auto& s) { s.rts = true; }));  // asked of the modem lines, not of the settings
  EXPECT_FALSE(with([](auto& s) { s.baud = 244999; }));
  EXPECT_FALSE(with([](auto& s) { s.baud = 255001; }));
  EXPECT_FALSE(with([](auto& s) { s.parity = Parity::None; }));
  EXPECT_FALSE(with([](auto& s) { s.dataBits = 8; }));
  EXPECT_FALSE(with([](auto& s) { s.stopBits = StopBits::Two; }));
  EXPECT_FALSE(with([](auto& s) { s.xonXoff = true; }));
  EXPECT_FALSE(with([](auto& s) { s.ctsFlow = true; }));
}

TEST(SerialSettings, ACharacterTakesItsBitsAndTheFrame) {
  using std::chrono::microseconds;
  EXPECT_EQ(CharacterTime({.baud = 10000}), microseconds(1000));
  EXPECT_EQ(CharacterTime({.baud = 10000, .parity = Parity::Odd, .dataBits = 7, .stopBits = StopBits::Two}),
            microseconds(1100));
}

}  // namespace
}  // namespace quarlin
