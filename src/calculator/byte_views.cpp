// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculator/byte_views.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "base/numbers.h"

namespace quarlin {
namespace {

constexpr std::size_t longestLine = 1024;  // characters of the text view
constexpr std::size_t mostQuoted = 20;     // characters

Stretch Between(std::size_t begin, std::size_t end) {
  return {static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end)};
}

bool IsBreak(char16_t c) {
  return c == '\n' || c == '\r' || c == u'\u2028' || c == u'\u2029';
}

// What a user can tell apart from its neighbours, blanks of other kinds and the soft hyphen not.
bool IsVisible(std::uint8_t code) {
  return (code >= 0x20 && code < 0x7F) || (code > 0xA0 && code != 0xAD);
}

std::string Piece(std::string_view bytes, std::size_t at) {
  const auto code = static_cast<std::uint8_t>(bytes[at]);
  const char next = at + 1 < bytes.size() ? bytes[at + 1] : '\0';
  if (code == '{') return "{{";
  if (!IsVisible(code) || (code == '^' && (next == 'r' || next == 'p'))) {
    return "{" + Hexadecimal(code, 2) + "}";
  }
  return {bytes[at]};
}

bool EndsLine(std::string_view bytes, std::size_t at) {
  return bytes[at] == '\n' || (bytes[at] == '\r' && (at + 1 == bytes.size() || bytes[at + 1] != '\n'));
}

WrittenBytes WriteText(std::string_view bytes) {
  WrittenBytes written;
  std::size_t line = 0;  // where it begins
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const std::size_t begin = written.text.size();
    written.text += Piece(bytes, at);
    written.places.push_back(Between(begin, written.text.size()));
    if (at + 1 == bytes.size()) break;
    if (EndsLine(bytes, at) || written.text.size() - line >= longestLine) {
      written.text += '\n';
      line = written.text.size();
    }
  }
  return written;
}

// What the three views of numbers differ in.
struct Radix {
  int base;
  std::size_t digits;  // of a byte
  std::size_t aLine;   // bytes
  std::string_view name;
  std::array<std::u16string_view, 3> prefixes;  // that are understood
};

// In the order of ByteView, behind Text.
constexpr std::array<Radix, 3> radixes{{
    {16, 2, 16, "hexadecimal", {u"0x", u"$", u"&h"}},
    {10, 3, 16, "decimal", {}},
    {2, 8, 8, "binary", {u"0b", u"%", u"&b"}},
}};

const Radix& RadixOf(ByteView view) {
  return radixes.at(static_cast<std::size_t>(view) - 1);
}

std::string Number(std::uint8_t code, ByteView view, const NumberFormat& format) {
  if (view == ByteView::Decimal) return PaddedDecimal(code, format.separator.empty() ? 3 : 1);
  if (view == ByteView::Binary) return std::string(format.binaryPrefix) + BinaryText(code, 8);
  return std::string(format.hexPrefix) + Hexadecimal(code, 2);
}

WrittenBytes WriteNumbers(std::string_view bytes, ByteView view, const NumberFormat& format) {
  const std::size_t aLine = RadixOf(view).aLine;
  const std::string lineEnd = std::string(format.separator.substr(0, format.separator.find(' '))) + "\n";
  WrittenBytes written;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (at != 0) written.text += at % aLine == 0 ? lineEnd : format.separator;
    const std::size_t begin = written.text.size();
    written.text += Number(static_cast<std::uint8_t>(bytes[at]), view, format);
    written.places.push_back(Between(begin, written.text.size()));
  }
  return written;
}

// A character as a message shows it.
std::string Shown(char16_t c) {
  return c >= 0x20 && c <= 0xFF ? std::string(1, static_cast<char>(c)) : fmt::format("U+{:04X}", unsigned{c});
}

std::string Quoted(std::u16string_view text) {
  std::string shown;
  for (const char16_t c : text.substr(0, mostQuoted)) shown += Shown(c);
  return "\"" + shown + (text.size() > mostQuoted ? "...\"" : "\"");
}

int DigitValue(char16_t c) {
  return c < 0x80 ? HexDigitValue(static_cast<char>(c)) : -1;
}

// Reads until the end or the first trouble.
class Reader {
 public:
  explicit Reader(std::u16string_view text) : text_(text) {}

  ReadBytes Text() {
    while (at_ < text_.size() && read_.trouble.empty()) {
      if (IsBreak(text_[at_])) {
        ++at_;
      } else if (text_[at_] == '{') {
        Code();
      } else if (text_[at_] > 0xFF) {
        Trouble(at_, at_ + 1, Shown(text_[at_]) + " is no character with a code up to FF");
      } else {
        Take(text_[at_], at_ + 1);
      }
    }
    return std::move(read_);
  }

  ReadBytes Numbers(const Radix& radix) {
    for (SkipGap(); at_ < text_.size() && read_.trouble.empty(); SkipGap()) Row(radix);
    return std::move(read_);
  }

 private:
  void Take(unsigned value, std::size_t end) {
    read_.bytes += static_cast<char>(value);
    read_.places.push_back(Between(at_, end));
    at_ = end;
  }

