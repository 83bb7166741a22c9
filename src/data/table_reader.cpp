// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/table_reader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include "base/text.h"
#include "data/cells.h"
#include "data/line_splitter.h"
#include "data/log_line.h"
#include "data/row_time.h"
#include "data/sign_evidence.h"
#include "data/table_header.h"

namespace quarlin {
namespace {

constexpr std::size_t sampleSize = 65536;
constexpr std::size_t sampleRows = 100;  // of which separator and header are found
constexpr std::size_t namedBadRows = 10;
constexpr std::size_t namedText = 60;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

void RequireSound(const TableSettings& settings) {
  if (settings.rules.empty()) throw std::invalid_argument("There is no number to be read.");
  if (settings.rules.size() > TableSettings::mostRules) {
    throw std::invalid_argument(
        fmt::format("At most {} curves can be read at once.", TableSettings::mostRules));
  }
  if (settings.time == TableSettings::Time::Rate && (!(settings.rate > 0) || !std::isfinite(settings.rate))) {
    throw std::invalid_argument("The rate must be above 0 Hz.");
  }
  if (settings.time == TableSettings::Time::Column && settings.timeColumn < 1) {
    throw std::invalid_argument("Columns are counted from 1.");
  }
}

// Without the end of a line that goes on: its last number may be half of one.
std::string_view WithoutHalfNumber(std::string_view text) {
  return text.substr(0, text.find_last_not_of("0123456789.,+-eE") + 1);
}

std::string AsUtf8(std::string_view text) {
  return IsUtf8(text) ? std::string(text) : Utf8FromBytes(text);
}

}  // namespace

struct TableReader::Parts {
  explicit Parts(TableSettings tableSettings);

  void LookAt(std::string_view text);
  void ReadSample();
  void Name(std::span<const std::string> rows);
  void Read(const LineSplitter::Line& next);
  void ReadRow(const LineSplitter::Line& row, const RowContent::Found& content);
  double ReadTime(const RowContent::Found& content);
  void ReadValues(std::string_view text);
  double ValueOf(std::size_t curve, std::string_view text);
  void TakeUnit(std::size_t curve, std::string_view found);
  void Miss(std::string why);
  void Tell(const LineSplitter::Line& row, double time);

  TableSettings settings;
  std::vector<NumberReader> readers;
  std::vector<Series> curves;
  std::function<void(const TableRow&)> follower;

  std::string sample;  // the beginning of the text, until it has been looked at
  bool sampled = false;
  bool binary = false;
  char separator = ';';
  bool headed = false;  // the header is still to come

  LineSplitter lines{[this](const LineSplitter::Line& next) { Read(next); }};
  RowContent contentOf;
  RowClock clock;
  double lastTime = -std::numeric_limits<double>::infinity();
  SignEvidence signs;
  std::vector<double> values;  // of the row that is read
  std::string reason;          // why one is missing

