// SPDX-License-Identifier: GPL-3.0-or-later
// Turns the body of an answer into what goes over the line: checksum and terminator are added, and now and
// then something goes wrong on purpose.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "instrument/random.h"
#include "instrument/settings.h"

namespace quarlin::instrument {

struct Answer {
  std::vector<std::string> pieces;  // one; several when split; none when dropped
  std::optional<Fault> fault;
};

class AnswerMaker {
 public:
  explicit AnswerMaker(const Settings& settings) : settings_(settings), random_(settings.seed, Use::Faults) {}

  // The answer of this body, which is not empty, with at most one fault.
  Answer Make(std::string body);

  std::string Faultless(std::string body) const;  // the whole text of an answer without a fault
  Answer Refusal() const;  // to a request that is not known; never with a checksum or a fault

 private:
  std::optional<Fault> DrawFault();
  std::vector<std::string> Split(const std::string& answer);
  std::string Checksum(const std::string& body) const;

  Settings settings_;
  Random random_;
};

}  // namespace quarlin::instrument