  void Trouble(std::size_t begin, std::size_t end, std::string sentence) {
    read_.trouble = std::move(sentence);
    read_.troubleAt = Between(begin, end);
  }

  // "{41}" or "{{".
  void Code() {
    if (text_.substr(at_ + 1).starts_with(u"{")) return Take('{', at_ + 2);
    unsigned value = 0;
    std::size_t end = at_ + 1;
    for (; end < text_.size() && DigitValue(text_[end]) >= 0; ++end) {
      value = std::min(value * 16 + static_cast<unsigned>(DigitValue(text_[end])), 0x100U);
    }
    if (end == text_.size() || text_[end] != '}') {
      Trouble(at_, std::min(end + 1, text_.size()),
              "a code is hexadecimal digits in braces, as {41}; a brace itself is {{");
    } else if (value > 0xFF) {
      Trouble(at_, end + 1, Quoted(text_.substr(at_, end + 1 - at_)) + " is more than {FF}");
    } else {
      Take(value, end + 1);
    }
  }

  static bool IsGap(char16_t c) {
    return c == ' ' || c == '\t' || c == ',' || c == ';' || c == 0xA0 || IsBreak(c);
  }
  void SkipGap() {
    while (at_ < text_.size() && IsGap(text_[at_])) ++at_;
  }

  std::size_t PrefixSize(const Radix& radix) const {
    for (const std::u16string_view prefix : radix.prefixes) {
      const std::u16string_view here = text_.substr(at_, prefix.size());
      const auto same = [](char16_t left, char16_t right) {
        return left == right || (left >= 'A' && left <= 'Z' && left + 0x20 == right);
      };
      if (!prefix.empty() && std::equal(here.begin(), here.end(), prefix.begin(), prefix.end(), same)) {
        return prefix.size();
      }
    }
    return 0;
  }

  // A number, or a row of numbers with nothing between them.
  void Row(const Radix& radix) {
    const std::size_t begin = at_ + PrefixSize(radix);
    std::size_t end = begin;
    while (end < text_.size() && !IsGap(text_[end]) && text_[end] != '$' && text_[end] != '&' &&
           text_[end] != '%') {
      ++end;
    }
    if (end == begin) {
      end = std::min(std::max(end, at_ + 1), text_.size());
      return Trouble(at_, end,
                     Quoted(text_.substr(at_, end - at_)) + " is no " + std::string(radix.name) + " number");
    }
    if (!AreDigits(begin, end, radix)) return;
    if (end - begin > radix.digits && (end - begin) % radix.digits != 0) {
      return Trouble(begin, end,
                     fmt::format("{} is not made of groups of {} digits",
                                 Quoted(text_.substr(begin, end - begin)), radix.digits));
    }
    for (std::size_t from = begin; from < end && read_.trouble.empty(); from += radix.digits) {
      TakeNumber(from, std::min(from + radix.digits, end), radix.base);
    }
  }

  bool AreDigits(std::size_t begin, std::size_t end, const Radix& radix) {
    for (std::size_t place = begin; place < end; ++place) {
      const int value = DigitValue(text_[place]);
      if (value >= 0 && value < radix.base) continue;
      Trouble(place, place + 1, fmt::format("{} is no {} digit", Quoted(text_.substr(place, 1)), radix.name));
      return false;
    }
    return true;
  }

  void TakeNumber(std::size_t begin, std::size_t end, int base) {
    int value = 0;
    for (std::size_t place = begin; place < end; ++place) value = value * base + DigitValue(text_[place]);
    if (value > 0xFF) return Trouble(begin, end, fmt::format("{} is more than 255", value));
    Take(static_cast<unsigned>(value), end);
  }

  std::u16string_view text_;
  std::size_t at_ = 0;
  ReadBytes read_;
};

}  // namespace

WrittenBytes WriteBytes(std::string_view bytes, ByteView view, const NumberFormat& format) {
  return view == ByteView::Text ? WriteText(bytes) : WriteNumbers(bytes, view, format);
}

std::string MacroText(std::string_view bytes) {
  std::string text;
  for (std::size_t at = 0; at < bytes.size(); ++at) text += Piece(bytes, at);
  return text;
}

ReadBytes ReadView(std::u16string_view text, ByteView view) {
  return view == ByteView::Text ? Reader(text).Text() : Reader(text).Numbers(RadixOf(view));
}

Stretch BytesAt(const BytePlaces& places, Stretch characters) {
  const auto first = std::partition_point(
      places.begin(), places.end(), [&](const Stretch& place) { return place.end <= characters.begin; });
  const auto end = std::partition_point(first, places.end(),
                                        [&](const Stretch& place) { return place.begin < characters.end; });
  const auto begin = static_cast<std::size_t>(first - places.begin());
  return Between(begin, characters.Empty() ? begin : static_cast<std::size_t>(end - places.begin()));
}

Stretch CharactersOf(const BytePlaces& places, Stretch bytes) {
  if (places.empty()) return {};
  if (!bytes.Empty()) return {places[bytes.begin].begin, places[bytes.end - 1].end};
  const std::uint32_t at = bytes.begin < places.size() ? places[bytes.begin].begin : places.back().end;
  return {at, at};
}

}  // namespace quarlin