  std::uint64_t line = 0;  // that is read
  std::uint64_t rows = 0;
  std::uint64_t numbers = 0;
  std::uint64_t badRows = 0;
  std::uint64_t cutLines = 0;
  std::vector<BadRow> firstBadRows;
  std::optional<UnitChange> unitChange;
};

TableReader::Parts::Parts(TableSettings tableSettings) : settings(std::move(tableSettings)) {
  RequireSound(settings);
  for (const NumberRule& rule : settings.rules) {
    readers.emplace_back(rule);
    curves.emplace_back(NameOf(rule));
  }
  values.resize(readers.size());
}

// Finds out how the text is written from its beginning.
void TableReader::Parts::LookAt(std::string_view text) {
  std::vector<std::string> first;
  bool logged = false;
  LineSplitter splitter([&](const LineSplitter::Line& next) {
    if (const auto content = contentOf(next.text)) {
      logged = logged || !content->loggedAt.empty();
      first.emplace_back(content->text);
    }
  });
  splitter.Take(text);
  if (text.size() + byteOrderMark.size() < sampleSize)
    splitter.Finish();  // else the last line may be half of one
  const std::span<const std::string> few = std::span(first).first(std::min(first.size(), sampleRows));
  separator = settings.separator != 0 ? settings.separator : SeparatorOf(few);
  headed = !logged && IsHeaded(few, separator);
  if (headed) Name(few);
  for (const std::string& row : first) {
    for (const NumberReader& reader : readers) {
      if (const auto number = reader.Read(row, separator)) signs.Learn(*number);
    }
  }
}

void TableReader::Parts::Name(std::span<const std::string> first) {
  for (std::size_t i = 0; i < curves.size(); ++i) {
    CurveHead head = HeadFor(settings.rules[i], first, separator);
    if (settings.rules[i].name.empty() && !head.name.empty()) curves[i].name = AsUtf8(head.name);
    curves[i].unit = AsUtf8(head.unit);
  }
}

void TableReader::Parts::ReadSample() {
  sampled = true;
  const std::string text = std::exchange(sample, {});
  binary = text.find('\0') != std::string::npos;
  if (binary) return;
  std::string_view content = text;
  if (content.starts_with(byteOrderMark)) content.remove_prefix(byteOrderMark.size());
  LookAt(content);
  lines.Take(content);
}

void TableReader::Parts::Read(const LineSplitter::Line& next) {
  if (next.cut) ++cutLines;
  const auto content = contentOf(next.cut ? WithoutHalfNumber(next.text) : next.text);
  if (!content) return;
  if (std::exchange(headed, false)) return;
  ReadRow(next, *content);
}

void TableReader::Parts::ReadRow(const LineSplitter::Line& row, const RowContent::Found& content) {
  reason.clear();
  line = row.number;
  const double time = ReadTime(content);
  ++rows;
  if (std::isnan(time)) {
    std::fill(values.begin(), values.end(), gapValue);
  } else {
    ReadValues(content.text);
  }
  for (std::size_t i = 0; i < curves.size(); ++i) curves[i].Append({time, values[i]});
  Tell(row, time);
}

// NaN where the row has no time that comes behind that of the row above.
double TableReader::Parts::ReadTime(const RowContent::Found& content) {
  const auto row = static_cast<double>(rows);
  if (settings.time == TableSettings::Time::Row) return row;
  if (settings.time == TableSettings::Time::Rate) return row / settings.rate;
  const auto found = content.loggedAt.empty() ? TimeInColumn(content.text, settings.timeColumn, separator)
                                              : TimeIn(content.loggedAt);
  const auto time = found ? clock.Seconds(*found) : std::nullopt;
  if (!time) {
    Miss(fmt::format("no time in column {}", settings.timeColumn));
  } else if (*time < lastTime) {
    Miss("its time lies before that of the row above");
  } else {
    return lastTime = *time;
  }
  return gapValue;
}

void TableReader::Parts::ReadValues(std::string_view text) {
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = ValueOf(i, text);
}

double TableReader::Parts::ValueOf(std::size_t curve, std::string_view text) {
  const auto number = readers[curve].Read(text, separator);
  const auto value = number ? signs.Settle(*number) : std::nullopt;
  if (!number) {
    Miss(MissingBy(settings.rules[curve]));
  } else if (!value) {
    Miss("its point or comma may be a decimal sign or one for thousands");
  } else {
    ++numbers;
    TakeUnit(curve, number->unit);
  }
  return value.value_or(gapValue);
}

void TableReader::Parts::TakeUnit(std::size_t curve, std::string_view found) {
  std::string& unit = curves[curve].unit;
  if (found == unit || found.empty() || found.size() > Series::longestUnit || unitChange) return;
  const std::string other = AsUtf8(found);
  if (unit.empty()) {
    unit = other;
  } else if (other != unit) {
    unitChange = {line, unit, other};
  }
}

void TableReader::Parts::Miss(std::string why) {
  if (reason.empty()) reason = std::move(why);
}

void TableReader::Parts::Tell(const LineSplitter::Line& row, double time) {
  if (!reason.empty()) {
    ++badRows;
    if (firstBadRows.size() < namedBadRows) {
      firstBadRows.push_back({row.number, CodedText(row.text, namedText), reason});
    }
  }
  if (follower) follower({row.number, row.text, time, values, reason});
}

TableReader::TableReader(TableSettings settings) : parts_(std::make_unique<Parts>(std::move(settings))) {}
TableReader::~TableReader() = default;
TableReader::TableReader(TableReader&&) noexcept = default;
TableReader& TableReader::operator=(TableReader&&) noexcept = default;

void TableReader::FollowRows(std::function<void(const TableRow&)> follower) {
  parts_->follower = std::move(follower);
}

void TableReader::Take(std::string_view piece) {
  if (!parts_->sampled) {
    const std::size_t room = sampleSize - parts_->sample.size();
    parts_->sample += piece.substr(0, room);
    if (parts_->sample.size() < sampleSize) return;
    piece.remove_prefix(room);
    parts_->ReadSample();
  }
  if (!parts_->binary) parts_->lines.Take(piece);
}

void TableReader::Finish() {
  if (!parts_->sampled) parts_->ReadSample();
  parts_->lines.Finish();
}

const std::vector<Series>& TableReader::Curves() const {
  return parts_->curves;
}

std::vector<Series> TableReader::TakeCurves() {
  return std::move(parts_->curves);
}

std::uint64_t TableReader::Rows() const {
  return parts_->rows;
}

std::uint64_t TableReader::Numbers() const {
  return parts_->numbers;
}

std::uint64_t TableReader::BadRows() const {
  return parts_->badRows;
}

const std::vector<BadRow>& TableReader::FirstBadRows() const {
  return parts_->firstBadRows;
}

const std::optional<UnitChange>& TableReader::FirstUnitChange() const {
  return parts_->unitChange;
}

std::uint64_t TableReader::CutLines() const {
  return parts_->cutLines;
}

bool TableReader::LooksBinary() const {
  return parts_->binary;
}

char TableReader::Separator() const {
  return parts_->separator;
}

}  // namespace quarlin
