// SPDX-License-Identifier: GPL-3.0-or-later
// What a combo box offers: the entries of a file of the program folder, one a line, and behind them those
// that the program has gathered itself. What a script adds stands between the two, and what it removes stays
// away until the file changes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/program_folder.h"
#include "controls/controls.h"

namespace quarlin {

class OfferedList {
 public:
  static constexpr std::size_t mostEntries = 10'000;  // of the file; more could not be looked through

  OfferedList(ComboBox& box, ProgramFolder folder, std::string_view name);

  // Takes the file as it is now; one that cannot be read leaves the list as it was. The text of the box
  // stays. Returns what is wrong with the file, or nothing.
  std::string Refill();

  // Behind the entries of the file, in this order; one that the file has as well is not offered twice.
  void SetEntriesBehind(std::vector<std::string> entries);

  // An empty box gets the first entry of the file.
  void ChooseFirst();

 private:
  void Offer(const std::vector<std::string>& foreign);
  std::vector<std::string> TakeForeign();

  ComboBox& box_;
  ProgramFolder folder_;
  std::string name_;
  std::vector<std::string> fromFile_;
  std::vector<std::string> behind_;
  std::vector<std::string> offered_;         // by us, and still there as far as we know
  std::unordered_set<std::string> removed_;  // by somebody else
};

}  // namespace quarlin
