// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/edit/language_names.h"

#include "script/values/conversions.h"
#include "script/vbscript/functions/library.h"
#include "script/vbscript/syntax/lexer.h"

namespace quarlin {

std::vector<std::string> KeywordNames() {
  std::vector<std::string> names;
  for (const std::string_view spelling : vbs::KeywordSpellings()) names.emplace_back(spelling);
  return names;
}

std::vector<std::string> FunctionNames() {
  std::vector<std::string> names;
  for (const auto table :
       {vbs::StringFunctions(), vbs::MathFunctions(), vbs::ConversionFunctions(), vbs::DateFunctions(),
        vbs::FormatFunctions(), vbs::ArrayFunctions(), vbs::InteractionFunctions()}) {
    for (const vbs::Builtin& builtin : table) names.push_back(vbs::Utf8Of(builtin.name));
  }
  return names;
}

std::vector<std::string> ConstantNames() {
  std::vector<std::string> names;
  for (const vbs::NamedConstant& constant : vbs::LibraryConstants()) {
    names.push_back(vbs::Utf8Of(constant.name));
  }
  return names;
}

}  // namespace quarlin
