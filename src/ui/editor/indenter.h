// SPDX-License-Identifier: GPL-3.0-or-later
// Indents the lines of a VBScript while they are typed: a new line as its block wants it, and the end of a
// block where the block begins.
#pragma once

#include <QObject>

namespace quarlin {

class ScriptView;

class Indenter : public QObject {
  Q_OBJECT

 public:
  // The view outlives it.
  explicit Indenter(ScriptView& view);

  void SetEnabled(bool enabled) { enabled_ = enabled; }

 private:
  void Typed(int character);
  void LineBegun(int line);
  void WordTyped(int line);
  int WantedOf(int line) const;
  int WantedBelow(int line) const;

  ScriptView& view_;
  bool enabled_ = true;
  int moved_ = -1;  // the line that was taken back because it looked like the end of a block
};

}  // namespace quarlin
