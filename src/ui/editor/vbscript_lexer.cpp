// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/editor/vbscript_lexer.h"

#include <array>

#include "script/edit/language_names.h"

namespace quarlin {
namespace {

// The component compares with words in small letters.
QByteArray Words(const std::vector<std::string>& names) {
  QByteArray words;
  for (const std::string& name : names) words += QByteArray::fromStdString(name).toLower() + ' ';
  return words;
}

}  // namespace

VbscriptLexer::VbscriptLexer(QObject* parent)
    : QsciLexer(parent),
      keywords_(Words(KeywordNames())),
      functions_(Words(FunctionNames()) + Words(ConstantNames())) {}

void VbscriptLexer::SetObjectNames(const std::vector<std::string>& names) {
  objects_ = Words(names);
}

const char* VbscriptLexer::keywords(int set) const {
  switch (set) {
    case 1:
      return keywords_.constData();
    case 2:
      return functions_.constData();
    case 3:
      return objects_.constData();
    default:
      return nullptr;
  }
}

// A style without a description is none to the component.
QString VbscriptLexer::description(int style) const {
  static const std::array names{"default", "comment",         "number",   "keyword",
                                "string",  "directive",       "operator", "identifier",
                                "date",    "unclosed string", "function", "object"};
  return style >= 0 && style < static_cast<int>(names.size()) ? names[static_cast<std::size_t>(style)] : "";
}

const char* VbscriptLexer::wordCharacters() const {
  return "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";
}

}  // namespace quarlin
