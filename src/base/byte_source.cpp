// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include "base/file_handle.h"
#include "base/file_replacement.h"
#include "base/system_call.h"

namespace quarlin {
namespace {

class FileSource : public ByteSource {
 public:
  FileSource(std::string name, FileHandle file) : name_(std::move(name)), file_(std::move(file)) {}

  std::string Name() const override { return name_; }

  std::uint64_t Size() const override {
    struct stat status {};
    return fstat(file_.Get(), &status) < 0 ? 0 : static_cast<std::uint64_t>(status.st_size);
  }

  std::error_code ReadMore(std::string& buffer, std::size_t atMost) override {
    const std::size_t before = buffer.size();
    buffer.resize(before + atMost);
    const ssize_t count = Uninterrupted([&] { return read(file_.Get(), buffer.data() + before, atMost); });
    buffer.resize(before + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return count < 0 ? LastError() : std::error_code();
  }

 private:
  std::string name_;
  FileHandle file_;
};

class TextSource : public ByteSource {
 public:
  TextSource(std::string name, std::string text) : name_(std::move(name)), text_(std::move(text)) {}

  std::string Name() const override { return name_; }
  std::uint64_t Size() const override { return text_.size(); }
  std::error_code ReadMore(std::string& buffer, std::size_t atMost) override {
    const std::string_view piece = std::string_view(text_).substr(position_, atMost);
    buffer += piece;
    position_ += piece.size();
    return {};
  }

 private:
  std::string name_;
  std::string text_;
  std::size_t position_ = 0;
};

}  // namespace

OpenedSource OpenFileSource(const std::filesystem::path& file) {
  FileHandle handle(
      Uninterrupted([&] { return open(file.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
  if (handle.Get() < 0) return {nullptr, LastError()};
  struct stat status {};
  if (fstat(handle.Get(), &status) < 0) return {nullptr, LastError()};
  if (const std::error_code error = RefusalOf(status)) return {nullptr, error};
  return {std::make_unique<FileSource>(file.filename().string(), std::move(handle)), {}};
}

std::unique_ptr<ByteSource> MakeTextSource(std::string name, std::string text) {
  return std::make_unique<TextSource>(std::move(name), std::move(text));
}

}  // namespace quarlin
