// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/quick_list.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"

namespace quarlin {
namespace {

constexpr std::size_t fieldCount = 6;

// Missing ones are empty.
std::array<std::string_view, fieldCount> Fields(std::string_view line) {
  std::array<std::string_view, fieldCount> fields;
  for (std::string_view& field : fields) {
    const std::size_t end = line.find('\t');
    field = line.substr(0, end);
    if (end == std::string_view::npos) break;
    line.remove_prefix(end + 1);
  }
  return fields;
}

bool IsNumber(std::string_view field) {
  const std::string_view digits = TrimBlanks(field);
  return !digits.empty() && digits.find_first_not_of("0123456789") == std::string_view::npos;
}

int MillisecondsOf(std::string_view field, int otherwise) {
  return IsNumber(field) ? std::max(IntegerOf(field), 0) : otherwise;
}

// A time that says something else than a number.
bool HasFaultyTime(std::string_view line) {
  const auto fields = Fields(line);
  const auto faulty = [](std::string_view field) { return !TrimBlanks(field).empty() && !IsNumber(field); };
  return faulty(fields[3]) || faulty(fields[5]);
}

struct Written {
  std::string line;  // UTF-8
  QuickSend row;
};

std::vector<Written> LinesOf(std::string_view content) {
  const FileText file = FileTextOf(content);
  std::vector<Written> written;
  for (const std::string& line : SplitLines(file.text)) {
    auto row = QuickSendFromLine(file.isUtf8 ? BytesFromUtf8(line) : line);
    if (row) written.push_back({file.isUtf8 ? line : Utf8FromBytes(line), std::move(*row)});
  }
  return written;
}

// Of the first line with a faulty time, from 1; 0 for none.
std::size_t FaultyLineOf(std::string_view content) {
  const std::vector<std::string> lines = SplitLines(FileTextOf(content).text);
  const auto found = std::find_if(lines.begin(), lines.end(), HasFaultyTime);
  return found == lines.end() ? 0 : static_cast<std::size_t>(found - lines.begin()) + 1;
}

std::string TooLarge() {
  return fmt::format("{} takes no more than 1 MiB and was left alone", QuickList::fileName);
}

// Tabs and line ends would be taken for the ends of fields and lines.
std::string FieldText(std::string_view text) {
  return CodedText(text, std::string_view::npos);
}

}  // namespace

std::optional<QuickSend> QuickSendFromLine(std::string_view line) {
  if (TrimBlanks(line).empty()) return std::nullopt;
  const auto fields = Fields(line);
  QuickSend row;
  row.name = fields[0];
  row.command = line.find('\t') == std::string_view::npos ? fields[0] : fields[1];
  row.waits = IntegerOf(fields[2]) != 0;
  row.timeOut = MillisecondsOf(fields[3], row.timeOut);
  row.key = TrimBlanks(fields[4]);
  row.every = MillisecondsOf(fields[5], 0);
  return row;
}

std::string LineOf(const QuickSend& row) {
  return fmt::format("{}\t{}\t{}\t{}\t{}\t{}", FieldText(row.name), FieldText(row.command), row.waits ? 1 : 0,
                     row.timeOut, FieldText(row.key), row.every);
}

std::string QuickList::TakeUp() {
  FileContent content = ReadFileUpTo(folder_.File(fileName), largestFile);
  const bool missing = content.error == std::errc::no_such_file_or_directory;
  if (content.error == std::errc::file_too_large) return TooLarge();
  if (content.error && !missing) {
    return fmt::format("{} cannot be read: {}", fileName, content.error.message());
  }
  if (content.bytes == known_) return {};
  std::vector<Written> written = LinesOf(content.bytes);
  if (written.size() > mostRows) {
    return fmt::format("{} has more than {} lines and was left alone", fileName, mostRows);
  }
  faultyLine_ = FaultyLineOf(content.bytes);
  known_ = std::move(content.bytes);
  rows_.clear();
  for (Written& line : written) rows_.push_back(std::move(line.row));
  OnChanged();
  return {};
}

std::string QuickList::Edit(const std::function<void(std::vector<QuickSend>& rows)>& change) {
  if (std::string trouble = TakeUp(); !trouble.empty()) return trouble;
  std::vector<QuickSend> rows = rows_;
  change(rows);
  if (rows.size() > mostRows) return fmt::format("{} quick sends are the most", mostRows);
  if (rows == rows_) return {};
  std::string content = ContentOf(rows);
  if (content.size() > largestFile) return TooLarge();
  rows_ = std::move(rows);
  std::string trouble = Write(std::move(content));
  OnChanged();
  return trouble;
}

// A row that was not edited keeps its line, which may hold characters that no row can: so rows that are alike
// may have different ones.
std::string QuickList::ContentOf(const std::vector<QuickSend>& rows) const {
  std::vector<Written> written = LinesOf(known_);
  std::string content;
  for (const QuickSend& row : rows) {
    const auto is = [&](const Written& line) { return line.row == row; };
    const auto found = std::find_if(written.begin(), written.end(), is);
    content += found == written.end() ? Utf8FromBytes(LineOf(row)) : found->line;
    content += '\n';
    if (found != written.end()) written.erase(found);
  }
  return content;
}

std::string QuickList::Write(std::string content) {
  if (const auto error = WriteWholeFile(folder_.File(fileName), content)) {
    return fmt::format("{} was not written: {}", fileName, error.message());
  }
  known_ = std::move(content);
  return {};
}

// Where the row stands now: at its old place, or at the first where there is one like it.
std::optional<std::size_t> QuickList::Place(const std::vector<QuickSend>& rows, const QuickSend& row,
                                            std::size_t index) const {
  if (index < rows.size() && rows[index] == row) return index;
  const auto found = std::find(rows.begin(), rows.end(), row);
  if (found == rows.end()) return std::nullopt;
  return static_cast<std::size_t>(found - rows.begin());
}

std::string QuickList::Add(QuickSend row) {
  return Edit([&](std::vector<QuickSend>& rows) { rows.push_back(std::move(row)); });
}

std::string QuickList::Set(std::size_t index, QuickSend row) {
  if (index >= rows_.size()) return {};
  const QuickSend before = rows_[index];
  return Edit([&](std::vector<QuickSend>& rows) {
    const auto place = Place(rows, before, index);
    if (place) {
      rows[*place] = std::move(row);
    } else if (before != row) {
      rows.push_back(std::move(row));
    }
  });
}

std::string QuickList::Remove(std::size_t index) {
  if (index >= rows_.size()) return {};
  const QuickSend before = rows_[index];
  return Edit([&](std::vector<QuickSend>& rows) {
    if (const auto place = Place(rows, before, index)) {
      rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*place));
    }
  });
}

std::string QuickList::Move(std::size_t from, std::size_t to) {
  if (from >= rows_.size()) return {};
  const QuickSend moved = rows_[from];
  return Edit([&](std::vector<QuickSend>& rows) {
    const auto place = Place(rows, moved, from);
    if (!place) return;
    rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*place));
    const std::size_t behind = to > *place ? to - 1 : to;
    rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(std::min(behind, rows.size())), moved);
  });
}

}  // namespace quarlin
