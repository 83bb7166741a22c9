// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/text_stream.h"

#include <algorithm>
#include <array>
#include <limits>

#include "script/files/file_paths.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

enum OpenMode { forReading = 1, forWriting = 2, forAppending = 8 };
enum FormatNumber { defaultFormat = -2, unicodeFormat = -1, bytesFormat = 0 };

constexpr std::u16string_view lineEnd = u"\r\n";

TextFormat FormatOf(std::int32_t number) {
  if (number < defaultFormat || number > bytesFormat) throw ScriptError(invalidCall);
  return number == unicodeFormat ? TextFormat::Utf16 : TextFormat::Bytes;
}

std::u16string_view WithoutReturn(std::u16string_view line) {
  if (line.ends_with(u'\r')) line.remove_suffix(1);
  return line;
}

std::size_t CountArgument(Arguments arguments) {
  const std::int32_t count = CountOf(arguments[0]);
  if (count < 0) throw ScriptError(invalidCall);
  return static_cast<std::size_t>(count);
}

Value WriteMember(TextStream& self, Arguments arguments) {
  std::u16string scratch;
  self.Write(ToTextView(arguments[0], scratch));
  return {};
}

Value WriteLine(TextStream& self, Arguments arguments) {
  if (Given(arguments, 0) != nullptr) WriteMember(self, arguments);
  self.Write(lineEnd);
  return {};
}

Value WriteBlankLines(TextStream& self, Arguments arguments) {
  for (std::size_t left = CountArgument(arguments); left > 0; --left) self.Write(lineEnd);
  return {};
}

using Stream = TextStream;
constexpr auto members = std::to_array<Member<TextStream>>({
    {u"ReadLine", MemberKind::Method, 0, 0, [](Stream& self, Arguments) { return self.ReadLine(); }},
    {u"WriteLine", MemberKind::Method, 0, 1, WriteLine},
    {u"Write", MemberKind::Method, 1, 1, WriteMember},
    {u"AtEndOfStream", MemberKind::Property, 0, 0,
     [](Stream& self, Arguments) { return Value::Bool(self.AtEnd()); }},
    {u"AtEndOfLine", MemberKind::Property, 0, 0,
     [](Stream& self, Arguments) { return Value::Bool(self.AtEndOfLine()); }},
    {u"Read", MemberKind::Method, 1, 1,
     [](Stream& self, Arguments arguments) { return self.Read(CountArgument(arguments)); }},
    {u"ReadAll", MemberKind::Method, 0, 0, [](Stream& self, Arguments) { return self.ReadAll(); }},
    {u"Skip", MemberKind::Method, 1, 1,
     [](Stream& self, Arguments arguments) { return self.Skip(CountArgument(arguments)), Value(); }},
    {u"SkipLine", MemberKind::Method, 0, 0, [](Stream& self, Arguments) { return self.SkipLine(), Value(); }},
    {u"WriteBlankLines", MemberKind::Method, 1, 1, WriteBlankLines},
    {u"Close", MemberKind::Method, 0, 0, [](Stream& self, Arguments) { return self.Close(), Value(); }},
    {u"Line", MemberKind::Property, 0, 0, [](Stream& self, Arguments) { return CountValue(self.Line()); }},
    {u"Column", MemberKind::Property, 0, 0,
     [](Stream& self, Arguments) { return CountValue(self.Column()); }},
});

}  // namespace

std::span<const Member<TextStream>> TextStream::Members() {
  return members;
}

TextFileReader& TextStream::Reader() {
  if (reader_ == nullptr) throw ScriptError(writer_ == nullptr ? badFileName : badFileMode);
  return *reader_;
}

std::u16string_view TextStream::ReadyOrEnd() {
  const std::u16string_view ready = Reader().Ready();
  if (ready.empty()) throw ScriptError(inputPastEnd);
  return ready;
}

void TextStream::Pass(std::u16string_view text) {
  const std::size_t last = text.rfind(u'\n');
  if (last == text.npos) {
    column_ += text.size();
    return;
  }
  line_ += static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\n'));
  column_ = text.size() - last;
}

