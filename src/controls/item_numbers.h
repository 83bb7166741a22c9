// SPDX-License-Identifier: GPL-3.0-or-later
// What a script notes beside each entry of a list: one number, 0 at first, which goes where its entry goes.
#pragma once

#include <cstdint>
#include <vector>

namespace quarlin {

class ItemNumbers {
 public:
  std::int32_t At(int index) const;  // 0 where there is none
  void Set(int index, std::int32_t number);

  void Inserted(int index);
  void Removed(int index);
  void Cleared();

  // The entry that was added last; -1 when one was removed since, or none was ever added.
  int Newest() const { return newest_; }

 private:
  std::vector<std::int32_t> numbers_;  // may end before the list does
  int newest_ = -1;
};

}  // namespace quarlin
