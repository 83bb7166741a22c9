// SPDX-License-Identifier: GPL-3.0-or-later
// The TextStream object: a text file that is open for reading or for writing.
#pragma once

#include <filesystem>
#include <memory>
#include <span>
#include <string_view>

#include "script/files/text_file.h"
#include "script/values/dispatch.h"
#include "script/values/services.h"

namespace quarlin::vbs {

class TextStream final : public TableObject<TextStream> {
 public:
  explicit TextStream(std::unique_ptr<TextFileReader> reader) : reader_(std::move(reader)) {}
  explicit TextStream(std::unique_ptr<TextFileWriter> writer) : writer_(std::move(writer)) {}
  static std::span<const Member<TextStream>> Members();
  std::u16string_view TypeName() const override { return u"TextStream"; }

  // Reading: error 62 when nothing is left, 54 on a file open for writing, 52 on a closed one. A line ends
  // with LF; a CR in front of it belongs to the line's end.
  Value Read(std::size_t units);
  Value ReadAll();
  Value ReadLine();
  void Skip(std::size_t units);
  void SkipLine();
  bool AtEnd();
  bool AtEndOfLine();

  // Writing: error 54 on a file open for reading, 52 on a closed one.
  void Write(std::u16string_view text);

  // What waits is written first; the file is closed also when that fails.
  void Close();

  std::size_t Line() const { return line_; }      // from 1, of the character that comes next
  std::size_t Column() const { return column_; }  // from 1

 private:
  TextFileReader& Reader();
  std::u16string_view ReadyOrEnd();  // error 62 at the end
  Value ReadLongLine();
  void Pass(std::u16string_view text);

  std::unique_ptr<TextFileReader> reader_;
  std::unique_ptr<TextFileWriter> writer_;
  std::size_t line_ = 1;
  std::size_t column_ = 1;
};

// Opens a stream in the ways that the FileSystemObject and its files offer.
Value OpenTextStream(Services& services, const std::filesystem::path& file, std::int32_t mode, bool create,
                     std::int32_t format);
Value CreateTextStream(const std::filesystem::path& file, bool overwrite, bool unicode);

}  // namespace quarlin::vbs
