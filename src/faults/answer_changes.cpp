// SPDX-License-Identifier: GPL-3.0-or-later
#include "faults/answer_changes.h"

#include <algorithm>

namespace quarlin {
namespace {

constexpr std::size_t mostMissing = 3;

constexpr std::string_view upperDigits = "0123456789ABCDEF";
constexpr std::string_view lowerDigits = "0123456789abcdef";
constexpr std::string_view printable =
    " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~";

void Replace(char& victim, std::string_view choice, std::string_view never, Chance& chance) {
  char other = victim;
  while (other == victim || never.find(other) != std::string_view::npos) other = chance.OneOf(choice);
  victim = other;
}

std::string_view DigitsLike(std::string_view checksum) {
  return checksum.find_first_of("abcdef") == std::string_view::npos ? upperDigits : lowerDigits;
}

}  // namespace

bool Garble(std::string& text, std::string_view never, Chance& chance) {
  if (text.empty()) return false;
  Replace(text[chance.Below(text.size())], printable, never, chance);
  return true;
}

bool Truncate(std::string& text, std::size_t least, Chance& chance) {
  if (text.size() <= least) return false;
  const std::size_t most = std::min(mostMissing, text.size() - least);
  text.resize(text.size() - 1 - chance.Below(most));
  return true;
}

bool SpoilChecksum(std::string& text, std::size_t length, Chance& chance) {
  if (length == 0 || text.size() < length) return false;
  const std::size_t first = text.size() - length;
  const std::string_view choice = length == 1 ? printable : DigitsLike(std::string_view(text).substr(first));
  Replace(text[first + chance.Below(length)], choice, "", chance);
  return true;
}

}  // namespace quarlin
