// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/workbook.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "script/values/conversions.h"
#include "script/values/dispatch.h"

namespace quarlin::vbs::sheets {
namespace {

constexpr std::size_t longestSheetName = 31;
constexpr std::size_t longestCellText = 32'767;

std::u16string Numbered(std::u16string_view word, std::uint32_t number) {
  return std::u16string(word) + Utf16Of(std::to_string(number));
}

void CheckSheetName(std::u16string_view name) {
  const auto refuse = [&](std::u16string_view why) {
    throw SheetError(u"A sheet cannot be called '" + std::u16string(name) + u"': " + std::u16string(why));
  };
  if (name.empty()) refuse(u"a name must have a character");
  if (name.size() > longestSheetName) refuse(u"a name has at most 31 characters");
  if (name.find_first_of(u"[]:*?/\\") != name.npos) refuse(u"a name must not hold any of [ ] : * ? / \\");
  if (name.front() == u'\'' || name.back() == u'\'') refuse(u"a name must not begin or end with '");
}

void PutText(Sheet& sheet, Place place, const Value& text) {
  const std::u16string_view view = text.AsText();
  if (view.size() > longestCellText) {
    throw SheetError(u"A cell holds at most 32767 characters, not " + Utf16Of(std::to_string(view.size())));
  }
  const bool isFormula = view.size() > 1 && view.front() == u'=';
  const bool isQuoted = view.starts_with(u'\'');
  sheet.Put(place, isQuoted ? Value::String(view.substr(1)) : text, isFormula);
}

// A script of the other language can bring infinity, which no cell can hold as a number.
void PutNumber(Sheet& sheet, Place place, double number) {
  sheet.Put(place, std::isfinite(number) ? Value::Double(number) : Value::String(TextOfDouble(number)));
}

}  // namespace

Book::Book(std::u16string bookName, std::int32_t count) : name(std::move(bookName)), styles_(new StyleTable) {
  while (sheets_.size() < static_cast<std::size_t>(count)) Add(sheets_.size());
  Activate(*sheets_.front());
  isSaved = true;
}

Sheet& Book::Add(std::size_t index) {
  const auto at = sheets_.begin() + static_cast<std::ptrdiff_t>(std::min(index, sheets_.size()));
  Sheet& added = **sheets_.insert(at, Ref<Sheet>(new Sheet(styles_, FreeName())));
  Activate(added);
  isSaved = false;
  return added;
}

std::u16string Book::FreeName() {
  std::u16string free;
  do {
    free = Numbered(u"Sheet", ++named_);
  } while (Find(free) != nullptr);
  return free;
}

bool Book::IsLastSeen(const Sheet& sheet) const {
  return std::ranges::none_of(
      sheets_, [&](const Ref<Sheet>& other) { return other.Get() != &sheet && !other->isHidden; });
}

void Book::Remove(Sheet& sheet) {
  if (IsLastSeen(sheet)) throw SheetError(u"A workbook must have a sheet that is seen");
  const std::size_t index = IndexOf(sheet);
  const bool wasActive = &sheet == active_.Get();
  sheets_.erase(sheets_.begin() + static_cast<std::ptrdiff_t>(index));
  isSaved = false;
  if (!wasActive) return;
  active_ = *std::ranges::find_if(sheets_, [](const Ref<Sheet>& other) { return !other->isHidden; });
}

Sheet* Book::Find(std::u16string_view sheetName) const {
  const auto found = std::ranges::find_if(
      sheets_, [&](const Ref<Sheet>& sheet) { return SameName(sheet->name, sheetName); });
  return found == sheets_.end() ? nullptr : found->Get();
}

std::size_t Book::IndexOf(const Sheet& sheet) const {
  const auto found =
      std::ranges::find_if(sheets_, [&](const Ref<Sheet>& other) { return other.Get() == &sheet; });
  if (found == sheets_.end()) throw SheetError(u"The sheet '" + sheet.name + u"' was deleted");
  return static_cast<std::size_t>(found - sheets_.begin());
}

void Book::Rename(Sheet& sheet, std::u16string_view newName) {
  CheckSheetName(newName);
  const Sheet* other = Find(newName);
  if (other != nullptr && other != &sheet) {
    throw SheetError(u"There is a sheet '" + std::u16string(newName) + u"' already");
  }
  sheet.name = newName;
  isSaved = false;
}

void Book::Hide(Sheet& sheet, bool hidden) {
  if (hidden && IsLastSeen(sheet)) throw SheetError(u"A workbook must have a sheet that is seen");
  sheet.isHidden = hidden;
  isSaved = false;
  if (!hidden || &sheet != active_.Get()) return;
  active_ = *std::ranges::find_if(sheets_, [](const Ref<Sheet>& other) { return !other->isHidden; });
}

Desk::Desk() {
  switches.fill(Value::Bool(true));
  switches[static_cast<std::size_t>(Switch::Visible)] = Value::Bool(false);
  switches[static_cast<std::size_t>(Switch::UserControl)] = Value::Bool(false);
}

Book& Desk::Add() {
  books_.emplace_back(new Book(Numbered(u"Book", ++made_), sheetsInNewBook));
  Activate(*books_.back());
  return *books_.back();
}

void Desk::Remove(const Book& book) {
  const bool wasActive = active_.Get() == &book;
  std::erase_if(books_, [&](const Ref<Book>& other) { return other.Get() == &book; });
  if (wasActive) active_ = books_.empty() ? Ref<Book>() : books_.back();
}

Book& Desk::Active() const {
  if (!active_) throw SheetError(u"No workbook is open: Workbooks.Add makes one");
  return *active_;
}

void PutValue(Sheet& sheet, Place place, const Value& value) {
  switch (value.GetKind()) {
    case Kind::Empty:
    case Kind::Null:
    case Kind::Error:
      sheet.Put(place, {});
      break;
    case Kind::String:
      PutText(sheet, place, value);
      break;
    case Kind::Boolean:
    case Kind::Date:
      sheet.Put(place, value);
      break;
    case Kind::Array:
      throw ScriptError(typeMismatch);
    case Kind::Object:
      if (value.IsNothing()) throw ScriptError(objectNotSet);
      PutValue(sheet, place, Plain(value));
      break;
    default:
      PutNumber(sheet, place, ToDouble(value));
  }
}

}  // namespace quarlin::vbs::sheets
