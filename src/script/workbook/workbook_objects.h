// SPDX-License-Identifier: GPL-3.0-or-later
// "Excel.Application" for scripts that write their results into workbooks: the application, its workbooks,
// their sheets. The cells are in sheet_range.h. Files are written, not read.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "script/workbook/sheet_range.h"

namespace quarlin::vbs::sheets {

class Application final : public TableObject<Application> {
 public:
  explicit Application(Services& services) : Application(services, Ref<Desk>(new Desk)) {}
  Application(Services& services, Ref<Desk> desk) : services_(services), desk_(std::move(desk)) {}
  static std::span<const Member<Application>> Members();
  std::u16string_view TypeName() const override { return u"Application"; }

  Services& Host() const { return services_; }
  const Ref<Desk>& Table() const { return desk_; }
  Home ActiveBook() const { return {&services_, desk_, Ref<Book>(&desk_->Active())}; }

 private:
  Services& services_;
  Ref<Desk> desk_;
};

class Workbooks final : public TableObject<Workbooks> {
 public:
  Workbooks(Services& services, Ref<Desk> desk) : services_(services), desk_(std::move(desk)) {}
  static std::span<const Member<Workbooks>> Members();
  std::u16string_view TypeName() const override { return u"Workbooks"; }
  std::unique_ptr<Enumerator> Enumerate() override;

  Desk& Table() const { return *desk_; }
  Value BookAt(std::size_t index) const;  // from 0
  Value Of(Book& book) const;

 private:
  Services& services_;
  Ref<Desk> desk_;
};

class Workbook final : public TableObject<Workbook> {
 public:
  explicit Workbook(Home home) : home_(std::move(home)) {}
  static std::span<const Member<Workbook>> Members();
  std::u16string_view TypeName() const override { return u"Workbook"; }
  const Home& Where() const { return home_; }

 private:
  Home home_;
};

class Worksheets final : public TableObject<Worksheets> {
 public:
  explicit Worksheets(Home home) : home_(std::move(home)) {}
  static std::span<const Member<Worksheets>> Members();
  std::u16string_view TypeName() const override { return u"Sheets"; }
  std::unique_ptr<Enumerator> Enumerate() override;

  const Home& Where() const { return home_; }
  Value SheetAt(std::size_t index) const;  // from 0

 private:
  Home home_;
};

class Worksheet final : public TableObject<Worksheet> {
 public:
  Worksheet(Home home, Ref<Sheet> sheet) : home_(std::move(home)), sheet_(std::move(sheet)) {}
  static std::span<const Member<Worksheet>> Members();
  std::u16string_view TypeName() const override { return u"Worksheet"; }

  const Home& Where() const { return home_; }
  Sheet& Inner() const { return *sheet_; }
  Ref<SheetRange> All() const { return new SheetRange(home_, sheet_, Area::Sheet()); }

 private:
  Home home_;
  Ref<Sheet> sheet_;
};

// Saves under a name as scripts write it; ".xlsx" is added where it has no ending. Asks before it replaces
// another file while alerts are shown. Error 1004 when it cannot be saved or is not to be replaced.
void SaveBookAs(const Home& home, std::u16string_view name);

// Where it was saved last, or under its own name in the folder of scripts.
void SaveBook(const Home& home);

// What is not saved is asked for while alerts are shown, and lost while they are not.
void CloseBook(const Home& home);

}  // namespace quarlin::vbs::sheets
