// SPDX-License-Identifier: GPL-3.0-or-later
// The texts of the model, bytes 0 to 255, as the widgets show them.
#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "controls/control.h"

namespace quarlin {

// The object name of a control's widget: "Command1", within a control array "Option4_2".
QString WidgetName(const Control& control);

// A text that cannot be edited: byte n is character n.
QString ShownText(std::string_view text);

// A text of a file, or of a link: UTF-8 where all of it is, else a byte a character.
QString TextOfFile(std::string_view text);

// A text that can be edited on one line: control characters appear as pictures, CR as "←", LF as "↓" and
// NUL as "␀", so that they survive the editing.
QString EditText(std::string_view text);

// The way back. A character that is no byte becomes "?".
std::string BytesOf(const QString& editText);

// The letter that follows a single "&", or nothing.
QChar MnemonicOf(const QString& text);

QString WithoutMnemonic(const QString& text);

// A caption as a button shows it: one with a mnemonic of its own as it stands, another with the letter
// `mnemonic` underlined where it has it. So Alt+C stays Alt+C when "Connect" becomes "Disconnect".
QString WithMnemonic(std::string_view caption, QChar mnemonic);

}  // namespace quarlin
