// SPDX-License-Identifier: GPL-3.0-or-later
// Workbooks in memory, as scripts of both languages fill them, and where they are saved.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "script/workbook/sheet.h"

namespace quarlin::vbs::sheets {

class Book final : public Counted {
 public:
  // With so many empty sheets, at least one.
  Book(std::u16string name, std::int32_t sheets);

  std::u16string name;         // of the file, once it was saved
  std::filesystem::path file;  // where it was saved; empty while it was not
  bool isSaved = true;         // nothing was changed since

  const std::vector<Ref<Sheet>>& Sheets() const { return sheets_; }
  const Ref<StyleTable>& Styles() const { return styles_; }

  Sheet& Active() const { return *active_; }
  void Activate(Sheet& sheet) { active_ = &sheet; }

  // A sheet of a new name in front of the sheet with this index, from 0; it becomes the active one.
  Sheet& Add(std::size_t index);

  // Error 1004 when it is the last one that is seen.
  void Remove(Sheet& sheet);

  // Without regard to case; null where there is none.
  Sheet* Find(std::u16string_view sheetName) const;
  std::size_t IndexOf(const Sheet& sheet) const;

  // Error 1004 for what no sheet may be called.
  void Rename(Sheet& sheet, std::u16string_view newName);
  void Hide(Sheet& sheet, bool hidden);

 private:
  std::u16string FreeName();
  bool IsLastSeen(const Sheet& sheet) const;

  Ref<StyleTable> styles_;
  std::vector<Ref<Sheet>> sheets_;
  Ref<Sheet> active_;
  std::uint32_t named_ = 0;  // sheets that got a name by number
};

// What scripts switch on and off and what has no effect without a window, but keeps its value.
enum class Switch : std::uint8_t { Visible, ScreenUpdating, UserControl, EnableEvents, Interactive, Count };

// The workbooks that are open, in the order in which they were made, and which of them is meant.
class Desk final : public Counted {
 public:
  Desk();

  std::int32_t sheetsInNewBook = 1;
  bool showsAlerts = true;
  std::array<Value, static_cast<std::size_t>(Switch::Count)> switches;

  const std::vector<Ref<Book>>& Books() const { return books_; }
  Book& Add();
  void Remove(const Book& book);
  void Activate(Book& book) { active_ = &book; }

  // Error 1004 while no workbook is open.
  Book& Active() const;
  bool HasBooks() const { return !books_.empty(); }

 private:
  std::vector<Ref<Book>> books_;
  Ref<Book> active_;
  std::uint32_t made_ = 0;
};

// Puts a value of a script into a cell: texts that begin with "=" are formulas, "'" in front keeps a text a
// text, numbers of every kind become Doubles, Null takes away what was there. Error 1004 for a text of more
// than 32767 characters, 13 for what no cell can hold.
void PutValue(Sheet& sheet, Place place, const Value& value);

}  // namespace quarlin::vbs::sheets
