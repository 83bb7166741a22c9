// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/offered_list.h"

#include <fmt/format.h>

#include <unordered_set>
#include <utility>

#include "transmit/line_files.h"

namespace quarlin {

OfferedList::OfferedList(ComboBox& box, ProgramFolder folder, std::string_view name)
    : box_(box), folder_(std::move(folder)), name_(name) {}

std::string OfferedList::Refill() {
  LineFile file = ReadLineFile(folder_, name_);
  std::string trouble = file.Trouble(name_);
  if (file.error && file.error != std::errc::no_such_file_or_directory) return trouble;
  if (file.lines.size() > mostEntries) {
    file.lines.resize(mostEntries);
    trouble = fmt::format("{} has many lines; the first {} are offered", name_, mostEntries);
  }
  fromFile_ = std::move(file.lines);
  const std::vector<std::string> foreign = TakeForeign();
  removed_.clear();
  Offer(foreign);
  return trouble;
}

void OfferedList::SetEntriesBehind(std::vector<std::string> entries) {
  behind_ = std::move(entries);
  Offer(TakeForeign());
}

void OfferedList::ChooseFirst() {
  if (box_.Text().empty() && !fromFile_.empty()) box_.SetText(fromFile_.front());
}

// Those that the box has from somebody else. Ours that it has no longer are noted.
std::vector<std::string> OfferedList::TakeForeign() {
  std::unordered_set<std::string_view> missing(offered_.begin(), offered_.end());
  const std::unordered_set<std::string_view> ours = missing;
  std::vector<std::string> foreign;
  for (const std::string& entry : box_.List()) {
    missing.erase(entry);
    if (!ours.contains(entry)) foreign.push_back(entry);
  }
  for (const std::string_view entry : missing) removed_.emplace(entry);
  return foreign;
}

void OfferedList::Offer(const std::vector<std::string>& foreign) {
  offered_.clear();
  std::unordered_set<std::string_view> known(foreign.begin(), foreign.end());
  for (const std::string& entry : fromFile_) {
    if (!removed_.contains(entry)) offered_.push_back(entry);
  }
  std::vector<std::string> entries = offered_;
  known.insert(offered_.begin(), offered_.end());
  std::vector<std::string> last;
  for (const std::string& entry : behind_) {
    if (!removed_.contains(entry) && known.insert(entry).second) last.push_back(entry);
  }
  entries.insert(entries.end(), foreign.begin(), foreign.end());
  entries.insert(entries.end(), last.begin(), last.end());
  offered_.insert(offered_.end(), last.begin(), last.end());
  if (entries != box_.List()) box_.SetList(std::move(entries));
}

}  // namespace quarlin
