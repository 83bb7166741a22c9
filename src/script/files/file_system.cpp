// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/file_system.h"

#include <array>
#include <random>

#include "script/files/file_entries.h"
#include "script/files/file_operations.h"
#include "script/files/file_paths.h"
#include "script/files/text_stream.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

namespace fs = std::filesystem;

constexpr std::int32_t temporaryFolder = 2;

fs::path PathArgument(FileSystem& self, Arguments arguments) {
  return LocatedPath(self.Host(), TextArgument(arguments, 0));
}

// Names as texts. Nothing is looked up.

Value BuildPath(FileSystem&, Arguments arguments) {
  return Value::String(JoinedPath(TextArgument(arguments, 0), TextArgument(arguments, 1)));
}

template <std::u16string_view NameParts::*part>
Value PartOfName(FileSystem&, Arguments arguments) {
  const std::u16string path = TextArgument(arguments, 0);
  return Value::String(PartsOf(path).*part);
}

Value GetTempName(FileSystem&, Arguments) {
  constexpr std::u16string_view digits = u"0123456789ABCDEF";
  constexpr int length = 5;
  std::random_device random;
  std::u16string name = u"rad";
  for (int count = 0; count < length; ++count) name += digits[random() % digits.size()];
  return Value::String(name + u".tmp");
}

// Looking up.

template <EntryKind kind>
Value EntryExists(FileSystem& self, Arguments arguments) {
  try {
    return Value::Bool(Exists(PathArgument(self, arguments), kind));
  } catch (const ScriptError& error) {
    if (error.number != pathNotFound && error.number != badFileName && error.number != invalidCall) throw;
    return Value::Bool(false);  // a name that no file can have
  }
}

Value DriveExists(FileSystem&, Arguments arguments) {
  return Value::Bool(TextArgument(arguments, 0) == u"/");
}

Value GetAbsolutePathName(FileSystem& self, Arguments arguments) {
  const std::u16string name = TextArgument(arguments, 0);
  return Value::String(TextOfPath(LocatedPath(self.Host(), name.empty() ? u"." : name)));
}

template <class Entry>
Value GetEntry(FileSystem& self, Arguments arguments) {
  const fs::path path = PathArgument(self, arguments);
  const bool isFile = Entry::kind == EntryKind::File;
  if (!Exists(path, Entry::kind)) throw ScriptError(isFile ? fileNotFound : pathNotFound);
  return NewObject<Entry>(self.Host(), path);
}

Value GetSpecialFolder(FileSystem& self, Arguments arguments) {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  if (error || CountOr(arguments, 0, temporaryFolder) != temporaryFolder) {
    throw ScriptError(pathNotFound);
  }
  return NewObject<Folder>(self.Host(), folder);
}

// Changing.

template <EntryKind kind>
Value CopyEntries(FileSystem& self, Arguments arguments) {
  CopyAll(self.Host(), kind, TextArgument(arguments, 0), TextArgument(arguments, 1),
          {.overwrite = FlagOr(arguments, 2, true)});
  return {};
}

template <EntryKind kind>
Value MoveEntries(FileSystem& self, Arguments arguments) {
  MoveAll(self.Host(), kind, TextArgument(arguments, 0), TextArgument(arguments, 1));
  return {};
}

template <EntryKind kind>
Value DeleteEntries(FileSystem& self, Arguments arguments) {
  DeleteAll(self.Host(), kind, TextArgument(arguments, 0), {.force = FlagOr(arguments, 1, false)});
  return {};
}

Value CreateFolderMember(FileSystem& self, Arguments arguments) {
  return CreateFolder(self.Host(), PathArgument(self, arguments));
}

Value CreateTextFile(FileSystem& self, Arguments arguments) {
  return CreateTextStream(PathArgument(self, arguments), FlagOr(arguments, 1, true),
                          FlagOr(arguments, 2, false));
}

Value OpenTextFile(FileSystem& self, Arguments arguments) {
  return OpenTextStream(self.Host(), PathArgument(self, arguments), CountOr(arguments, 1, 1),
                        FlagOr(arguments, 2, false), CountOr(arguments, 3, 0));
}

constexpr auto members = std::to_array<Member<FileSystem>>({
    {u"BuildPath", MemberKind::Method, 2, 2, BuildPath},
    {u"CopyFile", MemberKind::Method, 2, 3, CopyEntries<EntryKind::File>},
    {u"CopyFolder", MemberKind::Method, 2, 3, CopyEntries<EntryKind::Folder>},
    {u"CreateFolder", MemberKind::Method, 1, 1, CreateFolderMember},
    {u"CreateTextFile", MemberKind::Method, 1, 3, CreateTextFile},
    {u"DeleteFile", MemberKind::Method, 1, 2, DeleteEntries<EntryKind::File>},
    {u"DeleteFolder", MemberKind::Method, 1, 2, DeleteEntries<EntryKind::Folder>},
    {u"DriveExists", MemberKind::Method, 1, 1, DriveExists},
    {u"FileExists", MemberKind::Method, 1, 1, EntryExists<EntryKind::File>},
    {u"FolderExists", MemberKind::Method, 1, 1, EntryExists<EntryKind::Folder>},
    {u"GetAbsolutePathName", MemberKind::Method, 1, 1, GetAbsolutePathName},
    {u"GetBaseName", MemberKind::Method, 1, 1, PartOfName<&NameParts::base>},
    {u"GetExtensionName", MemberKind::Method, 1, 1, PartOfName<&NameParts::extension>},
    {u"GetFile", MemberKind::Method, 1, 1, GetEntry<File>},
    {u"GetFileName", MemberKind::Method, 1, 1, PartOfName<&NameParts::name>},
    {u"GetFolder", MemberKind::Method, 1, 1, GetEntry<Folder>},
    {u"GetParentFolderName", MemberKind::Method, 1, 1, PartOfName<&NameParts::folder>},
    {u"GetSpecialFolder", MemberKind::Method, 1, 1, GetSpecialFolder},
    {u"GetTempName", MemberKind::Method, 0, 0, GetTempName},
    {u"MoveFile", MemberKind::Method, 2, 2, MoveEntries<EntryKind::File>},
    {u"MoveFolder", MemberKind::Method, 2, 2, MoveEntries<EntryKind::Folder>},
    {u"OpenTextFile", MemberKind::Method, 1, 4, OpenTextFile},
});

}  // namespace

std::span<const Member<FileSystem>> FileSystem::Members() {
  return members;
}

}  // namespace quarlin::vbs
