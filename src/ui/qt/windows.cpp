// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/windows.h"

#include <string_view>

#include "script/frm_command.h"
#include "ui/qt/calculator_window.h"
#include "ui/qt/command_window.h"
#include "ui/qt/editor_window.h"
#include "ui/qt/plot_window.h"
#include "ui_script_list.h"

namespace quarlin {
namespace {

// A window that is a .ui file and nothing more.
template <typename Ui>
std::unique_ptr<FormWindow> MakeOfUi(Form& form) {
  auto window = std::make_unique<FormWindow>(form);
  Ui().setupUi(window.get());
  window->Bind();
  return window;
}

// `Kind` is the form's class where the window wants more than a form.
template <typename Window, typename Kind = Form>
std::unique_ptr<FormWindow> Make(Form& form) {
  return std::make_unique<Window>(static_cast<Kind&>(form));
}

}  // namespace

struct Windows::WindowRow {
  std::string_view form;  // its name
  std::unique_ptr<FormWindow> (*make)(Form& form);
  const char* help;        // the page about it
  bool showsMain = false;  // controls of the main window stand in it, too
};

// One row a window.
const Windows::WindowRow Windows::rows[] = {
    {"FrmCommand", &Make<CommandWindow>, "docs/scripts.md"},
    {"FrmCalculator", &Make<CalculatorWindow, FrmCalculator>, "docs/calculator.md", true},
    {"FrmEditor", &Make<EditorWindow, FrmEditor>, "docs/editor.md"},
    {"FrmScript", &MakeOfUi<Ui::ScriptList>, "docs/scripts.md"},
    {"FrmPlot", &Make<PlotWindow>, "docs/data.md", true},
};

Windows::Windows(const std::vector<Form*>& forms, QWidget& mainWindow) : mainWindow_(mainWindow) {
  for (Form* form : forms) Follow(*form);
}

Windows::~Windows() {
  for (const auto& shown : shown_) {
    shown->form->OnChanged = nullptr;
    shown->form->OnModal = nullptr;
    if (shown->window) shown->window->setParent(nullptr);  // else its owner would delete it as well
  }
}

void Windows::Follow(Form& form) {
  for (const WindowRow& row : rows) {
    if (row.form != form.Name()) continue;
    Shown& shown = *shown_.emplace_back(std::make_unique<Shown>(Shown{&form, &row, nullptr}));
    form.OnChanged = [this, &shown] { ShowState(shown); };
    form.OnModal = [this, &shown] { WindowOf(shown).ShowModal(mainWindow_); };
    ShowState(shown);
  }
}

void Windows::ShowState(Shown& shown) {
  if (shown.window || shown.form->Visible()) WindowOf(shown).ShowState(mainWindow_);
}

FormWindow& Windows::WindowOf(Shown& shown) {
  if (!shown.window) {
    shown.window = shown.row->make(*shown.form);
    shown.window->setProperty("helpPage", shown.row->help);
    OnMade(*shown.window, shown.row->showsMain);
  }
  return *shown.window;
}

}  // namespace quarlin
