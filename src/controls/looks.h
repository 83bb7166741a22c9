// SPDX-License-Identifier: GPL-3.0-or-later
// What scripts set of a control beside its value, colours and place. Nothing: as the form has it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace quarlin {

struct Lettering {
  std::optional<std::string> name;  // of the font's family
  std::optional<double> size;       // points
  std::optional<bool> bold, italic, underline, strikethrough;
  bool operator==(const Lettering&) const = default;
};

struct Looks {
  Lettering font;
  std::optional<std::int32_t> borderColor;
  std::optional<std::int32_t> borderStyle;  // 0: no border
  std::int32_t fillStyle = 0;               // of a lamp: 0 filled, 1 not, 2 to 7 hatched
  bool operator==(const Looks&) const = default;
};

// A part of a text that is marked, in characters; a cursor where its length is 0.
struct Marked {
  std::int32_t start = 0;
  std::int32_t length = 0;
  bool operator==(const Marked&) const = default;
};

// The part of it that lies in a text of so many characters.
Marked Within(Marked marked, std::size_t textLength);

}  // namespace quarlin
