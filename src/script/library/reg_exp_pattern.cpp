// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/reg_exp_pattern.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "script/values/error.h"

namespace quarlin::vbs {
namespace {

enum PatternError : std::int32_t {
  unexpectedQuantifier = 5018,
  expectedBracket = 5019,
  expectedParenthesis = 5020,
  invalidRange = 5021,
};

constexpr std::uint32_t mostRepeats = 65535;
constexpr std::uint32_t endless = UINT32_MAX;

// The sets of characters that have a letter. Searching with all of Unicode, the library's own would hold
// far more than ASCII, so their characters are spelt out. The long s and the Kelvin sign count as word
// characters then, because without regard to case they are an s and a k.
struct LetterSet {
  char16_t letter;
  std::u16string_view own;
  std::u16string_view spelt;
};
constexpr std::u16string_view wordCharacters = u"0-9A-Z_a-z\\x{17f}\\x{212a}";
constexpr std::array letterSets = std::to_array<LetterSet>({
    {u'd', u"\\d", u"0-9"},
    {u'D', u"\\D", u"\\x{0}-\\x{2f}\\x{3a}-\\x{ffff}"},
    {u'w', u"\\w", wordCharacters},
    {u'W', u"\\W",
     u"\\x{0}-\\x{2f}\\x{3a}-\\x{40}\\x{5b}-\\x{5e}\\x{60}\\x{7b}-\\x{17e}\\x{180}-\\x{2129}\\x{212b}-"
     u"\\x{ffff}"},
    {u's', u"\\s", u"\\x{9}-\\x{d}\\x{20}"},
    {u'S', u"\\S", u"\\x{0}-\\x{8}\\x{e}-\\x{1f}\\x{21}-\\x{ffff}"},
});

struct ControlLetter {
  char16_t letter;
  char16_t code;
};
constexpr std::array controlLetters = std::to_array<ControlLetter>({
    {u'f', u'\f'},
    {u'n', u'\n'},
    {u'r', u'\r'},
    {u't', u'\t'},
    {u'v', u'\v'},
});

bool IsDigit(char16_t unit) {
  return unit >= u'0' && unit <= u'9';
}

bool IsOctal(char16_t unit) {
  return unit >= u'0' && unit <= u'7';
}

bool IsAsciiLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

std::optional<std::uint32_t> HexDigit(char16_t unit) {
  constexpr std::u16string_view lower = u"0123456789abcdef";
  constexpr std::u16string_view upper = u"0123456789ABCDEF";
  const std::size_t place = std::min(lower.find(unit), upper.find(unit));
  if (place == std::u16string_view::npos) return std::nullopt;
  return static_cast<std::uint32_t>(place);
}

bool GoesBeyondAscii(std::u16string_view pattern) {
  return std::any_of(pattern.begin(), pattern.end(), [](char16_t unit) { return unit > 0x7F; }) ||
         pattern.find(u"\\u") != pattern.npos || pattern.find(u"\\x") != pattern.npos;
}

// Back-references may stand in front of their group, so the groups are counted before anything else.
std::uint32_t CountGroups(std::u16string_view pattern) {
  std::uint32_t groups = 0;
  bool inSet = false;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char16_t unit = pattern[at];
    if (unit == u'\\') {
      ++at;
    } else if (inSet) {
      inSet = unit != u']';
    } else if (unit == u'[') {
      inSet = true;
    } else if (unit == u'(' && pattern.substr(at + 1, 1) != u"?") {
      ++groups;
    }
  }
  return groups;
}

class Translator {
 public:
  Translator(std::u16string_view pattern, bool unicode, bool watched)
      : pattern_(pattern), unicode_(unicode), watched_(watched), groups_(CountGroups(pattern)) {}

  std::u16string Translate();

  // How many parts of the pattern can match in several ways, or take as long as the text.
  std::size_t Choices() const { return choices_; }

 private:
  struct Repeats {
    std::uint32_t fewest;
    std::uint32_t most;
  };

  bool AtEnd() const { return at_ == pattern_.size(); }
  bool Sees(char16_t unit) const { return !AtEnd() && pattern_[at_] == unit; }
  bool Skip(std::u16string_view text);
  char16_t Take();  // error 5017 at the end

  void Term();
  void OpenGroup();
  void CloseGroup();
  void Quantifier(Repeats repeats);
  std::optional<Repeats> BracedRepeats();
  std::optional<std::uint32_t> Number();

  void Escape();
  void WordBoundary(bool boundary);
  void BackReferenceOrOctal();
  char16_t EscapedCharacter();
  char16_t HexCharacter(int digits);
  char16_t OctalCharacter();
  const LetterSet* TakeLetterSet();

  void Set();
  void SetItem();
  std::optional<char16_t> SetCharacter();

  void Choice();
  void Atom(std::u16string_view text);
  void Assertion(std::u16string_view text);
  void Literal(char16_t unit);

