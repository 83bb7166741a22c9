// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/values/error.h"

#include <algorithm>
#include <array>

namespace quarlin::vbs {
namespace {

struct Row {
  std::int32_t number;
  std::u16string_view text;
};

// In ascending order.
constexpr std::array rows = std::to_array<Row>({
    {3, u"Return without GoSub"},
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {10, u"This array is fixed or temporarily locked"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {14, u"Out of string space"},
    {17, u"Can't perform requested operation"},
    {28, u"Out of stack space"},
    {35, u"Sub or Function not defined"},
    {48, u"Error in loading DLL"},
    {51, u"Internal error"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {71, u"Disk not ready"},
    {74, u"Can't rename with different drive"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable not set"},
    {92, u"For loop not initialized"},
    {93, u"Invalid pattern string"},
    {94, u"Invalid use of Null"},
    {322, u"Can't create necessary temporary file"},
    {424, u"Object required"},
    {429, u"ActiveX component can't create object"},
    {430, u"Class doesn't support Automation"},
    {432, u"File name or class name not found during Automation operation"},
    {438, u"Object doesn't support this property or method"},
    {440, u"Automation error"},
    {445, u"Object doesn't support this action"},
    {446, u"Object doesn't support named arguments"},
    {447, u"Object doesn't support current locale setting"},
    {448, u"Named argument not found"},
    {449, u"Argument not optional"},
    {450, u"Wrong number of arguments or invalid property assignment"},
    {451, u"Object not a collection"},
    {453, u"Specified DLL function not found"},
    {455, u"Code resource lock error"},
    {457, u"This key is already associated with an element of this collection"},
    {458, u"Variable uses an Automation type not supported in VBScript"},
    {462, u"The remote server machine does not exist or is unavailable"},
    {481, u"Invalid picture"},
    {500, u"Variable is undefined"},
    {501, u"Illegal assignment"},
    {502, u"Object not safe for scripting"},
    {503, u"Object not safe for initializing"},
    {504, u"Object not safe for creating"},
    {505, u"Invalid or unqualified reference"},
    {506, u"Class not defined"},
    {507, u"An exception occurred"},
    {1001, u"Out of memory"},
    {1002, u"Syntax error"},
    {1003, u"Expected ':'"},
    {1005, u"Expected '('"},
    {1006, u"Expected ')'"},
    {1007, u"Expected ']'"},
    {1010, u"Expected identifier"},
    {1011, u"Expected '='"},
    {1012, u"Expected 'If'"},
    {1013, u"Expected 'To'"},
    {1014, u"Expected 'End'"},
    {1015, u"Expected 'Function'"},
    {1016, u"Expected 'Sub'"},
    {1017, u"Expected 'Then'"},
    {1018, u"Expected 'Wend'"},
    {1019, u"Expected 'Loop'"},
    {1020, u"Expected 'Next'"},
    {1021, u"Expected 'Case'"},
    {1022, u"Expected 'Select'"},
    {1023, u"Expected expression"},
    {1024, u"Expected statement"},
    {1025, u"Expected end of statement"},
    {1026, u"Expected integer constant"},
    {1027, u"Expected 'While' or 'Until'"},
    {1028, u"Expected 'While', 'Until' or end of statement"},
    {1029, u"Expected 'With'"},
    {1030, u"Identifier too long"},
    {1031, u"Invalid number"},
    {1032, u"Invalid character"},
    {1033, u"Unterminated string constant"},
    {1034, u"Unterminated comment"},
    {1037, u"Invalid use of 'Me' keyword"},
    {1038, u"'loop' without 'do'"},
    {1039, u"Invalid 'exit' statement"},
    {1040, u"Invalid 'for' loop control variable"},
    {1041, u"Name redefined"},
    {1042, u"Must be first statement on the line"},
    {1043, u"Cannot assign to non-ByVal argument"},
    {1044, u"Cannot use parentheses when calling a Sub"},
    {1045, u"Expected literal constant"},
    {1046, u"Expected 'In'"},
    {1047, u"Expected 'Class'"},
    {1048, u"Must be defined inside a Class"},
    {1049, u"Expected Let or Set or Get in property declaration"},
    {1050, u"Expected 'Property'"},
    {1051, u"Number of arguments must be consistent across properties specification"},
    {1052, u"Cannot have multiple default property/method in a Class"},
    {1053, u"Class initialize or terminate do not have arguments"},
    {1054, u"Property set or let must have at least one argument"},
    {1055, u"Unexpected 'Next'"},
    {1056, u"'Default' can be specified only on 'Property' or 'Function' or 'Sub'"},
    {1057, u"'Default' specification must also specify 'Public'"},
    {1058, u"'Default' specification can only be on Property Get"},
    {5016, u"Regular Expression object expected"},
    {5017, u"Syntax error in regular expression"},
    {5018, u"Unexpected quantifier"},
    {5019, u"Expected ']' in regular expression"},
    {5020, u"Expected ')' in regular expression"},
    {5021, u"Invalid range in character set"},
    {32811, u"Element not found"},
});

static_assert(std::is_sorted(rows.begin(), rows.end(),
                             [](const Row& left, const Row& right) { return left.number < right.number; }));

constexpr std::int32_t firstCompileError = 1001;
constexpr std::int32_t lastCompileError = 1058;

std::u16string LineOf(std::u16string_view source, int line) {
  std::size_t begin = 0;
  for (int number = 1; number < line; ++number) {
    const std::size_t end = source.find_first_of(u"\r\n", begin);
    if (end == std::u16string_view::npos) return {};
    begin = end + (source.substr(end, 2) == u"\r\n" ? 2 : 1);
  }
  const std::u16string_view rest = source.substr(std::min(begin, source.size()));
  return std::u16string(rest.substr(0, rest.find_first_of(u"\r\n")));
}

}  // namespace

ScriptError::ScriptError(std::int32_t errorNumber, std::u16string_view errorCulprit)
    : number(errorNumber),
      description(ErrorText(errorNumber)),
      culprit(errorCulprit),
      source(errorNumber >= firstCompileError && errorNumber <= lastCompileError
                 ? u"VBScript compilation error"
                 : u"VBScript runtime error") {}

std::u16string ScriptError::FullDescription() const {
  return culprit.empty() ? description : description + u": '" + culprit + u"'";
}

std::u16string ScriptError::LineText() const {
  return line.empty() && script != nullptr && position.line != 0 ? LineOf(*script, position.line) : line;
}

void ThrowStopped(std::u16string_view description) {
  ScriptError stopped(scriptStopped);
  stopped.description = description;
  stopped.isFinal = true;
  throw stopped;
}

std::u16string_view ErrorText(std::int32_t number) {
  const auto row = std::lower_bound(rows.begin(), rows.end(), number,
                                    [](const Row& left, std::int32_t right) { return left.number < right; });
  return row != rows.end() && row->number == number ? row->text : u"Unknown runtime error";
}

}  // namespace quarlin::vbs
