// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/serial_settings.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <system_error>

#include "base/text.h"

namespace quarlin {
namespace {

// Each reader changes what its value names and refuses a value that no line has.
using Reader = bool (*)(std::string_view value, SerialSettings& settings);

bool ReadBaud(std::string_view value, SerialSettings& settings) {
  std::uint32_t rate = 0;
  const char* const end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, rate);
  if (error != std::errc() || stop != end || rate == 0) return false;
  settings.baud = rate;
  return true;
}

bool ReadParity(std::string_view value, SerialSettings& settings) {
  struct Letter {
    std::string_view letter;
    Parity parity;
  };
  static constexpr std::array<Letter, 5> letters{{{"N", Parity::None},
                                                  {"E", Parity::Even},
                                                  {"O", Parity::Odd},
                                                  {"M", Parity::Mark},
                                                  {"S", Parity::Space}}};
  for (const Letter& row : letters) {
    if (!EqualsIgnoringCase(row.letter, value)) continue;
    settings.parity = row.parity;
    return true;
  }
  return false;
}

bool ReadDataBits(std::string_view value, SerialSettings& settings) {
  if (value.size() != 1 || value[0] < '5' || value[0] > '8') return false;
  settings.dataBits = value[0] - '0';
  return true;
}

bool ReadStopBits(std::string_view value, SerialSettings& settings) {
  if (value == "1") {
    settings.stopBits = StopBits::One;
  } else if (value == "1.5") {
    settings.stopBits = StopBits::OneAndHalf;
  } else if (value == "2") {
    settings.stopBits = StopBits::Two;
  } else {
    return false;
  }
  return true;
}

// The last field of the short form: one handshake in place of the other.
bool ReadHandshake(std::string_view value, SerialSettings& settings) {
  const bool software = EqualsIgnoringCase(value, "x");
  const bool lines = EqualsIgnoringCase(value, "p");
  if (software == lines) return false;
  settings.xonXoff = software;
  settings.ctsFlow = lines;
  settings.rtsToggle = lines;
  return true;
}

std::optional<bool> OnOrOff(std::string_view value) {
  if (EqualsIgnoringCase(value, "on")) return true;
  if (EqualsIgnoringCase(value, "off")) return false;
  return std::nullopt;
}

template <bool SerialSettings::*member>
bool ReadSwitch(std::string_view value, SerialSettings& settings) {
  const std::optional<bool> on = OnOrOff(value);
  if (on) settings.*member = *on;
  return on.has_value();
}

// An output line is either held on or off, or follows the traffic.
bool ReadDtr(std::string_view value, SerialSettings& settings) {
  settings.dtr = OnOrOff(value);
  settings.dtrFlow = EqualsIgnoringCase(value, "hs");
  return settings.dtr || settings.dtrFlow;
}

bool ReadRts(std::string_view value, SerialSettings& settings) {
  settings.rts = OnOrOff(value);
  settings.rtsToggle = EqualsIgnoringCase(value, "hs") || EqualsIgnoringCase(value, "tg");
  return settings.rts || settings.rtsToggle;
}

// Waiting without end is the business of whoever reads and writes; the line has nothing to set.
bool ReadTimeouts(std::string_view value, SerialSettings&) {
  return OnOrOff(value).has_value();
}

constexpr std::array<Reader, 5> shortForm{ReadBaud, ReadParity, ReadDataBits, ReadStopBits, ReadHandshake};

struct Key {
  std::string_view name;
  Reader read;
};

constexpr std::array<Key, 10> keys{{
    {"baud", ReadBaud},
    {"parity", ReadParity},
    {"data", ReadDataBits},
    {"stop", ReadStopBits},
    {"xon", ReadSwitch<&SerialSettings::xonXoff>},
    {"odsr", ReadSwitch<&SerialSettings::dsrFlow>},
    {"octs", ReadSwitch<&SerialSettings::ctsFlow>},
    {"dtr", ReadDtr},
    {"rts", ReadRts},
    {"to", ReadTimeouts},
}};

bool ReadShortForm(std::string_view text, SerialSettings& settings) {
  for (const Reader read : shortForm) {
    const std::size_t comma = text.find(',');
    if (!read(TrimBlanks(text.substr(0, comma)), settings)) return false;
    if (comma == std::string_view::npos) return true;
    text.remove_prefix(comma + 1);
  }
  return false;  // a field too many
}

bool ReadKey(std::string_view name, std::string_view value, SerialSettings& settings) {
  for (const Key& key : keys) {
    if (EqualsIgnoringCase(key.name, name)) return key.read(value, settings);
  }
  return false;
}

bool ReadLongForm(std::string_view text, SerialSettings& settings) {
  while (!text.empty()) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) return false;
    const std::string_view name = TrimBlanks(text.substr(0, equals));
    text = TrimBlanks(text.substr(equals + 1));
    const std::string_view value = text.substr(0, text.find(' '));
    if (!ReadKey(name, value, settings)) return false;
    text.remove_prefix(value.size());
  }
  return true;
}

}  // namespace

std::string_view NameOf(FlowControl flow) {
  constexpr std::array<std::string_view, 3> names{"none", "RTS/CTS", "XON/XOFF"};
  return names.at(static_cast<std::size_t>(flow));
}

void AddFlowControl(FlowControl flow, SerialSettings& settings) {
  if (flow == FlowControl::XonXoff) settings.xonXoff = true;
  if (flow == FlowControl::RtsCts) settings.ctsFlow = settings.rtsToggle = true;
}

bool BuildCommDcb(std::string_view text, SerialSettings& settings) {
  text = TrimBlanks(text);
  SerialSettings changed = settings;
  const bool longForm = text.find('=') != std::string_view::npos;
  if (!(longForm ? ReadLongForm(text, changed) : ReadShortForm(text, changed))) return false;
  settings = changed;
  return true;
}

bool RunsAs(const SerialSettings& taken, const SerialSettings& wanted) {
  return std::abs(double(taken.baud) - wanted.baud) <= 0.02 * wanted.baud && taken.parity == wanted.parity &&
         taken.dataBits == wanted.dataBits && taken.stopBits == wanted.stopBits &&
         taken.xonXoff == wanted.xonXoff && taken.ctsFlow == wanted.ctsFlow;
}

Duration CharacterTime(const SerialSettings& settings) {
  const int bits = 1 + settings.dataBits + (settings.parity == Parity::None ? 0 : 1) +
                   (settings.stopBits == StopBits::One ? 1 : 2);
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(double(bits) / settings.baud));
}

}  // namespace quarlin
