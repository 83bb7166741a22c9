// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/scale.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>

#include "base/text.h"

namespace quarlin::instrument {

namespace {

struct Unit {
  std::string_view name;
  double perGram;
  int decimals;
  long long scale;  // 10 to the power of the decimals
};

constexpr std::array<Unit, 3> units{
    {{"kg", 0.001, 3, 1000}, {"g", 1, 1, 10}, {"lb", 1 / 453.59237, 3, 1000}}};

}  // namespace

struct Scale::Command {
  std::string_view request;
  std::string (Scale::*answer)(Instant now);
};

Scale::Scale(std::uint64_t seed, Instant start)
    : load_(seed, start), serialNumber_((18452300 + seed * 7919) % 100'000'000) {}

std::optional<std::string> Scale::Answer(std::string_view request, Instant now) {
  static constexpr std::array<Command, 6> commands{{{"READ", &Scale::Weight},
                                                    {"TARE", &Scale::Tare},
                                                    {"ZERO", &Scale::Zero},
                                                    {"SN", &Scale::SerialNumber},
                                                    {"UNIT", &Scale::NextUnit},
                                                    {"VER", &Scale::Version}}};
  for (const auto& command : commands) {
    if (EqualsIgnoringCase(request, command.request)) return (this->*command.answer)(now);
  }
  return std::nullopt;
}

// The scale resolves whole grams. Rounding comes before the sign, so that nothing is ever shown as -0.
std::string Scale::Weight(Instant now) {
  const Reading reading = load_.At(now);
  const Unit& unit = units[unit_];
  const double grams = std::round(reading.grams - zero_ - tare_.value_or(0));
  const auto scaled = std::llround(grams * unit.perGram * static_cast<double>(unit.scale));
  const auto size = std::llabs(scaled);
  return fmt::format("{},{},{}{:0{}}.{:0{}} {:>2}", reading.stable ? "ST" : "US", tare_ ? "NT" : "GS",
                     scaled < 0 ? '-' : '+', size / unit.scale, 8 - unit.decimals, size % unit.scale,
                     unit.decimals, unit.name);
}

std::string Scale::Tare(Instant now) {
  tare_ = load_.At(now).grams - zero_;
  return "TARE OK";
}

std::string Scale::Zero(Instant now) {
  zero_ = load_.At(now).grams;
  tare_.reset();
  return "ZERO OK";
}

std::string Scale::SerialNumber(Instant /*now*/) {
  return fmt::format("SN,{:08}", serialNumber_);
}

std::string Scale::NextUnit(Instant /*now*/) {
  unit_ = (unit_ + 1) % units.size();
  return fmt::format("UNIT,{}", units[unit_].name);
}

std::string Scale::Version(Instant /*now*/) {
  return "VER,1.00";
}

}  // namespace quarlin::instrument
