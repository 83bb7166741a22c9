// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/input.h"

#include <fmt/format.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <system_error>

namespace quarlin::data_tool {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream Open(const std::string& file) {
  if (file.empty()) return {stdin, [](std::FILE* /*stays*/) { return 0; }};
  return {std::fopen(file.c_str(), "rb"), std::fclose};
}

std::string LastError() {
  return std::generic_category().message(errno);
}

TableSettings SettingsOf(const Options& options) {
  TableSettings settings;
  if (options.rule) settings.rules = {*options.rule};
  if (options.timeColumn) {
    settings.time = TableSettings::Time::Column;
    settings.timeColumn = *options.timeColumn;
  } else if (options.given.contains(FilterField::Rate)) {
    settings.time = TableSettings::Time::Rate;
    settings.rate = options.filter.rate;
  }
  return settings;
}

// What is wrong, or an empty text.
std::string ReadAll(std::FILE* stream, TableReader& reader) {
  std::string piece(pieceSize, '\0');
  for (;;) {
    const std::size_t count = std::fread(piece.data(), 1, piece.size(), stream);
    reader.Take(std::string_view(piece).substr(0, count));
    if (reader.LooksBinary()) return "holds bytes, not text";
    if (count == piece.size()) continue;
    if (std::ferror(stream) != 0) return LastError();
    reader.Finish();
    return {};
  }
}

bool HasNumbers(const Series& curve) {
  const Series::Extremes extremes = curve.ExtremesOf(0, curve.Size());
  return extremes.low <= extremes.high;
}

}  // namespace

Input ReadInput(const Options& options) {
  Input input;
  const std::string name = options.file.empty() ? "standard input" : options.file;
  try {
    const TableSettings settings = SettingsOf(options);
    TableReader reader(settings);
    const Stream stream = Open(options.file);
    const std::string wrong = stream == nullptr ? LastError() : ReadAll(stream.get(), reader);
    if (!wrong.empty()) {
      input.error = fmt::format("{}: {}", name, wrong);
      return input;
    }
    input.badRows = reader.BadRows();
    input.firstBadRows = reader.FirstBadRows();
    input.curve = std::move(reader.TakeCurves().front());
    input.timed = settings.time != TableSettings::Time::Row;
  } catch (const std::invalid_argument& objection) {
    input.error = objection.what();
    return input;
  }
  if (!HasNumbers(input.curve)) input.error = fmt::format("{}: no row with a number", name);
  return input;
}

}  // namespace quarlin::data_tool
