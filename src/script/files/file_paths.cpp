// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/file_paths.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>

#include "script/values/conversions.h"
#include "script/values/dispatch.h"

namespace quarlin::vbs {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view separators = u"/\\";

bool IsSeparator(char16_t unit) {
  return unit == u'/' || unit == u'\\';
}

bool BeginsWithDrive(std::u16string_view name) {
  if (name.size() < 2 || name[1] != u':') return false;
  const char16_t letter = UpperOf(name.front());
  return letter >= u'A' && letter <= u'Z';
}

// \\server\share: what is shared in a network is a folder like any other here, once it is mounted.
bool BeginsWithServer(std::u16string_view name) {
  return name.starts_with(u"\\\\");
}

ScriptError NoDrives(std::u16string_view name) {
  ScriptError error(pathNotFound, name);
  error.description +=
      u" (there are no drives and shares here: a name begins with / or in the program folder)";
  return error;
}

std::u16string_view WithoutSeparatorsAtEnd(std::u16string_view path) {
  while (path.size() > 1 && IsSeparator(path.back())) path.remove_suffix(1);
  return path;
}

fs::path SystemPath(std::u16string_view name) {
  if (name.find(u'\0') != name.npos) throw ScriptError(badFileName);
  std::string text = Utf8Of(name);
  std::replace(text.begin(), text.end(), '\\', '/');
  return fs::path(std::move(text));
}

bool IsThere(const fs::path& path) {
  std::error_code ignored;
  return fs::exists(fs::symlink_status(path, ignored));
}

// "*" stands for any characters, "?" for one; "*.*" for everything, as people expect of it.
bool FitsWildcards(std::u16string_view name, std::u16string_view pattern) {
  if (pattern == u"*.*") return true;
  std::size_t at = 0;
  std::size_t next = 0;
  std::optional<std::size_t> star;  // behind the last star, which so far took what is before `taken`
  std::size_t taken = 0;
  while (at < name.size()) {
    if (next < pattern.size() && pattern[next] == u'*') {
      star = ++next;
      taken = at;
    } else if (next < pattern.size() &&
               (pattern[next] == u'?' || UpperOf(pattern[next]) == UpperOf(name[at]))) {
      ++next;
      ++at;
    } else if (star) {
      next = *star;
      at = ++taken;
    } else {
      return false;
    }
  }
  return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(next), pattern.end(),
                     [](char16_t unit) { return unit == u'*'; });
}

struct ErrorRow {
  int systemError;
  int number;
};
constexpr std::array errorRows = std::to_array<ErrorRow>({
    {EACCES, permissionDenied},
    {EPERM, permissionDenied},
    {EROFS, permissionDenied},
    {EBUSY, permissionDenied},
    {EISDIR, permissionDenied},
    {ETXTBSY, permissionDenied},
    {ENOTEMPTY, permissionDenied},
    {EEXIST, fileExists},
    {ENOTDIR, pathNotFound},
    {ELOOP, pathNotFound},
    {ENAMETOOLONG, badFileName},
    {EBADF, badFileName},
    {EINVAL, invalidCall},
    {ENOSPC, 61},  // disk full
    {EDQUOT, 61},
    {EFBIG, 61},
    {EMFILE, 67},  // too many files
    {ENFILE, 67},
    {ENOMEM, outOfMemory},
});
constexpr int deviceError = 57;

}  // namespace

NameParts PartsOf(std::u16string_view path) {
  path = WithoutSeparatorsAtEnd(path);
  NameParts parts;
  const std::size_t separator = path.find_last_of(separators);
  const std::size_t begin = separator == path.npos ? 0 : separator + 1;
  parts.name = path.substr(begin);
  parts.folder = WithoutSeparatorsAtEnd(path.substr(0, begin));
  if (parts.folder.size() == 2 && BeginsWithDrive(parts.folder)) parts.folder = path.substr(0, begin);
  if (parts.name.empty()) parts.folder = {};  // the root has no parent
  const std::size_t dot = parts.name.rfind(u'.');
  parts.base = parts.name.substr(0, dot);
  if (dot != parts.name.npos) parts.extension = parts.name.substr(dot + 1);
  return parts;
}

bool EndsWithSeparator(std::u16string_view path) {
  return !path.empty() && IsSeparator(path.back());
}

std::u16string JoinedPath(std::u16string_view folder, std::u16string_view name) {
  std::u16string joined(folder);
  while (!name.empty() && IsSeparator(name.front()) && !folder.empty()) name.remove_prefix(1);
  const bool backwards = folder.find(u'\\') != folder.npos && folder.find(u'/') == folder.npos;
  if (!folder.empty() && !EndsWithSeparator(folder)) joined += backwards ? u'\\' : u'/';
  return joined.append(name);
}

bool HasWildcards(std::u16string_view name) {
  return name.find_first_of(u"*?") != name.npos;
}

std::filesystem::path LocatedIn(const fs::path& folder, const fs::path& name) {
  if (IsThere(folder / name)) return folder / name;
  const std::u16string wanted = TextOfPath(name);
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (SameName(TextOfPath(entry->path().filename()), wanted)) return entry->path();
  }
  return folder / name;
}

std::filesystem::path LocatedPath(Services& services, std::u16string_view name) {
  if (name.empty()) throw ScriptError(invalidCall);
  if (BeginsWithDrive(name) || BeginsWithServer(name)) throw NoDrives(name);
  fs::path wanted = fs::absolute(services.Folder() / SystemPath(name)).lexically_normal();
  if (wanted.has_filename() && IsThere(wanted)) return wanted;
  fs::path found = wanted.root_path();
  for (const fs::path& part : wanted.relative_path()) {
    if (!part.empty()) found = LocatedIn(found, part);
  }
  return found;
}

std::u16string TextOfPath(const fs::path& path) {
  return Utf16Of(path.native());
}

bool Exists(const fs::path& path, EntryKind kind) {
  std::error_code ignored;
  const fs::file_status status = fs::status(path, ignored);
  return fs::exists(status) && fs::is_directory(status) == (kind == EntryKind::Folder);
}

std::vector<fs::path> EntriesIn(const fs::path& folder, EntryKind kind) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    if (Exists(entry->path(), kind)) entries.push_back(entry->path());
  }
  Check(error, pathNotFound);
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::vector<fs::path> Matching(Services& services, std::u16string_view name, EntryKind kind) {
  const NameParts parts = PartsOf(name);
  if (!HasWildcards(parts.name)) {
    const fs::path path = LocatedPath(services, name);
    return Exists(path, kind) ? std::vector{path} : std::vector<fs::path>();
  }
  const fs::path folder = LocatedPath(services, parts.folder.empty() ? u"." : parts.folder);
  std::vector<fs::path> entries = EntriesIn(folder, kind);
  std::erase_if(entries, [&](const fs::path& entry) {
    return !FitsWildcards(TextOfPath(entry.filename()), parts.name);
  });
  return entries;
}

ScriptError FileError(int systemError, ErrorNumber notFound) {
  if (systemError == ENOENT) return ScriptError(notFound);
  for (const ErrorRow& row : errorRows) {
    if (row.systemError == systemError) return ScriptError(row.number);
  }
  return ScriptError(deviceError);
}

ScriptError FileError(std::error_code error, ErrorNumber notFound) {
  return FileError(error.value(), notFound);
}

void Check(std::error_code error, ErrorNumber notFound) {
  if (error) throw FileError(error, notFound);
}

}  // namespace quarlin::vbs
