// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/file_entries.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <vector>

#include "script/files/file_operations.h"
#include "script/files/text_stream.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

namespace fs = std::filesystem;

enum Attribute { readOnly = 1, hidden = 2, directory = 16, archive = 32 };

constexpr fs::perms writing = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;

template <class Entry>
constexpr ErrorNumber notFound = Entry::kind == EntryKind::File ? fileNotFound : pathNotFound;

template <class Entry>
struct statx Facts(const Entry& self) {
  struct statx facts {};
  if (statx(AT_FDCWD, self.Path().c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &facts) != 0) {
    throw FileError(errno, notFound<Entry>);
  }
  return facts;
}

Value DateOfStamp(const struct statx_timestamp& stamp) {
  const std::time_t seconds = stamp.tv_sec;
  std::tm local{};
  localtime_r(&seconds, &local);
  return Value::Date(DaysOf(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday) +
                     TimeOf(local.tm_hour, local.tm_min, local.tm_sec));
}

template <class Entry>
Value DateCreated(Entry& self, Arguments) {
  const struct statx facts = Facts(self);
  const bool known = (facts.stx_mask & STATX_BTIME) != 0;
  return DateOfStamp(known ? facts.stx_btime : facts.stx_mtime);
}

template <class Entry>
Value DateLastModified(Entry& self, Arguments) {
  return DateOfStamp(Facts(self).stx_mtime);
}

template <class Entry>
Value DateLastAccessed(Entry& self, Arguments) {
  return DateOfStamp(Facts(self).stx_atime);
}

template <class Entry>
Value Attributes(Entry& self, Arguments) {
  int attributes = Entry::kind == EntryKind::File ? archive : directory;
  if ((Facts(self).stx_mode & S_IWUSR) == 0) attributes |= readOnly;
  if (self.Path().filename().native().starts_with('.')) attributes |= hidden;
  return Value::Long(attributes);
}

// Only the protection against writing can be changed here; the others follow from name and kind.
template <class Entry>
void PutAttributes(Entry& self, Arguments, const Value& value) {
  const bool isProtected = (ToLong(value) & readOnly) != 0;
  std::error_code error;
  fs::permissions(self.Path(), isProtected ? writing : fs::perms::owner_write,
                  isProtected ? fs::perm_options::remove : fs::perm_options::add, error);
  Check(error, notFound<Entry>);
}

template <class Entry>
Value Name(Entry& self, Arguments) {
  return Value::String(TextOfPath(self.Path().filename()));
}

template <class Entry>
void PutName(Entry& self, Arguments, const Value& value) {
  self.MovedTo(Rename(Entry::kind, self.Path(), ToText(value)));
}

template <class Entry>
Value Path(Entry& self, Arguments) {
  return Value::String(TextOfPath(self.Path()));
}

template <class Entry>
Value ParentFolder(Entry& self, Arguments) {
  if (!self.Path().has_relative_path()) return Value::Nothing();
  return NewObject<Folder>(self.Host(), self.Path().parent_path());
}

template <class Entry>
Value Delete(Entry& self, Arguments arguments) {
  DeleteOne(Entry::kind, self.Path(), {.force = FlagOr(arguments, 0, false)});
  return {};
}

template <class Entry>
Value Copy(Entry& self, Arguments arguments) {
  CopyOne(self.Host(), Entry::kind, self.Path(), TextArgument(arguments, 0),
          {.overwrite = FlagOr(arguments, 1, true)});
  return {};
}

template <class Entry>
Value Move(Entry& self, Arguments arguments) {
  self.MovedTo(MoveOne(self.Host(), Entry::kind, self.Path(), TextArgument(arguments, 0)));
  return {};
}

Value FileType(File& self, Arguments) {
  const std::u16string path = TextOfPath(self.Path());
  std::u16string type;
  for (const char16_t unit : PartsOf(path).extension) type += UpperOf(unit);
  return Value::String(type.empty() ? u"File" : type + u" File");
}

Value FileSize(File& self, Arguments) {
  return CountValue(Facts(self).stx_size);
}

Value OpenAsTextStream(File& self, Arguments arguments) {
  return OpenTextStream(self.Host(), self.Path(), CountOr(arguments, 0, 1), false, CountOr(arguments, 1, 0));
}

constexpr auto fileMembers = std::to_array<Member<File>>({
    {u"Path", MemberKind::Property, 0, 0, Path<File>, nullptr, true},
    {u"Name", MemberKind::Property, 0, 0, Name<File>, PutName<File>},
    {u"Size", MemberKind::Property, 0, 0, FileSize},
    {u"Type", MemberKind::Property, 0, 0, FileType},
    {u"DateCreated", MemberKind::Property, 0, 0, DateCreated<File>},
    {u"DateLastModified", MemberKind::Property, 0, 0, DateLastModified<File>},
    {u"DateLastAccessed", MemberKind::Property, 0, 0, DateLastAccessed<File>},
    {u"Attributes", MemberKind::Property, 0, 0, Attributes<File>, PutAttributes<File>},
    {u"ParentFolder", MemberKind::Property, 0, 0, ParentFolder<File>},
    {u"ShortName", MemberKind::Property, 0, 0, Name<File>},
    {u"ShortPath", MemberKind::Property, 0, 0, Path<File>},
    {u"Delete", MemberKind::Method, 0, 1, Delete<File>},
    {u"Copy", MemberKind::Method, 1, 2, Copy<File>},
    {u"Move", MemberKind::Method, 1, 1, Move<File>},
    {u"OpenAsTextStream", MemberKind::Method, 0, 2, OpenAsTextStream},
});

