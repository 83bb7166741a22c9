// SPDX-License-Identifier: GPL-3.0-or-later
// Searching texts for a pattern: compiled once, searched with a bound on the effort and with a look at
// whether the script may go on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "script/values/heap_share.h"
#include "script/values/services.h"

namespace quarlin::vbs {

class CompiledPattern {
 public:
  struct Flags {
    bool ignoreCase = false;
    bool multiLine = false;  // ^ and $ match at every line, not at the ends of the text only
  };

  // Errors 5017 to 5021, see TranslatePattern.
  CompiledPattern(std::u16string_view pattern, Flags flags);
  ~CompiledPattern();

  std::uint32_t Groups() const { return groups_; }

 private:
  friend class PatternSearch;
  struct Code;
  std::unique_ptr<Code> code_;
  std::uint32_t groups_ = 0;
  HeapShare share_;
};

// One text being searched, which must outlive the search.
class PatternSearch {
 public:
  static constexpr std::size_t unmatched = static_cast<std::size_t>(-1);

  PatternSearch(std::shared_ptr<const CompiledPattern> pattern, std::u16string_view text, Services& services);
  ~PatternSearch();

  // The first match, and from then on the first behind the end of the last one. Asks the services again
  // and again whether to go on; when not, a final error. Error 7 when the pattern would try for ever.
  bool FindNext();

  // How many groups the pattern has beside the match itself.
  std::uint32_t Groups() const { return pattern_->Groups(); }

  // Of the match just found; group 0 is all of it.
  std::size_t Begin(std::uint32_t group = 0) const;  // unmatched for a group that took no part
  std::size_t End(std::uint32_t group = 0) const;
  std::u16string_view Text(std::uint32_t group = 0) const;

 private:
  struct State;

  bool FindFrom(std::size_t start);
  bool Try(std::size_t firstStart, std::size_t lastStart);

  std::shared_ptr<const CompiledPattern> pattern_;
  std::u16string_view text_;
  Services& services_;
  std::unique_ptr<State> state_;
  std::size_t next_ = 0;   // where the next match may begin
  std::size_t found_ = 0;  // matches so far
};

}  // namespace quarlin::vbs
