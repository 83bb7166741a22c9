// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a file or a text into curves, a slice at a time, so that everything else goes on meanwhile. Its
// memory is that of the curves, whatever the file's size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "base/byte_source.h"
#include "base/hook.h"
#include "controls/event_loop.h"
#include "data/table_reader.h"

namespace quarlin {

struct LoadedNumbers {
  std::vector<Series> curves;  // empty: there was no number at all, or no reading it
  std::string source;          // "run.csv", "the clipboard"
  bool byTime = false;         // else the times are numbers of rows

  // What was read, what was not and why, as a sentence: "2 numbers in 3 rows; 1 row lacks one: line 3
  // "OVER"".
  std::string summary;
};

// "run.csv cannot be read: Permission denied"; the same for every kind of file that is refused.
std::string CannotRead(std::string_view name, const std::error_code& error);

// What of a file that was opened cannot be read, looking at its beginning: it is empty, no text, or in
// another character set; empty where it can.
std::string ObjectionTo(std::string_view name, std::string_view beginning);

class Loading {
 public:
  // Begins in the next turn of the loop, and reads as many bytes as there are now. Destroying it cancels it.
  // Throws as TableReader does.
  Loading(EventLoop& loop, std::unique_ptr<ByteSource> source, TableSettings settings);

  Hook<void(int thousandths)> OnProgress;

  // The end, once. Must not destroy this object.
  Hook<void(LoadedNumbers numbers)> OnEnd;

 private:
  static constexpr std::size_t firstPiece = std::size_t{64} * 1024;   // shows whether it is text at all
  static constexpr std::size_t pieceSize = std::size_t{16} * 1024;    // less than a slice's time
  static constexpr std::size_t sliceSize = std::size_t{1024} * 1024;  // where the clock stands still

  void ReadSlice();
  bool ReadPiece();
  bool AtEnd() const { return read_ >= size_; }
  void ShowProgress();
  void End(std::string failure);
  std::string Summary() const;
  std::string BadRowsText() const;
  std::string DroppedText() const;

  EventLoop& loop_;
  std::unique_ptr<ByteSource> source_;
  std::uint64_t size_;  // when it began; what is added later is not read
  std::uint64_t read_ = 0;
  bool byTime_;
  TableReader reader_;
  std::string piece_;
  int shown_ = -1;  // thousandths
  Alarm sliceAlarm_;
};

}  // namespace quarlin