Value FolderType(Folder&, Arguments) {
  return Value::String(u"File folder");
}

Value FolderSize(Folder& self, Arguments) {
  return CountValue(SizeOfFolder(self.Host(), self.Path()));
}

Value IsRootFolder(Folder& self, Arguments) {
  return Value::Bool(self.IsRoot());
}

template <class Entry>
Value EntriesOf(Folder& self, Arguments) {
  return NewObject<EntryCollection<Entry>>(self.Host(), self.Path());
}

Value CreateTextFile(Folder& self, Arguments arguments) {
  const fs::path name =
      LocatedPath(self.Host(), JoinedPath(TextOfPath(self.Path()), TextArgument(arguments, 0)));
  return CreateTextStream(name, FlagOr(arguments, 1, true), FlagOr(arguments, 2, false));
}

constexpr auto folderMembers = std::to_array<Member<Folder>>({
    {u"Path", MemberKind::Property, 0, 0, Path<Folder>, nullptr, true},
    {u"Name", MemberKind::Property, 0, 0, Name<Folder>, PutName<Folder>},
    {u"Files", MemberKind::Property, 0, 0, EntriesOf<File>},
    {u"SubFolders", MemberKind::Property, 0, 0, EntriesOf<Folder>},
    {u"ParentFolder", MemberKind::Property, 0, 0, ParentFolder<Folder>},
    {u"Size", MemberKind::Property, 0, 0, FolderSize},
    {u"Type", MemberKind::Property, 0, 0, FolderType},
    {u"IsRootFolder", MemberKind::Property, 0, 0, IsRootFolder},
    {u"DateCreated", MemberKind::Property, 0, 0, DateCreated<Folder>},
    {u"DateLastModified", MemberKind::Property, 0, 0, DateLastModified<Folder>},
    {u"DateLastAccessed", MemberKind::Property, 0, 0, DateLastAccessed<Folder>},
    {u"Attributes", MemberKind::Property, 0, 0, Attributes<Folder>, PutAttributes<Folder>},
    {u"ShortName", MemberKind::Property, 0, 0, Name<Folder>},
    {u"ShortPath", MemberKind::Property, 0, 0, Path<Folder>},
    {u"Delete", MemberKind::Method, 0, 1, Delete<Folder>},
    {u"Copy", MemberKind::Method, 1, 2, Copy<Folder>},
    {u"Move", MemberKind::Method, 1, 1, Move<Folder>},
    {u"CreateTextFile", MemberKind::Method, 1, 3, CreateTextFile},
});

template <class Entry>
class EntryWalk final : public Enumerator {
 public:
  EntryWalk(Services& services, std::vector<fs::path> entries)
      : services_(services), entries_(std::move(entries)) {}
  std::optional<Value> Next() override {
    if (next_ == entries_.size()) return std::nullopt;
    return NewObject<Entry>(services_, entries_[next_++]);
  }

 private:
  Services& services_;
  std::vector<fs::path> entries_;
  std::size_t next_ = 0;
};

template <class Entry>
Value Count(EntryCollection<Entry>& self, Arguments) {
  return CountValue(EntriesIn(self.Path(), Entry::kind).size());
}

template <class Entry>
Value Item(EntryCollection<Entry>& self, Arguments arguments) {
  const std::u16string name = TextArgument(arguments, 0);
  const fs::path path = LocatedPath(self.Host(), JoinedPath(TextOfPath(self.Path()), name));
  if (name.empty() || !Exists(path, Entry::kind)) throw ScriptError(notFound<Entry>);
  return NewObject<Entry>(self.Host(), path);
}

Value AddFolder(EntryCollection<Folder>& self, Arguments arguments) {
  return CreateFolder(
      self.Host(), LocatedPath(self.Host(), JoinedPath(TextOfPath(self.Path()), TextArgument(arguments, 0))));
}

constexpr auto filesMembers = std::to_array<Member<EntryCollection<File>>>({
    {u"Item", MemberKind::Indexed, 1, 1, Item<File>, nullptr, true},
    {u"Count", MemberKind::Property, 0, 0, Count<File>},
});

constexpr auto foldersMembers = std::to_array<Member<EntryCollection<Folder>>>({
    {u"Item", MemberKind::Indexed, 1, 1, Item<Folder>, nullptr, true},
    {u"Count", MemberKind::Property, 0, 0, Count<Folder>},
    {u"Add", MemberKind::Method, 1, 1, AddFolder},
});

}  // namespace

std::span<const Member<File>> File::Members() {
  return fileMembers;
}

std::span<const Member<Folder>> Folder::Members() {
  return folderMembers;
}

template <>
std::span<const Member<EntryCollection<File>>> EntryCollection<File>::Members() {
  return filesMembers;
}

template <>
std::span<const Member<EntryCollection<Folder>>> EntryCollection<Folder>::Members() {
  return foldersMembers;
}

template <class Entry>
std::u16string_view EntryCollection<Entry>::TypeName() const {
  return Entry::kind == EntryKind::File ? u"Files" : u"Folders";
}

template <class Entry>
std::unique_ptr<Enumerator> EntryCollection<Entry>::Enumerate() {
  return std::make_unique<EntryWalk<Entry>>(services_, EntriesIn(folder_, Entry::kind));
}

template class EntryCollection<File>;
template class EntryCollection<Folder>;

Value CreateFolder(Services& services, const fs::path& path) {
  std::error_code error;
  if (!fs::create_directory(path, error) && !error) throw ScriptError(fileExists);
  Check(error, pathNotFound);
  return NewObject<Folder>(services, path);
}

}  // namespace quarlin::vbs
