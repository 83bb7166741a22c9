// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/profile_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include "base/clock.h"
#include "base/files.h"
#include "base/text.h"

namespace quarlin {
namespace {

// The system stamps a file with the time of its last clock tick, so a second change within one tick leaves
// no trace. No system in use ticks more slowly than this.
constexpr std::chrono::milliseconds longestTick{50};

// So long a name is taken to lead where it led: in a burst of requests the way through the folders would be
// the dearest part of an answer.
constexpr std::chrono::milliseconds nameTrusted{1};

std::chrono::nanoseconds TimeOf(const timespec& time) {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

std::size_t ProfileFile::HashIgnoringCase::operator()(std::string_view text) const {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const char character : text) {
    const bool letter = character >= 'A' && character <= 'Z';
    const auto folded = static_cast<unsigned char>(letter ? character - 'A' + 'a' : character);
    hash = (hash ^ folded) * 0x100000001B3;
  }
  return hash;
}

bool ProfileFile::SameIgnoringCase::operator()(std::string_view left, std::string_view right) const {
  return EqualsIgnoringCase(left, right);
}

ProfileFile::ProfileFile(ProgramFolder folder, std::string_view name)
    : folder_(std::move(folder)), exact_(folder_.Path() / name) {}

std::string ProfileFile::ReadProfileString(std::string_view section, std::string_view key) {
  Refresh();
  return std::string(Value(section, key));
}

std::string_view ProfileFile::Value(std::string_view section, std::string_view key) const {
  const auto found = sections_.find(section);
  if (found == sections_.end()) return {};
  const auto entry = found->second.index.find(key);
  return entry == found->second.index.end() ? std::string_view() : found->second.entries[entry->second].value;
}

std::vector<ProfileFile::Entry> ProfileFile::Entries(std::string_view section) const {
  const auto found = sections_.find(section);
  return found == sections_.end() ? std::vector<Entry>() : found->second.entries;
}

ProfileFile::Stamp::Stamp(const struct stat& status)
    : device(status.st_dev),
      inode(status.st_ino),
      links(status.st_nlink),
      size(status.st_size),
      modified(TimeOf(status.st_mtim)),
      changed(TimeOf(status.st_ctim)) {}

std::optional<ProfileFile::Stamp> ProfileFile::Look() const {
  struct stat status {};
  if (handle_.Get() < 0 || fstat(handle_.Get(), &status) != 0) return std::nullopt;
  return Stamp(status);
}

std::optional<ProfileFile::Stamp> ProfileFile::StampOf(const std::filesystem::path& file) const {
  struct stat status {};
  if (file.empty() || stat(file.c_str(), &status) != 0) return std::nullopt;
  return Stamp(status);
}

// The folder is searched only when neither the exact name nor the one that was found before is there.
std::optional<ProfileFile::Stamp> ProfileFile::FindFile() {
  if (const auto stamp = StampOf(exact_)) {
    file_ = exact_;
    return stamp;
  }
  if (const auto stamp = StampOf(file_)) return stamp;
  file_ = folder_.File(exact_.filename().string());
  return StampOf(file_);
}

void ProfileFile::Refresh() {
  // The time is taken before the file is looked at and read: what changes later gets a later stamp, or is
  // read. The change time is looked at, since unlike the modification time it cannot be set at will.
  const std::chrono::nanoseconds now = FileClockNow();
  const bool nameIsTrusted = now >= nameChecked_ && now - nameChecked_ < nameTrusted;
  if (stamp_ && nameIsTrusted && Look() == stamp_) return;
  const std::optional<Stamp> stamp = FindFile();
  nameChecked_ = now;
  if (stamp && stamp == stamp_) return;
  const bool settled = stamp && now - stamp->changed > longestTick;
  std::optional<std::string> content = stamp ? ReadWholeFile(file_) : std::nullopt;
  stamp_ = settled && content ? stamp : std::nullopt;
  if (stamp_) handle_ = FileHandle(open(file_.c_str(), O_PATH | O_CLOEXEC));
  Take(content ? BytesFromFileText(*content) : std::string());
}

void ProfileFile::Take(std::string text) {
  if (text == text_) return;
  sections_.clear();
  text_ = std::move(text);
  ++revision_;
  Parse();
}

void ProfileFile::Parse() {
  std::string_view rest = text_;
  Section* section = nullptr;
  while (!rest.empty()) {
    const ProfileLine line = ReadProfileLine(TakeProfileLine(rest));
    if (line.kind == ProfileLine::Kind::Section) {
      const auto [place, isNew] = sections_.try_emplace(line.name);
      section = isNew ? &place->second : nullptr;
    } else if (line.kind == ProfileLine::Kind::Entry && section != nullptr) {
      AddEntry(*section, line);
    }
  }
}

void ProfileFile::AddEntry(Section& section, const ProfileLine& line) {
  if (!section.index.try_emplace(line.name, section.entries.size()).second) return;
  section.entries.push_back({line.name, line.value.substr(0, longestValue)});
}

}  // namespace quarlin
