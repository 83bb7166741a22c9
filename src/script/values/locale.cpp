// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/locale.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <utility>

#include "script/values/dispatch.h"
#include "script/values/locale_table.h"

namespace quarlin::vbs {
namespace {

constexpr const Locale& usual = locales.front();
constexpr LocaleChoice usualChoice(usual);

template <class Fits>
const Locale* FirstThat(Fits fits) {
  const auto found = std::find_if(locales.begin(), locales.end(), fits);
  return found == locales.end() ? nullptr : &*found;
}

}  // namespace

const Locale& UsualLocale() {
  return usual;
}

const Locale* FindLocale(std::int32_t number) {
  if (number == 0) return nullptr;
  return FirstThat(
      [&](const Locale& locale) { return locale.number == number || locale.otherNumber == number; });
}

const Locale* FindLocale(std::u16string_view nameOrNumber) {
  const Locale* named = FirstThat([&](const Locale& locale) { return SameName(locale.name, nameOrNumber); });
  if (named != nullptr) return named;
  std::string digits;
  for (const char16_t unit : nameOrNumber) digits += unit < 0x80 ? static_cast<char>(unit) : '?';
  std::int32_t number = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  const bool isNumber = read.ec == std::errc() && read.ptr == digits.data() + digits.size();
  return isNumber ? FindLocale(number) : nullptr;
}

const LocaleChoice* LocaleScope::current_ = &usualChoice;

LocaleScope::LocaleScope(const LocaleChoice& choice) : before_(std::exchange(current_, &choice)) {}

LocaleScope::~LocaleScope() {
  current_ = before_;
}

}  // namespace quarlin::vbs
