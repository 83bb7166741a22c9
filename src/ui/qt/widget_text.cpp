// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/qt/widget_text.h"

#include "base/text.h"

namespace quarlin {
namespace {

// The commonest two get arrows, which every font has; the rest have their pictures from U+2400 on.
constexpr char16_t carriageReturnArrow = u'\u2190';
constexpr char16_t lineFeedArrow = u'\u2193';
constexpr char16_t pictures = 0x2400;  // of the codes 0 to 31
constexpr char16_t deletePicture = 0x2421;
constexpr char16_t deleteCode = 127;

char16_t PictureOf(char16_t code) {
  if (code == '\r') return carriageReturnArrow;
  if (code == '\n') return lineFeedArrow;
  if (code < 32) return static_cast<char16_t>(pictures + code);
  return code == deleteCode ? deletePicture : code;
}

char16_t WithoutPicture(char16_t code) {
  if (code == carriageReturnArrow) return '\r';
  if (code == lineFeedArrow) return '\n';
  if (code >= pictures && code < pictures + 32) return static_cast<char16_t>(code - pictures);
  return code == deletePicture ? deleteCode : code;
}

}  // namespace

QString WidgetName(const Control& control) {
  const QString name = QString::fromStdString(control.Name());
  return control.Index() ? QStringLiteral("%1_%2").arg(name).arg(*control.Index()) : name;
}

QString ShownText(std::string_view text) {
  return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

QString TextOfFile(std::string_view text) {
  return IsUtf8(text) ? QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())) : ShownText(text);
}

QString EditText(std::string_view text) {
  QString shown = ShownText(text);
  for (QChar& character : shown) character = QChar(PictureOf(character.unicode()));
  return shown;
}

std::string BytesOf(const QString& editText) {
  std::string bytes;
  for (qsizetype i = 0; i < editText.size(); ++i) {
    const char16_t code = WithoutPicture(editText[i].unicode());
    bytes += code <= 0xFF ? static_cast<char>(code) : '?';
    if (QChar::isHighSurrogate(code)) ++i;  // the second half of the same character
  }
  return bytes;
}

QChar MnemonicOf(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&') continue;
    if (text[i + 1] != '&') return text[i + 1];
    ++i;
  }
  return {};
}

QString WithoutMnemonic(const QString& text) {
  const QChar mnemonic = MnemonicOf(text);
  return mnemonic.isNull() ? text : QString(text).remove(text.indexOf('&' + QString(mnemonic)), 1);
}

QString WithMnemonic(std::string_view caption, QChar mnemonic) {
  QString text = ShownText(caption);
  if (text.contains('&') || mnemonic.isNull()) return text;
  const qsizetype at = text.indexOf(mnemonic, 0, Qt::CaseInsensitive);
  return at < 0 ? text : QString(text).insert(at, '&');
}

}  // namespace quarlin
