// SPDX-License-Identifier: GPL-3.0-or-later
// How numbers, money and dates are written in a country, and whose way conversions follow now.
//
// Conversions are plain functions that get nothing but their value. So each engine owns a LocaleChoice, and
// for as long as code of its runs a LocaleScope makes that choice the current one; without a scope it is
// en-us. What the program itself does with a script's value while the script calls it, follows the script.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace quarlin::vbs {

inline constexpr char16_t noBreakSpace = 0x00A0;

// Names of one language, as they stand alone.
struct DateNames {
  std::array<std::u16string_view, 12> months;
  std::array<std::u16string_view, 12> monthsOfDate;  // behind the number of a day
  std::array<std::u16string_view, 12> shortMonths;
  std::array<std::u16string_view, 7> weekdays;  // from Sunday on
  std::array<std::u16string_view, 7> shortWeekdays;
  std::u16string_view filler;  // a word that may stand between the parts of a date
};

struct Locale {
  std::int32_t number;       // 1033
  std::int32_t otherNumber;  // that also stands for it, or 0
  std::u16string_view name;  // "en-us"
  char decimal;              // the sign in front of a fraction
  char16_t thousands;        // may stand between digits; a no-break space stands for any blank
  std::u16string_view currency;
  std::u16string_view money;  // an amount; "n" is the number
  std::u16string_view debt;   // one below 0
  bool debtInBrackets;        // "($5.00)" rather than `debt`, unless a script asks for it
  bool monthFirst;            // in dates of three numbers
  std::u16string_view dateSigns;

  // Patterns: d dd dddd, M MM MMMM, yyyy, h H HH, mm, ss, tt, 'text', anything else as it stands.
  std::u16string_view shortDate;
  std::u16string_view longDate;
  std::u16string_view longTime;
  int firstDay;  // of the week: 1 Sunday, 2 Monday
  const DateNames* names;
};

// en-us, which the language's own texts and constants are written in.
const Locale& UsualLocale();

// By its number, or by its name without regard to case or its number in digits. Null for an unknown one.
const Locale* FindLocale(std::int32_t number);
const Locale* FindLocale(std::u16string_view nameOrNumber);

// What one engine's scripts have chosen.
class LocaleChoice {
 public:
  explicit constexpr LocaleChoice(const Locale& start) : start_(&start), chosen_(&start) {}

  const Locale& Start() const { return *start_; }
  const Locale& Chosen() const { return *chosen_; }
  void Choose(const Locale& locale) { chosen_ = &locale; }

 private:
  const Locale* start_;
  const Locale* chosen_;
};

// While it lives, conversions follow this choice, also as it changes. Scopes end in the order in which they
// began, the last one first.
class LocaleScope {
 public:
  explicit LocaleScope(const LocaleChoice& choice);
  ~LocaleScope();
  LocaleScope(const LocaleScope&) = delete;
  LocaleScope& operator=(const LocaleScope&) = delete;

  static const Locale& Current() { return current_->Chosen(); }

 private:
  static const LocaleChoice* current_;  // scripts run on one thread, so there is one at a time

  const LocaleChoice* before_;
};

inline const Locale& CurrentLocale() {
  return LocaleScope::Current();
}

}  // namespace quarlin::vbs
