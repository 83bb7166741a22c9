// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/text_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

#include "base/system_call.h"
#include "base/text.h"
#include "script/files/file_paths.h"
#include "script/values/conversions.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

constexpr std::size_t blockBytes = std::size_t{64} * 1024;
constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view utf16LittleMark = "\xFF\xFE";
constexpr std::string_view utf16BigMark = "\xFE\xFF";

std::uint8_t ByteAt(std::string_view bytes, std::size_t index) {
  return static_cast<std::uint8_t>(bytes[index]);
}

// Opening some devices waits, and opening a serial line moves its wires: only ordinary files are opened.
FileHandle Open(const std::filesystem::path& file, int flags) {
  struct stat status {};
  if (stat(file.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) throw ScriptError(permissionDenied);
  const int descriptor = open(file.c_str(), flags | O_CLOEXEC, 0666);
  if (descriptor >= 0) return FileHandle(descriptor);
  const int error = errno;
  const bool hasFolder = Exists(file.parent_path(), EntryKind::Folder);
  throw FileError(error, hasFolder ? fileNotFound : pathNotFound);
}

// How many bytes at the end begin a UTF-8 character without finishing it.
std::size_t UnfinishedUtf8(std::string_view bytes) {
  constexpr std::size_t longestBeginning = 3;
  for (std::size_t back = 1; back <= std::min(longestBeginning, bytes.size()); ++back) {
    const std::uint8_t byte = ByteAt(bytes, bytes.size() - back);
    if ((byte & 0xC0) == 0x80) continue;  // inside a character: its first byte stands further in front
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    return length > back ? back : 0;
  }
  return 0;
}

std::u16string WidenBytes(std::string_view bytes) {
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [](char byte) { return static_cast<char16_t>(static_cast<std::uint8_t>(byte)); });
  return text;
}

}  // namespace

TextFileReader::TextFileReader(Services& services, const std::filesystem::path& file, TextFormat format)
    : services_(services), file_(Open(file, O_RDONLY)), encoding_(Detect(format)) {}

std::string TextFileReader::ReadBlock() {
  AskToGoOn(services_);
  std::string block(blockBytes, '\0');
  const ssize_t count = Uninterrupted([&] { return read(file_.Get(), block.data(), block.size()); });
  if (count < 0) throw FileError(errno, fileNotFound);
  block.resize(static_cast<std::size_t>(count));
  return block;
}

// Leaves the file behind its byte-order mark.
TextFileReader::Encoding TextFileReader::Detect(TextFormat format) {
  const std::string begin = ReadBlock();
  std::size_t mark = 0;
  Encoding encoding = format == TextFormat::Utf16 ? Encoding::Utf16Little : Encoding::Latin1;
  if (begin.starts_with(utf16LittleMark)) {
    mark = utf16LittleMark.size();
    encoding = Encoding::Utf16Little;
  } else if (begin.starts_with(utf16BigMark)) {
    mark = utf16BigMark.size();
    encoding = Encoding::Utf16Big;
  } else if (format == TextFormat::Bytes) {
    lseek(file_.Get(), 0, SEEK_SET);
    if (IsAllUtf8()) encoding = Encoding::Utf8;
    if (encoding == Encoding::Utf8 && begin.starts_with(utf8Mark)) mark = utf8Mark.size();
  }
  lseek(file_.Get(), static_cast<off_t>(mark), SEEK_SET);
  return encoding;
}

bool TextFileReader::IsAllUtf8() {
  std::string unfinished;
  for (;;) {
    const std::string block = ReadBlock();
    if (block.empty()) return unfinished.empty();
    const std::string bytes = unfinished + block;
    const std::size_t cut = bytes.size() - UnfinishedUtf8(bytes);
    if (!IsUtf8(std::string_view(bytes).substr(0, cut))) return false;
    unfinished = bytes.substr(cut);
  }
}

std::u16string_view TextFileReader::Ready() {
  while (taken_ == ready_.size()) {
    ready_.clear();
    taken_ = 0;
    const std::string block = ReadBlock();
    if (block.empty()) break;
    Decode(std::exchange(unfinished_, {}) + block);
  }
  return std::u16string_view(ready_).substr(taken_);
}

void TextFileReader::Decode(std::string bytes) {
  std::size_t unfinished = 0;
  if (encoding_ == Encoding::Utf8) unfinished = UnfinishedUtf8(bytes);
  if (encoding_ == Encoding::Utf16Little || encoding_ == Encoding::Utf16Big) unfinished = bytes.size() % 2;
  unfinished_ = bytes.substr(bytes.size() - unfinished);
  bytes.resize(bytes.size() - unfinished);
  if (encoding_ == Encoding::Utf16Little || encoding_ == Encoding::Utf16Big) return DecodeUtf16(bytes);
  // A file that was all UTF-8 may have got other bytes since.
  ready_ = encoding_ == Encoding::Utf8 && IsUtf8(bytes) ? Utf16Of(bytes) : WidenBytes(bytes);
}

void TextFileReader::DecodeUtf16(std::string_view bytes) {
  const std::size_t high = encoding_ == Encoding::Utf16Big ? 0 : 1;
  ready_.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
    ready_ += static_cast<char16_t>(ByteAt(bytes, at + high) << 8 | ByteAt(bytes, at + 1 - high));
  }
}

TextFileWriter::TextFileWriter(const std::filesystem::path& file, Start start, TextFormat format)
    : file_(Open(file, O_WRONLY | O_CREAT |
                           (start == Start::Behind ? O_APPEND
                            : start == Start::New  ? O_EXCL
                                                   : O_TRUNC))),
      format_(format) {
  if (format_ != TextFormat::Utf16 || lseek(file_.Get(), 0, SEEK_END) != 0) return;
  waiting_ = utf16LittleMark;
}

TextFileWriter::~TextFileWriter() {
  try {
    Flush();
  } catch (const ScriptError&) {
    // Nobody is left to be told: a script that wants to know closes the file itself.
  }
}

void TextFileWriter::Write(std::u16string_view text) {
  while (!text.empty()) {
    const std::u16string_view part = text.substr(0, blockBytes / 2);
    Encode(part);
    text.remove_prefix(part.size());
    if (waiting_.size() >= blockBytes) Flush();
  }
}

void TextFileWriter::Encode(std::u16string_view text) {
  if (format_ == TextFormat::Bytes) {
    std::transform(text.begin(), text.end(), std::back_inserter(waiting_),
                   [](char16_t unit) { return unit > 0xFF ? '?' : static_cast<char>(unit); });
    return;
  }
  for (const char16_t unit : text) {
    waiting_ += static_cast<char>(unit & 0xFF);
    waiting_ += static_cast<char>(unit >> 8);
  }
}

// What an error held back is dropped: writing it later would leave a gap that nobody sees.
void TextFileWriter::Flush() {
  const std::string bytes = std::exchange(waiting_, {});
  std::string_view left = bytes;
  while (!left.empty()) {
    const ssize_t wrote = Uninterrupted([&] { return write(file_.Get(), left.data(), left.size()); });
    if (wrote < 0) throw FileError(errno, fileNotFound);
    left.remove_prefix(static_cast<std::size_t>(wrote));
  }
}

}  // namespace quarlin::vbs
