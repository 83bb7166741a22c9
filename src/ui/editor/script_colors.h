// SPDX-License-Identifier: GPL-3.0-or-later
// What a script is written in on the screen: one set of colours for light desktops, one for dark ones.
#pragma once

#include <QColor>
#include <QPalette>

namespace quarlin {

struct ScriptColors {
  explicit ScriptColors(const QPalette& palette);

  QColor paper;
  QColor text;
  QColor margin;  // behind the line numbers
  QColor faint;   // line numbers, indentation guides
  QColor caretLine;
  QColor selection;
  QColor selectedText;
  QColor brace;    // behind a pair
  QColor error;    // the squiggle, and a bracket without its partner
  QColor running;  // behind the line where the script stands
  QColor found;    // behind what a search finds

  QColor keyword;
  QColor string;
  QColor comment;
  QColor number;
  QColor function;  // of the library
  QColor object;    // of the program
};

}  // namespace quarlin
