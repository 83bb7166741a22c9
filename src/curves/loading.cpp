// SPDX-License-Identifier: GPL-3.0-or-later
#include "curves/loading.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace quarlin {
namespace {

// A running test measures its answers meanwhile: a slice is short, and behind it the loop serves what has
// come.
constexpr auto longestSlice = std::chrono::microseconds(500);
constexpr auto pauseBetween = std::chrono::microseconds(100);

constexpr std::size_t quotedText = 24;

// "1,234,567".
std::string Grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t place = digits.size(); place > 3;) digits.insert(place -= 3, ",");
  return digits;
}

std::string Counted(std::uint64_t count, std::string_view one, std::string_view several) {
  return fmt::format("{} {}", Grouped(count), count == 1 ? one : several);
}

std::string Quoted(const BadRow& row) {
  const bool cut = row.text.size() > quotedText;
  const std::string text = fmt::format("\"{}{}\"", row.text.substr(0, quotedText), cut ? "..." : "");
  const bool plain = row.reason.starts_with("no number");
  return fmt::format("line {} {}{}", row.line, text, plain ? "" : " (" + row.reason + ")");
}

}  // namespace

std::string CannotRead(std::string_view name, const std::error_code& error) {
  return fmt::format("{} cannot be read: {}", name, error.message());
}

std::string ObjectionTo(std::string_view name, std::string_view beginning) {
  if (beginning.empty()) return fmt::format("{} is empty", name);
  if (beginning.starts_with("\xFF\xFE") || beginning.starts_with("\xFE\xFF")) {
    return fmt::format("{} is written in UTF-16; save it as UTF-8 and open it again", name);
  }
  if (beginning.find('\0') != std::string_view::npos)
    return fmt::format("{} is no text: it holds bytes 0", name);
  return {};
}

Loading::Loading(EventLoop& loop, std::unique_ptr<ByteSource> source, TableSettings settings)
    : loop_(loop),
      source_(std::move(source)),
      size_(source_->Size()),
      byTime_(settings.time != TableSettings::Time::Row),
      reader_(std::move(settings)),
      sliceAlarm_(loop, [this] { ReadSlice(); }) {
  sliceAlarm_.At(loop_.Now());
}

void Loading::ReadSlice() {
  const Instant end = loop_.Now() + longestSlice;
  const std::uint64_t stop = read_ + sliceSize;
  while (!AtEnd() && read_ < stop && loop_.Now() < end) {
    if (!ReadPiece()) return;
  }
  ShowProgress();
  if (AtEnd()) {
    End({});
  } else {
    sliceAlarm_.At(loop_.Now() + pauseBetween);
  }
}

// False where the reading has ended with a failure.
bool Loading::ReadPiece() {
  piece_.clear();
  const std::size_t most = read_ == 0 ? firstPiece : pieceSize;
  const std::error_code error = source_->ReadMore(piece_, std::min<std::uint64_t>(most, size_ - read_));
  if (error) {
    End(CannotRead(source_->Name(), error));
    return false;
  }
  if (read_ == 0) {
    if (std::string objection = ObjectionTo(source_->Name(), piece_); !objection.empty()) {
      End(std::move(objection));
      return false;
    }
  }
  if (piece_.empty()) size_ = read_;  // it has become shorter meanwhile
  read_ += piece_.size();
  reader_.Take(piece_);
  return true;
}

void Loading::ShowProgress() {
  const int thousandths = size_ > 0 ? static_cast<int>(read_ * 1000 / size_) : 1000;
  if (std::exchange(shown_, thousandths) != thousandths) OnProgress(thousandths);
}

void Loading::End(std::string failure) {
  if (failure.empty() && size_ == 0) failure = ObjectionTo(source_->Name(), {});
  LoadedNumbers numbers{{}, source_->Name(), byTime_, std::move(failure)};
  if (numbers.summary.empty()) {
    reader_.Finish();
    numbers.summary = Summary();
    if (reader_.Numbers() > 0) numbers.curves = reader_.TakeCurves();
  }
  source_.reset();  // its file is closed
  OnEnd(std::move(numbers));
}

std::string Loading::Summary() const {
  const std::string rows = Counted(reader_.Rows(), "row", "rows");
  std::string summary = reader_.Numbers() == 0
                            ? fmt::format("no number in the {} of {}", rows, source_->Name())
                            : fmt::format("{} in {}", Counted(reader_.Numbers(), "number", "numbers"), rows);
  summary += BadRowsText();
  if (const auto& change = reader_.FirstUnitChange()) {
    summary +=
        fmt::format("; the unit changes from {} to {} in line {}", change->from, change->to, change->line);
  }
  if (reader_.CutLines() > 0) {
    summary +=
        fmt::format("; {} read up to 64 KiB only", Counted(reader_.CutLines(), "line was", "lines were"));
  }
  return summary + DroppedText();
}

std::string Loading::BadRowsText() const {
  if (reader_.BadRows() == 0) return {};
  std::string text = fmt::format("; {} one: ", Counted(reader_.BadRows(), "row lacks", "rows lack"));
  const char* between = "";
  for (const BadRow& row : reader_.FirstBadRows()) text += std::exchange(between, ", ") + Quoted(row);
  return reader_.BadRows() > reader_.FirstBadRows().size() ? text + ", ..." : text;
}

std::string Loading::DroppedText() const {
  const auto dropped = reader_.Curves().front().Dropped();  // a row is a point in all of them
  if (dropped == 0) return {};
  return fmt::format("; a curve keeps {} points, so those of the first {} have left",
                     Grouped(Series::mostPoints), Counted(dropped, "row", "rows"));
}

}  // namespace quarlin
