// SPDX-License-Identifier: GPL-3.0-or-later
// File names as scripts write them, with "/" or "\" between the parts, and as the system has them.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "script/values/error.h"
#include "script/values/services.h"

namespace quarlin::vbs {

// Parts of a name by its text alone; nothing is looked up.
struct NameParts {
  std::u16string_view folder;     // without the separator at its end, unless it is the root
  std::u16string_view name;       // behind the last separator; separators at the very end do not count
  std::u16string_view base;       // the name up to its last dot
  std::u16string_view extension;  // behind the last dot
};
NameParts PartsOf(std::u16string_view path);

bool EndsWithSeparator(std::u16string_view path);
std::u16string JoinedPath(std::u16string_view folder, std::u16string_view name);
bool HasWildcards(std::u16string_view name);

// The file or folder that a script means: from Services::Folder() on, each part looked up exactly first and
// then without regard to case. What does not exist keeps its name. Errors: 5 for "", 52 for a name that no
// file can have, 76, which says that there are none, for one that begins with a drive's letter or a server.
std::filesystem::path LocatedPath(Services& services, std::u16string_view name);

// The same for something right in `folder`.
std::filesystem::path LocatedIn(const std::filesystem::path& folder, const std::filesystem::path& name);

std::u16string TextOfPath(const std::filesystem::path& path);

enum class EntryKind { File, Folder };
bool Exists(const std::filesystem::path& path, EntryKind kind);  // a device is a File, too

// The files or folders right in `folder`, in the order of their names. Error 76 or 70 when it cannot be read.
std::vector<std::filesystem::path> EntriesIn(const std::filesystem::path& folder, EntryKind kind);

// What a name that may hold * and ? in its last part stands for; empty when nothing is there.
std::vector<std::filesystem::path> Matching(Services& services, std::u16string_view name, EntryKind kind);

// The error of the language for one of the system; `notFound` is 53 or 76.
ScriptError FileError(std::error_code error, ErrorNumber notFound);
ScriptError FileError(int systemError, ErrorNumber notFound);
void Check(std::error_code error, ErrorNumber notFound);

}  // namespace quarlin::vbs
