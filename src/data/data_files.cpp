// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/data_files.h"

#include <array>
#include <charconv>
#include <cmath>

namespace quarlin {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

}  // namespace

std::string NumberText(double value) {
  std::array<char, 32> text;
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}

void NumberLines(std::span<const double> values, const TakePiece& take) {
  std::string piece;
  for (const double value : values) {
    if (std::isnan(value)) continue;
    piece += NumberText(value) + '\n';
    if (piece.size() < pieceSize) continue;
    if (!take(piece)) return;
    piece.clear();
  }
  if (!piece.empty()) take(piece);
}

DataFilesOutcome WriteDataFiles(const std::filesystem::path& folder, std::span<const double> raw,
                                std::span<const double> filtered) {
  const auto write = [&](const char* name, std::span<const double> values) -> DataFilesOutcome {
    const std::filesystem::path file = folder / name;
    return {file, WriteWholeFile(file, [&](const TakePiece& take) { NumberLines(values, take); })};
  };
  const DataFilesOutcome outcome = write("orig.dat", raw);
  return outcome.error ? outcome : write("filter.dat", filtered);
}

}  // namespace quarlin
