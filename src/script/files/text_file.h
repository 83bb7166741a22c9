// SPDX-License-Identifier: GPL-3.0-or-later
// Text files as scripts read and write them, one block at a time.
//
// A file is read as UTF-16 where it begins with that byte-order mark or the caller says so, as UTF-8 where
// all of it is well-formed UTF-8, else byte for byte. It is written byte for byte, a character beyond
// U+00FF as "?", or as UTF-16LE.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "base/file_handle.h"
#include "script/values/services.h"

namespace quarlin::vbs {

enum class TextFormat { Bytes, Utf16 };

class TextFileReader {
 public:
  // Errors 53, 76 and 70; only an ordinary file can be read, since others may never end.
  TextFileReader(Services& services, const std::filesystem::path& file, TextFormat format);

  // Characters that come next, none at the end of the file. Holds until the next call.
  std::u16string_view Ready();
  void Take(std::size_t units) { taken_ += units; }  // no more than are ready

 private:
  enum class Encoding { Latin1, Utf8, Utf16Little, Utf16Big };

  std::string ReadBlock();
  Encoding Detect(TextFormat format);
  bool IsAllUtf8();
  void Decode(std::string bytes);
  void DecodeUtf16(std::string_view bytes);

  Services& services_;
  FileHandle file_;
  Encoding encoding_ = Encoding::Latin1;
  std::string unfinished_;  // the beginning of a character whose end is in the next block
  std::u16string ready_;
  std::size_t taken_ = 0;  // of what is ready
};

class TextFileWriter {
 public:
  enum class Start { Empty, New, Behind };  // emptied, must not exist yet (58), behind what is there

  // Errors 58, 76 and 70.
  TextFileWriter(const std::filesystem::path& file, Start start, TextFormat format);
  ~TextFileWriter();  // what could not be written then is lost

  // Reaches the file in blocks. Errors 61, 70 and 57.
  void Write(std::u16string_view text);
  void Flush();

 private:
  void Encode(std::u16string_view text);

  FileHandle file_;
  TextFormat format_;
  std::string waiting_;
};

}  // namespace quarlin::vbs
