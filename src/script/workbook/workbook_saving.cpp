// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/files/file_paths.h"
#include "script/values/conversions.h"
#include "script/workbook/workbook_file.h"
#include "script/workbook/workbook_objects.h"

namespace quarlin::vbs::sheets {
namespace {

namespace fs = std::filesystem;

constexpr std::u16string_view ending = u".xlsx";
constexpr std::u16string_view title = u"Workbook";
constexpr std::int32_t yesNoQuestion = 4 + 32;
constexpr int yes = 6;

std::u16string NameWithEnding(std::u16string_view name) {
  const std::u16string_view extension = PartsOf(name).extension;
  if (extension.empty()) return std::u16string(name) + std::u16string(ending);
  if (SameName(extension, ending.substr(1))) return std::u16string(name);
  throw SheetError(u"'" + std::u16string(name) + u"' cannot be saved: workbooks are written as .xlsx only");
}

fs::path FileNamed(Services& services, const std::u16string& name) {
  try {
    return LocatedPath(services, name);
  } catch (const ScriptError& error) {
    throw SheetError(u"'" + name + u"' cannot be saved: " + error.FullDescription());
  }
}

void MayReplace(const Home& home, const fs::path& file) {
  if (!home.desk->showsAlerts || file == home.book->file || !Exists(file, EntryKind::File)) return;
  const std::u16string name = TextOfPath(file.filename());
  const int answer =
      home.services->MsgBox(u"There is a file '" + name + u"' already. Replace it?", yesNoQuestion, title);
  if (answer != yes) throw SheetError(u"'" + name + u"' was not saved: there is such a file");
}

void SaveTo(const Home& home, const fs::path& file) {
  WriteBook(*home.book, file, *home.services);
  home.book->file = file;
  home.book->name = TextOfPath(file.filename());
  home.book->isSaved = true;
}

}  // namespace

void SaveBookAs(const Home& home, std::u16string_view name) {
  const fs::path file = FileNamed(*home.services, NameWithEnding(name));
  MayReplace(home, file);
  SaveTo(home, file);
}

void SaveBook(const Home& home) {
  if (home.book->file.empty()) {
    SaveBookAs(home, home.book->name);
  } else {
    SaveTo(home, home.book->file);
  }
}

void CloseBook(const Home& home) {
  if (!home.book->isSaved && home.desk->showsAlerts) {
    const int answer =
        home.services->MsgBox(u"Save the changes in '" + home.book->name + u"'?", yesNoQuestion, title);
    if (answer == yes) SaveBook(home);
  }
  home.desk->Remove(*home.book);
}

}  // namespace quarlin::vbs::sheets
