// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/vbscript/functions/text_search.h"

#include <algorithm>

#include "script/values/conversions.h"

namespace quarlin::vbs {
namespace {

constexpr char16_t endOfAscii = 0x80;

// Most searches are of a few characters, or find something soon: there, preparing would cost more than it
// saves. This many places are looked at without.
constexpr std::size_t nearPlaces = 256;
constexpr std::size_t longestUnprepared = 32;

char16_t Folded(char16_t unit) {
  if (unit >= endOfAscii) return LowerOf(unit);
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

bool SameFolded(char16_t unit, char16_t folded) {
  return unit == folded || Folded(unit) == folded;
}

}  // namespace

SoughtText::SoughtText(std::u16string_view text, bool ignoreCase, Services& services)
    : ignoreCase_(ignoreCase), text_(text), pace_(services) {
  if (!ignoreCase) return;
  folded_.resize(text.size());
  std::transform(text.begin(), text.end(), folded_.begin(), Folded);
  text_ = folded_;
}

std::size_t SoughtText::FindIn(std::u16string_view where, std::size_t from) {
  pace_.Done(1);
  if (from > where.size() || text_.size() > where.size() - from) return nowhere;
  const std::size_t places = where.size() - from - text_.size() + 1;
  std::size_t found = nowhere;
  if (text_.size() <= longestUnprepared) {
    const std::size_t nearby = std::min(places, nearPlaces);
    found = FindNear(where.substr(0, from + nearby + text_.size() - 1), from);
    if (found == nowhere && nearby < places) found = FindFar(where, from + nearby);
  } else {
    found = FindFar(where, from);
  }
  return found;
}

std::size_t SoughtText::FindLastIn(std::u16string_view where) {
  if (text_.size() > where.size()) return nowhere;
  const std::size_t places = where.size() - text_.size() + 1;
  if (text_.size() > longestUnprepared) return FindLastFar(where);
  const std::size_t nearby = std::min(places, nearPlaces);
  const std::size_t begin = places - nearby;
  const std::size_t found = FindLastNear(where.substr(begin));
  if (found != nowhere) return begin + found;
  return begin == 0 ? nowhere : FindLastFar(where.substr(0, begin + text_.size() - 1));
}

// The text searched is folded unit by unit on the way: a copy of it would make a loop over all places
// in a long text quadratic.
std::size_t SoughtText::FindNear(std::u16string_view where, std::size_t from) const {
  if (!ignoreCase_) return where.find(text_, from);
  const auto start = where.begin() + static_cast<std::ptrdiff_t>(from);
  const auto found = std::search(start, where.end(), text_.begin(), text_.end(), SameFolded);
  if (found == where.end() && !text_.empty()) return nowhere;
  return static_cast<std::size_t>(found - where.begin());
}

std::size_t SoughtText::FindLastNear(std::u16string_view where) const {
  if (!ignoreCase_) return where.rfind(text_);
  const auto found = std::find_end(where.begin(), where.end(), text_.begin(), text_.end(), SameFolded);
  if (found == where.end() && !text_.empty()) return nowhere;
  return static_cast<std::size_t>(found - where.begin());
}

std::size_t SoughtText::FindFar(std::u16string_view where, std::size_t from) {
  const auto sought = [this](std::size_t place) { return text_[place]; };
  const auto done = [this](std::size_t count) { pace_.Done(count); };
  if (!forwards_) forwards_.emplace(text_.size(), sought);
  const std::u16string_view rest = where.substr(from);
  const std::size_t found =
      ignoreCase_ ? forwards_->Find(
                        rest.size(), [&](std::size_t place) { return Folded(rest[place]); }, sought, done)
                  : forwards_->Find(
                        rest.size(), [&](std::size_t place) { return rest[place]; }, sought, done);
  return found == TwoWay::nowhere ? nowhere : from + found;
}

std::size_t SoughtText::FindLastFar(std::u16string_view where) {
  const auto sought = [this](std::size_t place) { return text_[text_.size() - 1 - place]; };
  const auto done = [this](std::size_t count) { pace_.Done(count); };
  const auto fromEnd = [&](std::size_t place) { return where[where.size() - 1 - place]; };
  if (!backwards_) backwards_.emplace(text_.size(), sought);
  const std::size_t found =
      ignoreCase_ ? backwards_->Find(
                        where.size(), [&](std::size_t place) { return Folded(fromEnd(place)); }, sought, done)
                  : backwards_->Find(where.size(), fromEnd, sought, done);
  return found == TwoWay::nowhere ? nowhere : where.size() - found - text_.size();
}

std::size_t FindBytes(std::u16string_view where, std::u16string_view what, std::size_t from, bool ignoreCase,
                      Services& services) {
  constexpr std::size_t bytesInUnit = 2;
  constexpr unsigned bitsInByte = 8;
  const auto byteOf = [ignoreCase](std::u16string_view text, std::size_t place) {
    const char16_t unit = text[place / bytesInUnit];
    const unsigned bits = ignoreCase ? Folded(unit) : unit;
    return place % bytesInUnit == 0 ? bits & 0xFFU : bits >> bitsInByte;
  };
  Pace pace(services);
  const auto sought = [&](std::size_t place) { return byteOf(what, place); };
  const std::size_t size = where.size() * bytesInUnit;
  if (from >= size) return SoughtText::nowhere;
  const std::size_t found =
      TwoWay(what.size() * bytesInUnit, sought)
          .Find(
              size - from, [&](std::size_t place) { return byteOf(where, from + place); }, sought,
              [&](std::size_t count) { pace.Done(count); });
  return found == TwoWay::nowhere ? SoughtText::nowhere : from + found;
}

}  // namespace quarlin::vbs
