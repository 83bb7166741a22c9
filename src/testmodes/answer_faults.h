// SPDX-License-Identifier: GPL-3.0-or-later
// Faults that the dialog test puts into its answers on purpose, so that the other side can be tried against
// a bad instrument. One entry of the table is a list such as
//
//   drop 0.1, delay 200, jitter 50, truncate every 5, garble 0.02, double 0.01, checksum 0.05, seed 7
//
// (docs/dialog.md tells the user what each one does).
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "faults/chance.h"

namespace quarlin {

// The faults that strike now and then, in the order in which they are tried.
enum class Fault : std::size_t { Drop, Checksum, Garble, Truncate, Double };
inline constexpr std::size_t faultKinds = 5;

std::string_view FaultWord(Fault fault);  // as in "answer dropped"

struct FaultCounts {
  std::array<std::uint64_t, faultKinds> struck{};
  std::uint64_t delayed = 0;
  std::uint64_t discarded = 0;  // delayed answers that were never sent

  std::uint64_t Of(Fault fault) const { return struck[static_cast<std::size_t>(fault)]; }

  // Those that occurred, as in "3 dropped, 12 delayed"; empty when none did.
  std::string Sum() const;
};

// How often something happens: at each n-th request, or by chance.
struct FaultRate {
  double probability = 0;
  std::uint32_t every = 0;  // 0: by chance
  std::uint32_t requests = 0;
};

// What becomes of one answer.
struct FaultyAnswer {
  std::string text;
  std::vector<Fault> faults;  // those that struck, in their order
  std::chrono::milliseconds delay{0};

  bool Has(Fault fault) const;
};

// The faults of one entry, with their own counts and their own chance.
class FaultPlan {
 public:
  // Nothing when the entry cannot be read as a whole.
  static std::optional<FaultPlan> Read(std::string_view entry);

  // `terminator` will follow the answer; no fault makes one inside it.
  FaultyAnswer Apply(std::string answer, std::string_view terminator);

 private:
  struct Pause {
    std::uint32_t milliseconds = 0;
    FaultRate rate{.probability = 1};
  };

  bool ReadItem(std::string_view item);
  bool Strikes(FaultRate& rate);
  bool Change(Fault fault, std::string& answer, std::string_view terminator);
  std::chrono::milliseconds Delay();

  std::array<FaultRate, faultKinds> rates_{};
  Pause delay_;
  Pause jitter_;
  SmallChance chance_{1};
};

}  // namespace quarlin
