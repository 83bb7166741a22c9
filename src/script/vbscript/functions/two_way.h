// SPDX-License-Identifier: GPL-3.0-or-later
// Finding one sequence in another in a time that grows with the sum of their lengths, whatever they hold.
//
// What is sought is cut in two at a place where no period of one half reaches across. The right half is
// compared first, from left to right: a difference in it moves the sequence on by all that agreed. Then the
// left half: a difference there moves it on by the period of the whole. No item is looked at more often than
// a few times, and nothing is needed beside three numbers.
#pragma once

#include <algorithm>
#include <cstddef>

namespace quarlin::vbs {

class TwoWay {
 public:
  static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

  // `sought(0)` to `sought(length - 1)` are the items sought; at least one.
  template <class Sought>
  TwoWay(std::size_t length, Sought sought) : length_(length) {
    const Cut one = LatestSuffix(length, [&](std::size_t a, std::size_t b) { return sought(a) < sought(b); });
    const Cut other =
        LatestSuffix(length, [&](std::size_t a, std::size_t b) { return sought(b) < sought(a); });
    const Cut cut = one.place > other.place ? one : other;
    cut_ = cut.place;
    period_ = cut.period;
    for (std::size_t i = 0; i < cut_ && repeats_; ++i) {
      repeats_ = i + period_ < length && sought(i) == sought(i + period_);
    }
    if (!repeats_) period_ = std::max(cut_, length - cut_) + 1;
  }

  // The first place in `where(0)` to `where(size - 1)` at which all of it stands. `sought` as above, and
  // `done(n)` is told of the work, n items at a time.
  template <class Where, class Sought, class Done>
  std::size_t Find(std::size_t size, Where where, Sought sought, Done done) const {
    std::size_t known = 0;  // items at the front that agree, from the step before
    for (std::size_t place = 0; place + length_ <= size;) {
      if (known == 0) {
        const std::size_t end = std::min(size - length_, place + longestSkip);
        const std::size_t begin = place;
        while (place < end && !(sought(cut_) == where(place + cut_))) ++place;
        done(place - begin);
      }
      std::size_t right = std::max(cut_, known);
      const std::size_t begin = right;
      while (right < length_ && sought(right) == where(place + right)) ++right;
      done(right - begin + 1);
      if (right < length_) {
        place += right - cut_ + 1;
        known = 0;
        continue;
      }
      std::size_t left = cut_;
      while (left > known && sought(left - 1) == where(place + left - 1)) --left;
      done(cut_ - std::min(left, cut_) + 1);
      if (left <= known) return place;
      place += period_;
      known = repeats_ ? length_ - period_ : 0;
    }
    return nowhere;
  }

 private:
  static constexpr std::size_t longestSkip = std::size_t{1} << 16;  // between two calls of `done`

  struct Cut {
    std::size_t place;   // where the suffix begins
    std::size_t period;  // of the suffix
  };

  // The suffix that comes last in the order of `less`, and how often it repeats itself.
  template <class Less>
  static Cut LatestSuffix(std::size_t length, Less less) {
    std::size_t best = 0;
    std::size_t period = 1;
    std::size_t agreeing = 0;
    for (std::size_t other = 1; other + agreeing < length;) {
      if (less(other + agreeing, best + agreeing)) {
        other += agreeing + 1;
        agreeing = 0;
        period = other - best;
      } else if (less(best + agreeing, other + agreeing)) {
        best = other++;
        agreeing = 0;
        period = 1;
      } else if (agreeing + 1 == period) {
        other += period;
        agreeing = 0;
      } else {
        ++agreeing;
      }
    }
    return {best, period};
  }

  std::size_t length_;
  std::size_t cut_ = 0;
  std::size_t period_ = 1;
  bool repeats_ = true;  // the left half goes on with the period of the right one
};

}  // namespace quarlin::vbs
