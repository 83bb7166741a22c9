// SPDX-License-Identifier: GPL-3.0-or-later
#include "display/row_map.h"

#include <algorithm>
#include <utility>

namespace quarlin {

void RowMap::Lay(RowsOf rowsOf, bool errorsOnly) {
  rowsOf_ = std::move(rowsOf);
  errorsOnly_ = errorsOnly;
  fresh_ = true;
  if (!rowsOf_ && !errorsOnly_) {
    sums_.reset();
  } else if (sums_ == nullptr) {
    sums_ = std::make_unique<LineSums>(TextRing::Limits().lines);
  }
}

void RowMap::Update(const TextRing& ring) {
  endLine_ = ring.EndLine();
  if (Plain()) {
    firstRow_ = ring.FirstLine();
    return;
  }
  if (std::exchange(fresh_, false)) {
    sums_->Restart(ring.FirstLine());
    firstRow_ = 0;
  }
  firstRow_ += sums_->DropBefore(ring.FirstLine());
  const bool lastMayHaveGrown = sums_->EndLine() > sums_->FirstLine();
  const bool lastIsShown = lastMayHaveGrown && sums_->Of(sums_->EndLine() - 1) > 0;
  if (lastMayHaveGrown && (!errorsOnly_ || lastIsShown)) {
    ring.Read(sums_->EndLine() - 1, read_);
    sums_->Set(sums_->EndLine() - 1, RowsIn(read_));
  }
  while (sums_->EndLine() < endLine_) AddLine(ring, sums_->EndLine());
}

void RowMap::AddLine(const TextRing& ring, std::uint64_t line) {
  ring.Read(line, read_);
  const bool isError = read_.Whose() == Source::Error;
  sums_->Add(errorsOnly_ && !isError ? 0 : RowsIn(read_));
  if (errorsOnly_ && isError) ShowExchangeBefore(ring, line);
}

void RowMap::ShowExchangeBefore(const TextRing& ring, std::uint64_t line) {
  const std::uint64_t lowest = std::max(sums_->FirstLine(), line - std::min(line, farthestBefore));
  std::uint64_t from = line;
  bool found = false;
  while (from > lowest && !found && sums_->Of(from - 1) == 0) {
    ring.Read(--from, read_);
    found = read_.Whose() == Source::Sent;
  }
  const bool reached = found || (from > lowest && sums_->Of(from - 1) > 0);
  if (!reached) from = std::max(lowest, line - std::min<std::uint64_t>(line, 1));
  for (; from < line; ++from) {
    ring.Read(from, read_);
    sums_->Set(from, RowsIn(read_));
  }
}

std::uint64_t RowMap::EndRow() const {
  return Plain() ? endLine_ : firstRow_ + sums_->Total();
}

bool RowMap::Shows(std::uint64_t line) const {
  if (Plain()) return true;
  return line >= sums_->FirstLine() && line < sums_->EndLine() && sums_->Of(line) > 0;
}

RowPlace RowMap::PlaceOf(std::uint64_t row) const {
  if (EndRow() == firstRow_) return {endLine_, 0};
  row = std::clamp(row, firstRow_, EndRow() - 1);
  if (Plain()) return {row, 0};
  const std::uint64_t line = sums_->LineAt(row - firstRow_);
  return {line, static_cast<std::uint32_t>(row - firstRow_ - sums_->Before(line))};
}

std::uint64_t RowMap::RowOf(std::uint64_t line) const {
  if (Plain()) return std::clamp(line, firstRow_, endLine_);
  return firstRow_ + sums_->Before(std::clamp(line, sums_->FirstLine(), sums_->EndLine()));
}

}  // namespace quarlin