  std::u16string_view pattern_;
  bool unicode_;
  bool watched_;
  std::uint32_t groups_;
  std::size_t at_ = 0;
  std::size_t open_ = 0;  // groups around what comes next
  std::size_t choices_ = 0;
  bool maybeRepeated_ = false;  // a quantifier may stand here
  std::u16string out_;
};

std::u16string Translator::Translate() {
  while (!AtEnd()) Term();
  if (open_ != 0) throw ScriptError(expectedParenthesis);
  return std::move(out_);
}

bool Translator::Skip(std::u16string_view text) {
  if (!pattern_.substr(at_).starts_with(text)) return false;
  at_ += text.size();
  return true;
}

char16_t Translator::Take() {
  if (AtEnd()) throw ScriptError(regExpSyntax);
  return pattern_[at_++];
}

void Translator::Term() {
  const std::size_t begin = at_;
  switch (const char16_t unit = Take()) {
    case u'|':
      Assertion(u"|");
      return open_ == 0 ? void() : Choice();  // outside all groups the ways add up and do not multiply
    case u'^':
    case u'$':
      return Assertion({&unit, 1});
    case u'.':
      return Atom(u".");
    case u'(':
      return OpenGroup();
    case u')':
      return CloseGroup();
    case u'[':
      return Set();
    case u'\\':
      return Escape();
    case u'*':
      return Quantifier({0, endless});
    case u'+':
      return Quantifier({1, endless});
    case u'?':
      return Quantifier({0, 1});
    case u'{':
      if (const auto repeats = BracedRepeats()) return Quantifier(*repeats);
      at_ = begin + 1;
      [[fallthrough]];
    default:
      Literal(unit);
      maybeRepeated_ = true;
  }
}

void Translator::OpenGroup() {
  ++open_;
  if (Skip(u"?:")) return Assertion(u"(?:");
  if (Skip(u"?=")) return Assertion(u"(?=");
  if (Skip(u"?!")) return Assertion(u"(?!");
  if (Sees(u'?')) throw ScriptError(regExpSyntax);
  Assertion(u"(");
}

void Translator::CloseGroup() {
  if (open_ == 0) throw ScriptError(regExpSyntax);
  --open_;
  Atom(u")");
}

void Translator::Quantifier(Repeats repeats) {
  if (!maybeRepeated_) throw ScriptError(unexpectedQuantifier);
  if (repeats.most < repeats.fewest || repeats.fewest > mostRepeats) throw ScriptError(regExpSyntax);
  const auto append = [this](std::uint32_t number) {
    for (const char digit : std::to_string(number)) out_ += static_cast<char16_t>(digit);
  };
  out_ += u'{';
  append(repeats.fewest);
  out_ += u',';
  if (repeats.most <= mostRepeats) append(repeats.most);
  out_ += u'}';
  if (Skip(u"?")) out_ += u'?';
  maybeRepeated_ = false;
  if (repeats.fewest != repeats.most) return Choice();
  if (repeats.most > 1) ++choices_;  // the same way again and again: what is in it multiplies
}

// Behind "{": what is no count of repeats is an ordinary brace.
std::optional<Translator::Repeats> Translator::BracedRepeats() {
  const auto fewest = Number();
  if (!fewest) return std::nullopt;
  if (Skip(u"}")) return Repeats{*fewest, *fewest};
  if (!Skip(u",")) return std::nullopt;
  if (Skip(u"}")) return Repeats{*fewest, endless};
  const auto most = Number();
  if (!most || !Skip(u"}")) return std::nullopt;
  return Repeats{*fewest, *most};
}

std::optional<std::uint32_t> Translator::Number() {
  if (AtEnd() || !IsDigit(pattern_[at_])) return std::nullopt;
  std::uint32_t number = 0;
  for (; !AtEnd() && IsDigit(pattern_[at_]); ++at_) {
    number = std::min<std::uint32_t>(number * 10 + (pattern_[at_] - u'0'), mostRepeats + 1);
  }
  return number;
}

void Translator::Escape() {
  if (const LetterSet* set = TakeLetterSet()) {
    if (!unicode_) return Atom(set->own);
    return Atom(std::u16string(u"[").append(set->spelt).append(u"]"));
  }
  if (Skip(u"b")) return WordBoundary(true);
  if (Skip(u"B")) return WordBoundary(false);
  if (!AtEnd() && pattern_[at_] >= u'1' && pattern_[at_] <= u'9') {
    BackReferenceOrOctal();
  } else {
    Literal(EscapedCharacter());
  }
  maybeRepeated_ = true;
}

void Translator::WordBoundary(bool boundary) {
  if (!unicode_) return Assertion(boundary ? u"\\b" : u"\\B");
  const std::u16string word = std::u16string(u"[").append(wordCharacters).append(u"]");
  const std::u16string_view afterWord = boundary ? u"(?!" : u"(?=";
  const std::u16string_view afterOther = boundary ? u"(?=" : u"(?!";
  std::u16string text = u"(?:(?<=" + word + u")";
  text.append(afterWord).append(word).append(u")|(?<!").append(word).append(u")");
  text.append(afterOther).append(word).append(u"))");
  Assertion(text);
}

// "\12" is the twelfth group where there are so many, else the first with a 2 behind it; without that
// group it is a character by its octal code.
void Translator::BackReferenceOrOctal() {
  std::uint32_t group = 0;
  std::size_t end = at_;
  for (std::size_t next = at_; next < pattern_.size() && IsDigit(pattern_[next]); ++next) {
    const std::uint32_t longer = group * 10 + (pattern_[next] - u'0');
    if (longer > groups_) break;
    group = longer;
    end = next + 1;
  }
  if (group == 0) return Literal(EscapedCharacter());
  out_ += u"\\g{";
  for (const char digit : std::to_string(group)) out_ += static_cast<char16_t>(digit);
  out_ += u'}';
  at_ = end;
  ++choices_;
}

// Behind a backslash. A letter without a meaning is refused, since it would have one elsewhere.
char16_t Translator::EscapedCharacter() {
  const char16_t unit = Take();
  for (const ControlLetter& row : controlLetters) {
    if (row.letter == unit) return row.code;
  }
  if (unit == u'x') return HexCharacter(2);
  if (unit == u'u') return HexCharacter(4);
  if (unit == u'c') {
    const char16_t letter = Take();
    if (!IsAsciiLetter(letter)) throw ScriptError(regExpSyntax);
    return static_cast<char16_t>(letter & 0x1F);
  }
  if (IsOctal(unit)) {
    --at_;
    return OctalCharacter();
  }
  if (IsAsciiLetter(unit)) throw ScriptError(regExpSyntax);
  return unit;
}

char16_t Translator::HexCharacter(int digits) {
  std::uint32_t code = 0;
  for (int count = 0; count < digits; ++count) {
    const auto digit = HexDigit(Take());
    if (!digit) throw ScriptError(regExpSyntax);
    code = code * 16 + *digit;
  }
  return static_cast<char16_t>(code);
}

char16_t Translator::OctalCharacter() {
  constexpr std::uint32_t greatest = 0xFF;
  std::uint32_t code = 0;
  while (!AtEnd() && IsOctal(pattern_[at_])) {
    const std::uint32_t longer = code * 8 + (pattern_[at_] - u'0');
    if (longer > greatest) break;
    code = longer;
    ++at_;
  }
  return static_cast<char16_t>(code);
}

const LetterSet* Translator::TakeLetterSet() {
  for (const LetterSet& set : letterSets) {
    if (!Sees(set.letter)) continue;
    ++at_;
    return &set;
  }
  return nullptr;
}

// Behind "[". The searching library would take a "]" right behind it for a character, so the empty set
// and its opposite are written in other words.
void Translator::Set() {
  const bool negated = Skip(u"^");
  if (Skip(u"]")) return Atom(negated ? u"[\\x{0}-\\x{ffff}]" : u"(?!)");
  out_ += negated ? u"[^" : u"[";
  while (!Skip(u"]")) SetItem();
  Atom(u"]");
}

// A character, a range, or a set that has a letter. A "-" beside such a set stands for itself.
void Translator::SetItem() {
  const auto first = SetCharacter();
  if (!first) return;
  Literal(*first);
  const bool range = Sees(u'-') && pattern_.substr(at_ + 1, 1) != u"]";
  if (!range) return;
  ++at_;
  const std::size_t length = out_.size();
  const auto last = SetCharacter();
  if (!last) {
    out_.insert(length, u"\\-");
    return;
  }
  if (*last < *first) throw ScriptError(invalidRange);
  out_ += u'-';
  Literal(*last);
}

// Nothing when it was a set that has a letter, which is then written already.
std::optional<char16_t> Translator::SetCharacter() {
  if (AtEnd()) throw ScriptError(expectedBracket);
  const char16_t unit = Take();
  if (unit != u'\\') return unit;
  if (const LetterSet* set = TakeLetterSet()) {
    out_ += unicode_ ? set->spelt : set->own;
    return std::nullopt;
  }
  if (Skip(u"b")) return u'\b';
  return EscapedCharacter();
}

void Translator::Choice() {
  ++choices_;
  if (watched_) out_ += u"(?C)";
}

void Translator::Atom(std::u16string_view text) {
  out_ += text;
  maybeRepeated_ = true;
}

void Translator::Assertion(std::u16string_view text) {
  out_ += text;
  maybeRepeated_ = false;
}

void Translator::Literal(char16_t unit) {
  if (unit > 0x7F || IsDigit(unit) || IsAsciiLetter(unit)) {
    out_ += unit;
    return;
  }
  constexpr std::u16string_view digits = u"0123456789abcdef";
  out_ += u"\\x{";
  out_ += digits[unit >> 4];
  out_ += digits[unit & 0xF];
  out_ += u'}';
}

}  // namespace

SearchPattern TranslatePattern(std::u16string_view pattern, bool ignoreCase) {
  const bool unicode = ignoreCase && GoesBeyondAscii(pattern);
  Translator plain(pattern, unicode, false);
  std::u16string text = plain.Translate();
  if (plain.Choices() > 1) text = Translator(pattern, unicode, true).Translate();
  return {std::move(text), unicode};
}

}  // namespace quarlin::vbs
