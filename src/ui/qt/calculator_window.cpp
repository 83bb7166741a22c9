// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/calculator_window.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "macro/checksum_macros.h"
#include "ui/qt/byte_edit.h"
#include "ui/qt/trouble_labels.h"
#include "ui/qt/widget_text.h"
#include "ui_calculator_window.h"

namespace quarlin {
namespace {

constexpr int buttonsInARow = 7;

std::u16string_view Utf16(const QString& text) {
  return {reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())};
}

}  // namespace

CalculatorWindow::CalculatorWindow(FrmCalculator& form)
    : FormWindow(form), form_(form), ui_(std::make_unique<Ui::CalculatorWindow>()) {
  ui_->setupUi(this);
  ui_->textEdit->SetForText();
  MakeSumButtons();
  WireViews();
  ShowAsTrouble(*this,
                {ui_->lblTextTrouble, ui_->lblHexTrouble, ui_->lblDecimalTrouble, ui_->lblBinaryTrouble});
  Bind();
}

CalculatorWindow::~CalculatorWindow() {
  form_.OnWritten = nullptr;
  form_.OnMarked = nullptr;
}

// The protocols' sums in the first row, those that are known everywhere below.
void CalculatorWindow::MakeSumButtons() {
  QWidget* before = ui_->cmdInsertText;
  for (const Checksum& checksum : AllChecksums()) {
    const int index = static_cast<int>(checksum.style);
    auto* button = new QPushButton(ShownText(checksum.caption));
    button->setObjectName(QStringLiteral("cmdSum_%1").arg(index));
    button->setToolTip(tr("The sum of the selected characters, or of all; the macro is %1")
                           .arg(ShownText(ChecksumMacro(checksum, ChecksumForm::Hex))));
    ui_->sumButtonLayout->addWidget(button, index / buttonsInARow, index % buttonsInARow);
    setTabOrder(before, button);
    before = button;
  }
  setTabOrder(before, ui_->cboSumForm);
}

void CalculatorWindow::WireViews() {
  for (const ByteView view : byteViews) {
    ByteEdit& edit = Edit(view);
    edit.Write(ShownText(form_.Text(view)));
    connect(&edit, &ByteEdit::typed, this, [this, view, &edit] {
      const QString text = edit.toPlainText();
      form_.Type(view, Utf16(text));
      form_.Mark(view, edit.Selected());
    });
    connect(&edit, &ByteEdit::selected, this, [this, view, &edit] { form_.Mark(view, edit.Selected()); });
    connect(&edit, &ByteEdit::refused, this,
            [this](const QString& why) { form_.controls.lblTextTrouble.SetCaption(BytesOf(why)); });
  }
  form_.OnWritten = [this](ByteView view) { Edit(view).Write(ShownText(form_.Text(view))); };
  form_.OnMarked = [this] { ShowMarks(); };
}

void CalculatorWindow::ShowMarks() {
  for (const ByteView view : byteViews) {
    const auto marked = form_.Marked(view);
    Edit(view).Show(marked.value_or(Edit(view).Selected()), marked ? Stretch() : form_.TroubleAt(view));
  }
}

void CalculatorWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && ui_) ShowMarks();
  FormWindow::changeEvent(event);
}

void CalculatorWindow::reject() {
  form_.Close();
}

ByteEdit& CalculatorWindow::Edit(ByteView view) {
  const std::array edits{ui_->textEdit, ui_->hexEdit, ui_->decimalEdit, ui_->binaryEdit};
  return *edits.at(static_cast<std::size_t>(view));
}

}  // namespace quarlin
