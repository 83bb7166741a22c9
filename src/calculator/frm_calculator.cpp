// SPDX-License-Identifier: GPL-3.0-or-later
#include "calculator/frm_calculator.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "base/numbers.h"
#include "macro/checksum_macros.h"

namespace quarlin {
namespace {

// In the order of ChecksumForm.
const std::vector<std::string> formNames{"Digits, high byte first", "Digits, low byte first",
                                         "Bytes, high byte first", "Bytes, low byte first"};

std::string Characters(std::size_t count) {
  return fmt::format("{} character{}", count, count == 1 ? "" : "s");
}

std::string TooLong() {
  return fmt::format("the calculator takes {} characters at most", FrmCalculator::mostBytes);
}

}  // namespace

CalculatorControls::CalculatorControls(EventLoop& loop)
    : ControlGroup(loop), cmdSum([this](int index) {
        const Checksum& checksum = AllChecksums()[static_cast<std::size_t>(index)];
        return std::make_unique<CommandButton>(*this, "cmdSum", checksum.caption, index);
      }) {
  cboSumForm.SetList(formNames);
  cboSumForm.SetListIndex(0);
}

FrmCalculator::FrmCalculator(EventLoop& loop, NumberControls& numbers)
    : Form("FrmCalculator", "Calculator"), controls(loop), numbers_(numbers) {
  Collection().Add(controls);
  for (const Checksum& checksum : AllChecksums()) {
    controls.cmdSum[static_cast<std::size_t>(checksum.style)].OnClick = [this, style = checksum.style] {
      chosen_ = style;
      ShowSum();
    };
  }
  numbers_.Combo1.Change = [this] { WriteNumbersAnew(); };
  controls.cboSumForm.Change = [this] { ShowSum(); };
  controls.cmdTakeTraffic.OnClick = [this] { TakeTraffic(); };
  controls.cmdInsertText.OnClick = [this] { Hooks.insert(MacroText(Summed())); };
  controls.cmdInsertSum.OnClick = [this] { Hooks.insert(controls.txtSumText.Text()); };
  controls.cmdInsertMacro.OnClick = [this] { Hooks.insert(controls.txtSumMacro.Text()); };
  ShowLength();
  ShowSum();
}

void FrmCalculator::Type(ByteView view, std::u16string_view text) {
  ReadBytes read = ReadView(text, view);
  if (read.trouble.empty() && read.bytes.size() > mostBytes) {
    read.trouble = fmt::format("{} are too many: {}", Characters(read.bytes.size()), TooLong());
  }
  if (!read.trouble.empty()) return Trouble(view, read.trouble, read.troubleAt);
  At(view) = {{}, std::move(read.places)};
  TroubleLabel(view).SetCaption("");
  Take(std::move(read.bytes));
  for (const ByteView other : byteViews) {
    if (other != view) Write(other);
  }
  OnMarked();
}

std::optional<Stretch> FrmCalculator::Marked(ByteView view) const {
  if (!At(view).readable) return std::nullopt;
  return CharactersOf(At(view).places, marked_);
}

void FrmCalculator::Mark(ByteView view, Stretch characters) {
  if (!At(view).readable) return;
  const Stretch marked = BytesAt(At(view).places, characters);
  if (marked == marked_) return;
  const bool sumsAnew = !marked.Empty() || !marked_.Empty();
  marked_ = marked;
  OnMarked();
  if (!sumsAnew) return;
  ShowLength();
  ShowSum();
}

Label& FrmCalculator::TroubleLabel(ByteView view) {
  const std::array labels{&controls.lblTextTrouble, &controls.lblHexTrouble, &controls.lblDecimalTrouble,
                          &controls.lblBinaryTrouble};
  return *labels.at(static_cast<std::size_t>(view));
}

void FrmCalculator::Trouble(ByteView view, std::string_view sentence, Stretch at) {
  TroubleLabel(view).SetCaption(sentence);
  At(view).readable = false;
  At(view).troubleAt = at;
  OnMarked();
}

// The bytes alone: the views are written by the caller.
void FrmCalculator::Take(std::string bytes) {
  bytes_ = std::move(bytes);
  marked_ = {};
  ShowLength();
  ShowSum();
}

void FrmCalculator::Write(ByteView view) {
  WrittenBytes written = WriteBytes(bytes_, view, Format());
  At(view) = {std::move(written.text), std::move(written.places)};
  TroubleLabel(view).SetCaption("");
  OnWritten(view);
}

// What is being typed and cannot be read yet stays.
void FrmCalculator::WriteNumbersAnew() {
  if (NumberFormatNamed(numbers_.Combo1.Text()) == nullptr) {
    Hooks.note(fmt::format("Combo1 \"{}\" is no way to write numbers; the calculator writes them as {}",
                           numbers_.Combo1.Text(), Format().name));
  }
  for (const ByteView view : {ByteView::Hexadecimal, ByteView::Decimal, ByteView::Binary}) {
    if (At(view).readable) Write(view);
  }
  OnMarked();
}

const NumberFormat& FrmCalculator::Format() {
  const NumberFormat* const chosen = NumberFormatNamed(numbers_.Combo1.Text());
  return chosen == nullptr ? NumberFormats().front() : *chosen;
}

// The selected bytes, or all of them.
std::string_view FrmCalculator::Summed() const {
  if (marked_.Empty()) return bytes_;
  return std::string_view(bytes_).substr(marked_.begin, marked_.Size());
}

void FrmCalculator::ShowLength() {
  std::string length = Characters(bytes_.size());
  if (marked_.Size() == 1) length += fmt::format(", 1 selected: number {}", marked_.end);
  if (marked_.Size() > 1) {
    length += fmt::format(", {} selected: {} to {}", marked_.Size(), marked_.begin + 1, marked_.end);
  }
  controls.lblLength.SetCaption(length);
  controls.cmdInsertText.SetEnabled(!bytes_.empty());
}

void FrmCalculator::ShowSum() {
  const Checksum& checksum = ChecksumOf(chosen_);
  const auto chosenForm = static_cast<ChecksumForm>(std::max(controls.cboSumForm.ListIndex(), 0));
  const ChecksumForm form = IsCommon(chosen_) ? chosenForm : checksum.form;
  const std::uint32_t value = checksum.compute(Summed());
  controls.cboSumForm.SetEnabled(IsCommon(chosen_));
  controls.lblSum.SetCaption(fmt::format(
      "{} of {}{}", checksum.caption, marked_.Empty() ? "" : "the selected ", Characters(Summed().size())));
  controls.txtSumDecimal.SetText(fmt::format("{}", value));
  controls.txtSumHex.SetText(ChecksumText(value, checksum.bytes, ChecksumForm::Hex));
  controls.txtSumText.SetText(MacroText(ChecksumText(value, checksum.bytes, form)));
  controls.txtSumMacro.SetText(ChecksumMacro(checksum, form));
}

void FrmCalculator::TakeTraffic() {
  std::string bytes = Hooks.takeTraffic();
  if (bytes.empty()) {
    controls.lblTextTrouble.SetCaption("no characters of the link are selected in the traffic");
  } else if (bytes.size() > mostBytes) {
    controls.lblTextTrouble.SetCaption(
        fmt::format("{} are selected: {}", Characters(bytes.size()), TooLong()));
  } else {
    Take(std::move(bytes));
    for (const ByteView view : byteViews) Write(view);
    OnMarked();
  }
}

}  // namespace quarlin
