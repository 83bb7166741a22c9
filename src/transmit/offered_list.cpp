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
  if (file.lines.size() > mostEntries) {
    file.lines.resize(mostEntries);
    trouble = fmt::format("{} has many lines; the first {} are offered", name_, mostEntries);
  }
  fromFile_ = std::move(file.lines);
  Offer();
  return trouble;
}

void OfferedList::SetEntriesBehind(std::vector<std::string> entries) {
  behind_ = std::move(entries);
  Offer();
}

void OfferedList::ChooseFirst() {
  if (box_.Text().empty() && !fromFile_.empty()) box_.SetText(fromFile_.front());
}

void OfferedList::Offer() {
  std::vector<std::string> entries = fromFile_;
  const std::unordered_set<std::string_view> known(fromFile_.begin(), fromFile_.end());
  for (const std::string& entry : behind_) {
    if (!known.contains(entry)) entries.push_back(entry);
  }
  if (entries != box_.List()) box_.SetList(std::move(entries));
}

}  // namespace quarlin
