// SPDX-License-Identifier: GPL-3.0-or-later
// What can be wrong with a script's text, by the language's own numbers.
#pragma once

#include <cstdint>

namespace quarlin::vbs {

enum SyntaxError : std::int32_t {
  nestedTooDeep = 1001,
  syntaxError = 1002,
  expectedLeftParenthesis = 1005,
  expectedRightParenthesis = 1006,
  expectedRightBracket = 1007,
  expectedIdentifier = 1010,
  expectedEqual = 1011,
  expectedIf = 1012,
  expectedTo = 1013,
  expectedEnd = 1014,
  expectedFunction = 1015,
  expectedSub = 1016,
  expectedThen = 1017,
  expectedWend = 1018,
  expectedLoop = 1019,
  expectedNext = 1020,
  expectedCase = 1021,
  expectedSelect = 1022,
  expectedExpression = 1023,
  expectedStatement = 1024,
  expectedEndOfStatement = 1025,
  expectedInteger = 1026,
  expectedConditionOrEnd = 1028,  // While, Until or the end of the statement
  expectedWith = 1029,
  nameTooLong = 1030,
  invalidNumber = 1031,
  invalidCharacter = 1032,
  unterminatedText = 1033,
  invalidMe = 1037,
  loopWithoutDo = 1038,
  invalidExit = 1039,
  invalidLoopVariable = 1040,
  nameRedefined = 1041,
  parenthesesAroundArguments = 1044,
  expectedLiteral = 1045,
  expectedIn = 1046,
  expectedClass = 1047,
  outsideClass = 1048,
  expectedLetSetOrGet = 1049,
  expectedProperty = 1050,
  argumentsDiffer = 1051,
  secondDefault = 1052,
  lifetimeWithArguments = 1053,
  propertyWithoutValue = 1054,
  unexpectedNext = 1055,
  defaultNotOnProcedure = 1056,
  defaultNotPublic = 1057,
  defaultNotOnGet = 1058,
};

}  // namespace quarlin::vbs