Value TextStream::Read(std::size_t units) {
  std::u16string_view ready = ReadyOrEnd();
  Value result = Value::Adopt(TextBody::Make({}));
  for (std::size_t left = units; left > 0 && !ready.empty(); ready = reader_->Ready()) {
    const std::u16string_view part = ready.substr(0, left);
    result.AppendText(part);
    Pass(part);
    left -= part.size();
    reader_->Take(part.size());
  }
  return result;
}

Value TextStream::ReadAll() {
  return Read(std::numeric_limits<std::size_t>::max());
}

Value TextStream::ReadLine() {
  const std::u16string_view ready = ReadyOrEnd();
  const std::size_t end = ready.find(u'\n');
  if (end == ready.npos) return ReadLongLine();
  Value line = Value::String(WithoutReturn(ready.substr(0, end)));
  Pass(ready.substr(0, end + 1));
  reader_->Take(end + 1);
  return line;
}

// Of a line whose end is not among the characters that are ready.
Value TextStream::ReadLongLine() {
  Value line = Value::Adopt(TextBody::Make({}));
  for (std::u16string_view ready = reader_->Ready(); !ready.empty(); ready = reader_->Ready()) {
    const std::size_t end = ready.find(u'\n');
    const std::size_t taken = end == ready.npos ? ready.size() : end + 1;
    line.AppendText(ready.substr(0, end));
    Pass(ready.substr(0, taken));
    reader_->Take(taken);
    if (end != ready.npos) return Value::String(WithoutReturn(line.AsText()));
  }
  return line;
}

void TextStream::Skip(std::size_t units) {
  std::u16string_view ready = ReadyOrEnd();
  for (; units > 0 && !ready.empty(); ready = reader_->Ready()) {
    const std::u16string_view part = ready.substr(0, units);
    Pass(part);
    units -= part.size();
    reader_->Take(part.size());
  }
}

void TextStream::SkipLine() {
  for (std::u16string_view ready = ReadyOrEnd(); !ready.empty(); ready = reader_->Ready()) {
    const std::size_t end = ready.find(u'\n');
    const std::u16string_view part = ready.substr(0, end == ready.npos ? end : end + 1);
    Pass(part);
    reader_->Take(part.size());
    if (end != ready.npos) return;
  }
}

bool TextStream::AtEnd() {
  return Reader().Ready().empty();
}

bool TextStream::AtEndOfLine() {
  const std::u16string_view ready = Reader().Ready();
  return ready.empty() || ready.front() == u'\r' || ready.front() == u'\n';
}

void TextStream::Write(std::u16string_view text) {
  if (writer_ == nullptr) throw ScriptError(reader_ == nullptr ? badFileName : badFileMode);
  writer_->Write(text);
  Pass(text);
}

void TextStream::Close() {
  reader_ = nullptr;
  const std::unique_ptr<TextFileWriter> writer = std::move(writer_);
  if (writer != nullptr) writer->Flush();
}

Value OpenTextStream(Services& services, const std::filesystem::path& file, std::int32_t mode, bool create,
                     std::int32_t format) {
  const TextFormat textFormat = FormatOf(format);
  if (mode != forReading && mode != forWriting && mode != forAppending) throw ScriptError(invalidCall);
  if (!Exists(file.parent_path(), EntryKind::Folder)) throw ScriptError(pathNotFound);
  const bool isThere = Exists(file, EntryKind::File) || Exists(file, EntryKind::Folder);
  if (!create && !isThere) throw ScriptError(fileNotFound);
  using Start = TextFileWriter::Start;
  if (mode != forReading) {
    const Start start = mode == forWriting ? Start::Empty : Start::Behind;
    return NewObject<TextStream>(std::make_unique<TextFileWriter>(file, start, textFormat));
  }
  if (!isThere) TextFileWriter(file, Start::Behind, TextFormat::Bytes);
  return NewObject<TextStream>(std::make_unique<TextFileReader>(services, file, textFormat));
}

Value CreateTextStream(const std::filesystem::path& file, bool overwrite, bool unicode) {
  const auto start = overwrite ? TextFileWriter::Start::Empty : TextFileWriter::Start::New;
  const auto format = unicode ? TextFormat::Utf16 : TextFormat::Bytes;
  return NewObject<TextStream>(std::make_unique<TextFileWriter>(file, start, format));
}

}  // namespace quarlin::vbs
