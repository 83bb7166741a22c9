// SPDX-License-Identifier: GPL-3.0-or-later
#include "instrument/answer_maker.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "faults/answer_changes.h"

namespace quarlin::instrument {

namespace {

constexpr std::size_t mostPieces = 4;
Answer InOnePiece(std::string text, std::optional<Fault> fault) {
  Answer answer;
  answer.pieces.push_back(std::move(text));
  answer.fault = fault;
  return answer;
}

}  // namespace

Answer AnswerMaker::Make(std::string body) {
  const auto fault = DrawFault();
  if (!fault) return InOnePiece(Faultless(std::move(body)), fault);
  std::string checksum = Checksum(body);
  switch (*fault) {
    case Fault::Drop:
      return {{}, fault};
    case Fault::Garble:  // the checksum stays that of the true body, so that it gives the fault away
      Garble(body, "", random_);
      return InOnePiece(body + checksum + settings_.end, fault);
    case Fault::Short:
      Truncate(body, 1, random_);
      return InOnePiece(Faultless(std::move(body)), fault);
    case Fault::BadChecksum:
      SpoilChecksum(checksum, checksum.size(), random_);
      return InOnePiece(body + checksum + settings_.end, fault);
    case Fault::Split:
      return {Split(Faultless(std::move(body))), fault};
    case Fault::Err:
      return InOnePiece("ERR" + settings_.end, fault);
  }
  return {};
}

Answer AnswerMaker::Refusal() const {
  return InOnePiece("ERR" + settings_.end, std::nullopt);
}

std::string AnswerMaker::Faultless(std::string body) const {
  if (settings_.checksum) body += Checksum(body);
  body += settings_.end;
  return body;
}

std::optional<Fault> AnswerMaker::DrawFault() {
  double draw = random_.Fraction();
  for (std::size_t kind = 0; kind < faultKinds; ++kind) {
    if (draw < settings_.faultRates[kind]) return Fault{kind};
    draw -= settings_.faultRates[kind];
  }
  return std::nullopt;
}

// Two to four pieces of at least one byte each.
std::vector<std::string> AnswerMaker::Split(const std::string& answer) {
  const std::size_t count = std::min(2 + random_.Below(mostPieces - 1), answer.size());
  std::vector<std::string> pieces;
  std::size_t from = 0;
  for (std::size_t left = count; left > 1; --left) {
    const std::size_t spare = answer.size() - from - left;
    const std::size_t size = 1 + random_.Below(spare + 1);
    pieces.push_back(answer.substr(from, size));
    from += size;
  }
  pieces.push_back(answer.substr(from));
  return pieces;
}

std::string AnswerMaker::Checksum(const std::string& body) const {
  return settings_.checksum ? ComputeChecksum(body, *settings_.checksum) : std::string();
}

}  // namespace quarlin::instrument
