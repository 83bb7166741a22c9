// SPDX-License-Identifier: GPL-3.0-or-later
#include "exchange/verdict.h"

namespace quarlin {

std::string_view VerdictName(Verdict verdict) {
  switch (verdict) {
    case Verdict::Answered:
      return "answered";
    case Verdict::TimeOut:
      return "time-out";
    case Verdict::NotEqual:
      return "not equal";
    case Verdict::WrongLength:
      return "wrong length";
    case Verdict::WrongChecksum:
      return "wrong checksum";
    case Verdict::Err:
      return "ERR";
    case Verdict::NotSent:
      return "not sent";
    case Verdict::Unsolicited:
      break;
  }
  return "unsolicited";
}

bool IsFailure(Verdict verdict) {
  return verdict != Verdict::Answered && verdict != Verdict::Unsolicited;
}

bool ComparesBytes(Verdict verdict) {
  return verdict == Verdict::NotEqual || verdict == Verdict::WrongChecksum;
}

}  // namespace quarlin
