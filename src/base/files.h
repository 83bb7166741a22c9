// SPDX-License-Identifier: GPL-3.0-or-later
// Small file operations, each with one outcome to look at. A write never waits for anybody: what is neither a
// regular file nor, for AppendToFile, /dev/null is refused with NoRegularFile() or "is a directory". A limit
// on the size of files is an error like a full disk, provided that SIGXFSZ is ignored.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace quarlin {

// The whole file, or nothing when it cannot be read.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);

struct FileContent {
  std::string bytes;
  std::error_code error;  // why there are none
};

// The whole file, unless it has more than `most` bytes: then the error is std::errc::file_too_large. Only a
// regular file is read.
FileContent ReadFileUpTo(const std::filesystem::path& file, std::size_t most);

// Replaces or creates the file, all of it or nothing: the new content is written beside it, brought to the
// disk and renamed, so that whatever fails, and whenever the power goes, the file is the old one or the new
// one, and nothing else is left in the folder. Links are followed; mode, owner and group stay. A file that
// may not be written is not replaced either.
// Written in place are a file with several names (hard links), one whose owner we cannot give to another,
// and one that cannot be renamed over, because its folder takes no new file or something is mounted on it.
// Room for the content is made first, so that a full disk still leaves it as it was; a power cut may not.
std::error_code WriteWholeFile(const std::filesystem::path& file, std::string_view content);

// The same for content that need not be in memory as a whole: `fill` hands its pieces to `take`, in order,
// and stops where that returns false. It may be called twice, and then hands over the same again.
using TakePiece = std::function<bool(std::string_view piece)>;
using FillFile = std::function<void(const TakePiece& take)>;
std::error_code WriteWholeFile(const std::filesystem::path& file, const FillFile& fill);

// Puts `content` in the place of as many bytes at the beginning of the file, in the way of WriteWholeFile;
// what stands behind them stays.
std::error_code OverwriteFile(const std::filesystem::path& file, std::string_view content);

// Makes a file that is not there yet. One that is there, be it a link that leads nowhere, stays as it is and
// is the error std::errc::file_exists. After another error there is no file.
std::error_code WriteNewFile(const std::filesystem::path& file, std::string_view content);

// Adds to the end of the file, creating it if need be. Opened and closed in the call, so a log that was
// moved away meanwhile starts afresh. `written` counts what reached the file, also on an error.
std::error_code AppendToFile(const std::filesystem::path& file, std::string_view content,
                             std::size_t& written);

// "it is no regular file": a pipe, a socket or a device, which might keep the program waiting.
std::error_code NoRegularFile();

}  // namespace quarlin
