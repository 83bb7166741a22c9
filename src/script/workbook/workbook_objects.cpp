// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/workbook/workbook_objects.h"

#include <algorithm>
#include <array>

#include "script/files/file_paths.h"
#include "script/values/library_object.h"

namespace quarlin::vbs::sheets {
namespace {

// Walks what a collection holds at the time.
template <class Collection, Value (Collection::*item)(std::size_t index) const>
class Walk final : public Enumerator {
 public:
  Walk(Ref<Collection> collection, std::size_t count) : collection_(std::move(collection)), count_(count) {}
  std::optional<Value> Next() override {
    if (next_ == count_) return std::nullopt;
    return (collection_.Get()->*item)(next_++);
  }

 private:
  Ref<Collection> collection_;
  std::size_t count_;
  std::size_t next_ = 0;
};

// An item's place in a collection of `count`, by its number from 1. Error 9 without such an item.
std::size_t IndexOf(const Value& number, std::size_t count) {
  const std::int32_t index = CountOf(number);
  if (index < 1 || static_cast<std::size_t>(index) > count) throw ScriptError(subscriptOutOfRange);
  return static_cast<std::size_t>(index) - 1;
}

Value SheetOf(const Home& home, Sheet& sheet) {
  return NewObject<Worksheet>(home, Ref<Sheet>(&sheet));
}

Ref<SheetRange> ActiveCells(const Home& home) {
  return new SheetRange(home, Ref<Sheet>(&home.book->Active()), Area::Sheet());
}

// Members of the application that stand for those of its active sheet.
template <Value (*part)(const SheetRange&, Arguments)>
Value GetActivePart(Application& self, Arguments arguments) {
  return part(*ActiveCells(self.ActiveBook()), arguments);
}

template <Value (*part)(const SheetRange&, Arguments)>
void PutActivePart(Application& self, Arguments indices, const Value& value) {
  PutInto(GetActivePart<part>(self, indices), value);
}

Value GetWorkbooks(Application& self, Arguments) {
  return NewObject<Workbooks>(self.Host(), self.Table());
}

Value GetActiveWorkbook(Application& self, Arguments) {
  if (!self.Table()->HasBooks()) return Value::Nothing();
  return NewObject<Workbook>(self.ActiveBook());
}

Value GetActiveSheet(Application& self, Arguments) {
  if (!self.Table()->HasBooks()) return Value::Nothing();
  const Home home = self.ActiveBook();
  return SheetOf(home, home.book->Active());
}

Value GetActiveSheets(Application& self, Arguments) {
  return NewObject<Worksheets>(self.ActiveBook());
}

Value GetSelection(Application& self, Arguments) {
  const Ref<SheetRange> all = ActiveCells(self.ActiveBook());
  return all->At(all->On()->selection);
}

Value GetActiveCell(Application& self, Arguments) {
  const Ref<SheetRange> all = ActiveCells(self.ActiveBook());
  return all->At(Area::Of(all->On()->selection.first));
}

template <Switch which>
Value GetSwitch(Application& self, Arguments) {
  return self.Table()->switches[static_cast<std::size_t>(which)];
}

template <Switch which>
void PutSwitch(Application& self, Arguments, const Value& value) {
  self.Table()->switches[static_cast<std::size_t>(which)] = Value::Bool(ToBool(value));
}

Value GetDisplayAlerts(Application& self, Arguments) {
  return Value::Bool(self.Table()->showsAlerts);
}

void PutDisplayAlerts(Application& self, Arguments, const Value& value) {
  self.Table()->showsAlerts = ToBool(value);
}

Value GetSheetsInNewWorkbook(Application& self, Arguments) {
  return Value::Long(self.Table()->sheetsInNewBook);
}

void PutSheetsInNewWorkbook(Application& self, Arguments, const Value& value) {
  constexpr std::int32_t most = 255;
  const std::int32_t count = ToLong(value);
  if (count < 1 || count > most) throw SheetError(u"A new workbook has 1 to 255 sheets");
  self.Table()->sheetsInNewBook = count;
}

Value Quit(Application& self, Arguments) {
  while (self.Table()->HasBooks()) CloseBook(self.ActiveBook());
  return {};
}

constexpr auto applicationMembers = std::to_array<Member<Application>>({
    {u"Name", MemberKind::Property, 0, 0, [](Application&, Arguments) { return Value::String(u"Quarlin"); },
     nullptr, true},
    // Scripts ask from which version on .xlsx is known, which is 12.
    {u"Version", MemberKind::Property, 0, 0, [](Application&, Arguments) { return Value::String(u"16.0"); }},
    {u"Workbooks", MemberKind::Property, 0, 0, GetWorkbooks},
    {u"ActiveWorkbook", MemberKind::Property, 0, 0, GetActiveWorkbook},
    {u"ActiveSheet", MemberKind::Property, 0, 0, GetActiveSheet},
    {u"ActiveCell", MemberKind::Property, 0, 0, GetActiveCell},
    {u"Selection", MemberKind::Property, 0, 0, GetSelection},
    {u"Worksheets", MemberKind::Property, 0, 0, GetActiveSheets},
    {u"Sheets", MemberKind::Property, 0, 0, GetActiveSheets},
    {u"Cells", MemberKind::Indexed, 0, 2, GetActivePart<CellsOf>, PutActivePart<CellsOf>},
    {u"Range", MemberKind::Indexed, 1, 2, GetActivePart<RangeOf>, PutActivePart<RangeOf>},
    {u"Rows", MemberKind::Indexed, 0, 1, GetActivePart<RowsOf>, PutActivePart<RowsOf>},
    {u"Columns", MemberKind::Indexed, 0, 1, GetActivePart<ColumnsOf>, PutActivePart<ColumnsOf>},
    {u"DisplayAlerts", MemberKind::Property, 0, 0, GetDisplayAlerts, PutDisplayAlerts},
    {u"SheetsInNewWorkbook", MemberKind::Property, 0, 0, GetSheetsInNewWorkbook, PutSheetsInNewWorkbook},
    {u"Visible", MemberKind::Property, 0, 0, GetSwitch<Switch::Visible>, PutSwitch<Switch::Visible>},
    {u"ScreenUpdating", MemberKind::Property, 0, 0, GetSwitch<Switch::ScreenUpdating>,
     PutSwitch<Switch::ScreenUpdating>},
    {u"UserControl", MemberKind::Property, 0, 0, GetSwitch<Switch::UserControl>,
     PutSwitch<Switch::UserControl>},
    {u"EnableEvents", MemberKind::Property, 0, 0, GetSwitch<Switch::EnableEvents>,
     PutSwitch<Switch::EnableEvents>},
    {u"Interactive", MemberKind::Property, 0, 0, GetSwitch<Switch::Interactive>,
     PutSwitch<Switch::Interactive>},
    {u"Quit", MemberKind::Method, 0, 0, Quit},
});

Value AddBook(Workbooks& self, Arguments) {
  return self.Of(self.Table().Add());
}

Value GetBook(Workbooks& self, Arguments arguments) {
  const auto& books = self.Table().Books();
  if (!arguments[0].IsString()) return self.BookAt(IndexOf(arguments[0], books.size()));
  const auto found = std::ranges::find_if(
      books, [&](const Ref<Book>& book) { return SameName(book->name, arguments[0].AsText()); });
  if (found == books.end()) throw ScriptError(subscriptOutOfRange, arguments[0].AsText());
  return self.Of(**found);
}

Value CountBooks(Workbooks& self, Arguments) {
  return CountValue(self.Table().Books().size());
}

constexpr auto workbooksMembers = std::to_array<Member<Workbooks>>({
    {u"Item", MemberKind::Indexed, 1, 1, GetBook, nullptr, true},
    {u"Add", MemberKind::Method, 0, 1, AddBook},
    {u"Count", MemberKind::Property, 0, 0, CountBooks},
});

Value SaveAs(Workbook& self, Arguments arguments) {
  constexpr std::int32_t workbookFormat = 51;
  constexpr std::int32_t usualFormat = -4143;  // "normal", which older scripts pass
  const std::int32_t format = CountOr(arguments, 1, workbookFormat);
  if (format != workbookFormat && format != usualFormat) {
    throw SheetError(u"Workbooks are written as .xlsx only, which is the format 51");
  }
  SaveBookAs(self.Where(), TextArgument(arguments, 0));
  return {};
}

Value Save(Workbook& self, Arguments) {
  SaveBook(self.Where());
  return {};
}

Value Close(Workbook& self, Arguments arguments) {
  const Home& home = self.Where();
  const Value* saveChanges = Given(arguments, 0);
  if (saveChanges == nullptr) {
    CloseBook(home);
    return {};
  }
  if (ToBool(*saveChanges)) {
    const Value* name = Given(arguments, 1);
    if (name != nullptr) {
      SaveBookAs(home, ToText(*name));
    } else if (!home.book->isSaved) {
      SaveBook(home);
    }
  }
  home.desk->Remove(*home.book);
  return {};
}

Value GetSheets(Workbook& self, Arguments) {
  return NewObject<Worksheets>(self.Where());
}

Value GetBooksActiveSheet(Workbook& self, Arguments) {
  return SheetOf(self.Where(), self.Where().book->Active());
}

Value GetBookName(Workbook& self, Arguments) {
  return Value::String(self.Where().book->name);
}

Value GetPath(Workbook& self, Arguments) {
  return Value::String(TextOfPath(self.Where().book->file.parent_path()));
}

Value GetFullName(Workbook& self, Arguments) {
  const Book& book = *self.Where().book;
  return Value::String(book.file.empty() ? book.name : TextOfPath(book.file));
}

Value GetSaved(Workbook& self, Arguments) {
  return Value::Bool(self.Where().book->isSaved);
}

void PutSaved(Workbook& self, Arguments, const Value& value) {
  self.Where().book->isSaved = ToBool(value);
}

Value ActivateBook(Workbook& self, Arguments) {
  self.Where().desk->Activate(*self.Where().book);
  return {};
}

template <class Object>
Value GetApplication(Object& self, Arguments) {
  return NewObject<Application>(*self.Where().services, self.Where().desk);
}

constexpr auto workbookMembers = std::to_array<Member<Workbook>>({
    {u"Name", MemberKind::Property, 0, 0, GetBookName, nullptr, true},
    {u"Path", MemberKind::Property, 0, 0, GetPath},
    {u"FullName", MemberKind::Property, 0, 0, GetFullName},
    {u"Saved", MemberKind::Property, 0, 0, GetSaved, PutSaved},
    {u"Worksheets", MemberKind::Property, 0, 0, GetSheets},
    {u"Sheets", MemberKind::Property, 0, 0, GetSheets},
    {u"ActiveSheet", MemberKind::Property, 0, 0, GetBooksActiveSheet},
    {u"Activate", MemberKind::Method, 0, 0, ActivateBook},
    {u"Application", MemberKind::Property, 0, 0, GetApplication<Workbook>},
    {u"Parent", MemberKind::Property, 0, 0, GetApplication<Workbook>},
    {u"SaveAs", MemberKind::Method, 1, 12, SaveAs},
    {u"Save", MemberKind::Method, 0, 0, Save},
    {u"Close", MemberKind::Method, 0, 3, Close},
});

Value GetSheet(Worksheets& self, Arguments arguments) {
  const Home& home = self.Where();
  if (!arguments[0].IsString()) return self.SheetAt(IndexOf(arguments[0], home.book->Sheets().size()));
  Sheet* found = home.book->Find(arguments[0].AsText());
  if (found == nullptr) throw ScriptError(subscriptOutOfRange, arguments[0].AsText());
  return SheetOf(home, *found);
}

// The index of a sheet that was handed over as an object, by its name or by its number.
std::size_t IndexOfSheet(const Book& book, const Value& given) {
  if (given.IsObject()) {
    const auto* sheet = dynamic_cast<const Worksheet*>(given.AsObject());
    if (sheet == nullptr) throw ScriptError(typeMismatch);
    return book.IndexOf(sheet->Inner());
  }
  if (!given.IsString()) return IndexOf(given, book.Sheets().size());
  const Sheet* found = book.Find(given.AsText());
  if (found == nullptr) throw ScriptError(subscriptOutOfRange, given.AsText());
  return book.IndexOf(*found);
}

// In front of a sheet, behind one, or in front of the active one.
Value AddSheets(Worksheets& self, Arguments arguments) {
  Book& book = *self.Where().book;
  const Value* before = Given(arguments, 0);
  const Value* after = Given(arguments, 1);
  std::size_t index = book.IndexOf(book.Active());
  if (before != nullptr) {
    index = IndexOfSheet(book, *before);
  } else if (after != nullptr) {
    index = IndexOfSheet(book, *after) + 1;
  }
  constexpr std::int32_t most = 255;
  const std::int32_t count = ChoiceOr(arguments, 2, 1, 1, most);
  Sheet* added = &book.Add(index);
  for (std::int32_t i = 1; i < count; ++i) added = &book.Add(index + static_cast<std::size_t>(i));
  return SheetOf(self.Where(), *added);
}

Value CountSheets(Worksheets& self, Arguments) {
  return CountValue(self.Where().book->Sheets().size());
}

constexpr auto worksheetsMembers = std::to_array<Member<Worksheets>>({
    {u"Item", MemberKind::Indexed, 1, 1, GetSheet, nullptr, true},
    {u"Add", MemberKind::Method, 0, 4, AddSheets},
    {u"Count", MemberKind::Property, 0, 0, CountSheets},
});

Value GetSheetName(Worksheet& self, Arguments) {
  return Value::String(self.Inner().name);
}

void PutSheetName(Worksheet& self, Arguments, const Value& value) {
  self.Where().book->Rename(self.Inner(), ToText(value));
}

Value GetSheetIndex(Worksheet& self, Arguments) {
  return CountValue(self.Where().book->IndexOf(self.Inner()) + 1);
}

Value GetSheetVisible(Worksheet& self, Arguments) {
  return Value::Bool(!self.Inner().isHidden);
}

// True and -1 show it, False, 0 and 2 hide it.
void PutSheetVisible(Worksheet& self, Arguments, const Value& value) {
  self.Where().book->Hide(self.Inner(), ToLong(value) != -1);
}

Value ActivateSheet(Worksheet& self, Arguments) {
  if (self.Inner().isHidden) throw SheetError(u"The sheet '" + self.Inner().name + u"' is hidden");
  self.Where().book->Activate(self.Inner());
  return {};
}

Value DeleteSheet(Worksheet& self, Arguments) {
  self.Where().book->Remove(self.Inner());
  return Value::Bool(true);
}

Value GetUsedRange(Worksheet& self, Arguments) {
  return self.All()->At(self.Inner().Used());
}

Value GetParentBook(Worksheet& self, Arguments) {
  return NewObject<Workbook>(self.Where());
}

template <Value (*part)(const SheetRange&, Arguments)>
Value GetSheetPart(Worksheet& self, Arguments arguments) {
  return part(*self.All(), arguments);
}

template <Value (*part)(const SheetRange&, Arguments)>
void PutSheetPart(Worksheet& self, Arguments indices, const Value& value) {
  PutInto(GetSheetPart<part>(self, indices), value);
}

constexpr auto worksheetMembers = std::to_array<Member<Worksheet>>({
    {u"Name", MemberKind::Property, 0, 0, GetSheetName, PutSheetName, true},
    {u"Index", MemberKind::Property, 0, 0, GetSheetIndex},
    {u"Cells", MemberKind::Indexed, 0, 2, GetSheetPart<CellsOf>, PutSheetPart<CellsOf>},
    {u"Range", MemberKind::Indexed, 1, 2, GetSheetPart<RangeOf>, PutSheetPart<RangeOf>},
    {u"Rows", MemberKind::Indexed, 0, 1, GetSheetPart<RowsOf>, PutSheetPart<RowsOf>},
    {u"Columns", MemberKind::Indexed, 0, 1, GetSheetPart<ColumnsOf>, PutSheetPart<ColumnsOf>},
    {u"UsedRange", MemberKind::Property, 0, 0, GetUsedRange},
    {u"Visible", MemberKind::Property, 0, 0, GetSheetVisible, PutSheetVisible},
    {u"Activate", MemberKind::Method, 0, 0, ActivateSheet},
    {u"Select", MemberKind::Method, 0, 1, ActivateSheet},
    {u"Delete", MemberKind::Method, 0, 0, DeleteSheet},
    {u"Parent", MemberKind::Property, 0, 0, GetParentBook},
    {u"Application", MemberKind::Property, 0, 0, GetApplication<Worksheet>},
});

}  // namespace

std::span<const Member<Application>> Application::Members() {
  return applicationMembers;
}

std::span<const Member<Workbooks>> Workbooks::Members() {
  return workbooksMembers;
}

std::unique_ptr<Enumerator> Workbooks::Enumerate() {
  return std::make_unique<Walk<Workbooks, &Workbooks::BookAt>>(this, desk_->Books().size());
}

Value Workbooks::BookAt(std::size_t index) const {
  const auto& books = desk_->Books();
  if (index >= books.size()) throw ScriptError(subscriptOutOfRange);
  return Of(*books[index]);
}

Value Workbooks::Of(Book& book) const {
  return NewObject<Workbook>(Home{&services_, desk_, Ref<Book>(&book)});
}

std::span<const Member<Workbook>> Workbook::Members() {
  return workbookMembers;
}

std::span<const Member<Worksheets>> Worksheets::Members() {
  return worksheetsMembers;
}

std::unique_ptr<Enumerator> Worksheets::Enumerate() {
  return std::make_unique<Walk<Worksheets, &Worksheets::SheetAt>>(this, home_.book->Sheets().size());
}

Value Worksheets::SheetAt(std::size_t index) const {
  const auto& sheets = home_.book->Sheets();
  if (index >= sheets.size()) throw ScriptError(subscriptOutOfRange);
  return SheetOf(home_, *sheets[index]);
}

std::span<const Member<Worksheet>> Worksheet::Members() {
  return worksheetMembers;
}

}  // namespace quarlin::vbs::sheets
