// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/csv_writer.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "base/files.h"

namespace quarlin {

namespace {

constexpr std::size_t pieceSize = 65536;

void AppendNumber(std::string& text, double value) {
  std::array<char, 32> digits;
  text.append(digits.data(), std::to_chars(digits.begin(), digits.end(), value).ptr);
}

// Quoted where it would be taken for several cells.
void AppendTitle(std::string& text, std::string_view title) {
  if (title.find_first_of(",;\"\r\n") == std::string_view::npos) {
    text += title;
    return;
  }
  text += '"';
  for (const char character : title) text.append(character == '"' ? 2 : 1, character);
  text += '"';
}

std::string TitleOf(const CsvCurve& curve) {
  const std::string& unit = curve.series->unit;
  return unit.empty() ? curve.name : curve.name + " (" + unit + ")";
}

// Walks through all curves at once, from time to time.
class Rows {
 public:
  explicit Rows(std::span<const CsvCurve> curves) : curves_(curves), next_(curves.size()) {}

  // The earliest time that has not been written.
  std::optional<double> Time() const {
    std::optional<double> earliest;
    for (std::size_t i = 0; i < curves_.size(); ++i)
      if (IsLeft(i)) earliest = std::min(earliest.value_or(Next(i).time), Next(i).time);
    return earliest;
  }

  void Append(std::string& text, double time) {
    AppendNumber(text, time);
    for (std::size_t i = 0; i < curves_.size(); ++i) {
      text += ',';
      if (!IsLeft(i) || Next(i).time != time) continue;
      if (!std::isnan(Next(i).value)) AppendNumber(text, Next(i).value);
      ++next_[i];
    }
    text += '\n';
  }

 private:
  bool IsLeft(std::size_t curve) const { return next_[curve] < curves_[curve].series->Size(); }
  Point Next(std::size_t curve) const { return curves_[curve].series->At(next_[curve]); }

  std::span<const CsvCurve> curves_;
  std::vector<std::size_t> next_;
};

}  // namespace

void CsvLines(std::span<const CsvCurve> curves, std::string_view timeTitle, const TakePiece& take) {
  std::string piece;
  AppendTitle(piece, timeTitle);
  for (const CsvCurve& curve : curves) AppendTitle(piece += ',', TitleOf(curve));
  piece += '\n';
  Rows rows(curves);
  while (const auto time = rows.Time()) {
    rows.Append(piece, *time);
    if (piece.size() < pieceSize) continue;
    if (!take(piece)) return;
    piece.clear();
  }
  if (!piece.empty()) take(piece);
}

std::error_code WriteCsv(const std::filesystem::path& file, std::span<const CsvCurve> curves,
                         std::string_view timeTitle) {
  return WriteWholeFile(file, [&](const TakePiece& take) { CsvLines(curves, timeTitle, take); });
}

}  // namespace quarlin
