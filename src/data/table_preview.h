// SPDX-License-Identifier: GPL-3.0-or-later
// What is read from the beginning of a text, to be looked at before all of it is read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "data/table_reader.h"

namespace quarlin {

inline constexpr std::size_t previewSize = 65536;  // of the text

struct TablePreview {
  struct Row {
    std::uint64_t line;
    std::string text;  // its beginning, control characters as codes
    double time;       // NaN: not known
    std::vector<double> values;
    std::string reason;  // why one of them is missing
  };
  std::vector<Row> rows;  // the first 100

  struct Curve {
    std::string name;
    std::string unit;
  };
  std::vector<Curve> curves;

  std::uint64_t numbers = 0;  // in these rows
  bool isBinary = false;
};

// `beginning` is all of the text, or at least `previewSize` of it, then its last line may be cut. Throws as
// TableReader does.
TablePreview PreviewOf(std::string_view beginning, const TableSettings& settings);

// Settings that fit the text: its columns where it has some, with the first one as time where it holds times,
// or is called so; else the first number of each row.
TableSettings ProposedFor(std::string_view beginning);

}  // namespace quarlin
