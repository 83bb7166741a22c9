// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/framing.h"

#include "base/numbers.h"
#include "macro/expander.h"

namespace quarlin {
namespace {

constexpr std::string_view noCode = "000";  // of a code box: no character at all

std::string CharacterOf(const ComboBox& box) {
  return box.Text() == noCode ? std::string() : CharacterOfCode(Val(box.Text()));
}

}  // namespace

Framing::Framing(FramingControls& controls) : controls_(controls) {
  controls_.Option3.OnClick([this] { ComputeTxTerminator(); });
  controls_.Combo2.Change = [this] { ComputeTxTerminator(); };
}

void Framing::ComputeTxTerminator() {
  const auto selected = static_cast<TxEnd>(controls_.Option3.Selected().value_or(1));
  if (selected == TxEnd::Manual) {
    txTerminator_ = CharacterOf(controls_.Combo2);
  } else {
    txTerminator_ = selected == TxEnd::Cr ? "\r" : "\r\n";
  }
}

std::string Framing::Framed(std::string_view text) const {
  std::string framed = InitialString();
  framed += text;
  return framed += txTerminator_;
}

std::string Framing::InitialString() const {
  if (!controls_.chkInit.Checked()) return {};
  if (controls_.Combo4.Text() == noCode) return ExpandHexCodes(controls_.txtinitstr.Text());
  return CharacterOf(controls_.Combo4);
}

}  // namespace quarlin
