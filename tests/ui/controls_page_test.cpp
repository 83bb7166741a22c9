// SPDX-License-Identifier: GPL-3.0-or-later
// The reference of the controls in docs/controls.md against the controls that there are: a row for each name
// below the heading that names its window, with its kind and the value that it has at first.
#include <fmt/format.h>

#include <map>
#include <regex>
#include <set>

#include "controls/setting.h"
#include "support/frm_main_rig.h"

namespace quarlin {
namespace {

std::string_view KindName(ControlKind kind) {
  static const std::map<ControlKind, std::string_view> names = {
      {ControlKind::TextBox, "text box"},     {ControlKind::ComboBox, "combo box"},
      {ControlKind::CheckBox, "check box"},   {ControlKind::OptionButton, "option button"},
      {ControlKind::CommandButton, "button"}, {ControlKind::Label, "label"},
      {ControlKind::Frame, "frame"},          {ControlKind::Shape, "lamp"},
      {ControlKind::ScrollBar, "scroll bar"}, {ControlKind::ListBox, "list box"},
      {ControlKind::RichTextBox, "traffic"},  {ControlKind::Timer, "timer"}};
  return names.at(kind);
}

// The beginnings of the rows: `Check1` for one control, `Option4(0..3)` for an array.
std::set<std::string> RowsOf(Form& form) {
  struct Row {
    std::string_view kind;
    int last = -1;
    std::vector<std::string> atFirst{};
  };
  std::map<std::string, Row> rows;
  for (const Control* control : form.Collection().All()) {
    Row& row = rows.try_emplace(control->Name(), Row{KindName(control->Kind())}).first->second;
    row.last = control->Index().value_or(-1);
    const auto value = SettingText(*control);
    if (value) row.atFirst.push_back(value->empty() ? "empty" : *value);
  }
  std::set<std::string> beginnings;
  for (auto& [name, row] : rows) {
    const bool equal = std::set(row.atFirst.begin(), row.atFirst.end()).size() == 1;
    if (equal) row.atFirst.resize(1);
    beginnings.insert(fmt::format("| `{}{}` | {} | {} |", name,
                                  row.last < 0 ? "" : fmt::format("(0..{})", row.last), row.kind,
                                  fmt::join(row.atFirst, ", ")));
  }
  return beginnings;
}

std::map<std::string, std::multiset<std::string>> RowsOfThePage() {
  std::map<std::string, std::multiset<std::string>> rows;
  std::istringstream page(ReadWholeFile(QUARLIN_CONTROLS_PAGE).value_or(""));
  std::string form;
  std::smatch found;
  for (std::string line; std::getline(page, line);) {
    static const std::regex heading("## .*`(\\w+)`.*"), row("(\\| `[^|]*\\|[^|]*\\|[^|]*\\|).*");
    if (std::regex_match(line, found, heading)) form = found[1];
    if (std::regex_match(line, found, row)) rows[form].insert(found[1]);
  }
  return rows;
}

using ControlsPage = FrmMainRig;

TEST_F(ControlsPage, HasEveryControlOnceAndNoOther) {
  auto rows = RowsOfThePage();
  for (Form* form : frm.Forms()) {
    for (const std::string& row : RowsOf(*form)) {
      EXPECT_EQ(rows[form->Name()].count(row), 1) << form->Name() << " " << row;
      rows[form->Name()].erase(row);
    }
    for (const std::string& row : rows[form->Name()]) ADD_FAILURE() << "no such control: " << row;
  }
}

}  // namespace
}  // namespace quarlin
