// SPDX-License-Identifier: GPL-3.0-or-later
// A file in initialisation-file syntax, read the way the platform's own reader reads one:
//
//   ; a comment
//   [SECTION]
//   key = value
//
// Sections and keys are found without regard to case, and the first of a name wins: of two sections only
// the first one's keys count, of two keys the first. Blanks and tabs at the ends of keys and values are
// dropped, then one pair of matching quotes around the value. A value is cut at 2047 characters. A line is
// a section header when it begins with "[" and holds "]"; a key ends at the first "=". A line that is
// neither is passed over. Lines end with CR LF, LF or CR. The text is read as FileTextOf reads one.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/file_handle.h"
#include "base/profile_line.h"
#include "base/program_folder.h"

struct stat;

namespace quarlin {

class ProfileFile {
 public:
  static constexpr std::size_t longestValue = 2047;

  struct Entry {
    std::string_view key;
    std::string_view value;
  };

  // The file of that name as the folder has it at each moment, exactly the name before one in other case.
  ProfileFile(ProgramFolder folder, std::string_view name);
  ProfileFile(const ProfileFile&) = delete;  // the index points into the text
  ProfileFile& operator=(const ProfileFile&) = delete;

  // The value as the file has it now; empty when there is no such file, section or key.
  std::string ReadProfileString(std::string_view section, std::string_view key);

  // Takes in a change of the file; one query of its state when there was none. What the calls below return
  // stays valid until then. A change of the file, its removal and another in its place show at once; that its
  // exact name is there now, or that a folder above it or a link to it leads elsewhere, shows a millisecond
  // later at the latest.
  void Refresh();

  // Differs whenever Refresh found other content than before.
  std::uint64_t Revision() const { return revision_; }

  bool HasSection(std::string_view section) const { return sections_.contains(section); }
  std::string_view Value(std::string_view section, std::string_view key) const;
  std::vector<Entry> Entries(std::string_view section) const;  // the first of each key, in the file's order

 private:
  // What tells two states of a file apart.
  struct Stamp {
    explicit Stamp(const struct stat& status);
    bool operator==(const Stamp&) const = default;

    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t links = 0;
    std::int64_t size = 0;
    std::chrono::nanoseconds modified{};
    std::chrono::nanoseconds changed{};
  };

  struct HashIgnoringCase {
    std::size_t operator()(std::string_view text) const;
  };
  struct SameIgnoringCase {
    bool operator()(std::string_view left, std::string_view right) const;
  };
  template <typename Mapped>
  using NameMap = std::unordered_map<std::string_view, Mapped, HashIgnoringCase, SameIgnoringCase>;

  struct Section {
    NameMap<std::size_t> index;  // into entries
    std::vector<Entry> entries;
  };

  std::optional<Stamp> FindFile();
  std::optional<Stamp> StampOf(const std::filesystem::path& file) const;
  std::optional<Stamp> Look() const;  // at the file that the handle holds
  void Take(std::string text);
  void Parse();
  static void AddEntry(Section& section, const ProfileLine& line);

  ProgramFolder folder_;
  std::filesystem::path exact_;  // the name as given, in the folder
  std::filesystem::path file_;   // what was found at last
  std::optional<Stamp> stamp_;   // of the state that was read last, once a later change is sure to show in it
  FileHandle handle_;            // a way to the file's state that does not go through its folders
  std::chrono::nanoseconds nameChecked_{};  // when file_ was last seen to lead to it
  std::string text_;
  NameMap<Section> sections_;
  std::uint64_t revision_ = 0;
};

}  // namespace quarlin
