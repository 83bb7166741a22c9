// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/jscript/call_assignments.h"

#include <algorithm>
#include <array>
#include <optional>

#include "script/jscript/source_lexer.h"

namespace quarlin::jscript {
namespace {

constexpr std::u16string_view entry = u".$entry";
constexpr std::u16string_view value = u".$value ";  // a name may follow

constexpr std::array<std::u16string_view, 13> assignments{u"=",   u"+=",   u"-=", u"*=", u"/=", u"%=", u"<<=",
                                                          u">>=", u">>>=", u"&=", u"|=", u"^=", u"**="};

bool IsStep(const Token& token) {
  return token.Is(u"++") || token.Is(u"--");
}

// What is written to stands in front of it.
bool Writes(const Token& token) {
  if (IsStep(token)) return token.endsOperand;
  return token.kind == Token::Kind::Mark && std::ranges::find(assignments, token.text) != assignments.end();
}

class Finder {
 public:
  explicit Finder(std::u16string_view source) : lexer_(source) {}

  std::vector<Insertion> Find() {
    while (const auto token = lexer_.Next()) {
      if (call_) LookBehindCall(*token);
      call_.reset();
      Look(*token);
      previous_ = *token;
    }
    if (call_ && isStepped_) Take(*call_);
    std::ranges::stable_sort(found_, {}, &Insertion::at);
    return std::move(found_);
  }

 private:
  struct Call {
    std::size_t open;  // its parenthesis
    std::size_t end;   // behind the other one
  };
  struct Bracket {
    std::size_t at;
    bool isCall;
    bool isStepped;
  };

  void LookBehindCall(const Token& token) {
    const bool goesOn = token.Is(u".") || token.Is(u"(") || token.Is(u"[");
    if (Writes(token) || (isStepped_ && !goesOn)) Take(*call_);
  }

  void Take(const Call& call) {
    found_.push_back({call.open, entry});
    found_.push_back({call.end, value});
    isStepped_ = false;
  }

  void Look(const Token& token) {
    if (token.Is(u"(") || token.Is(u"[") || token.Is(u"{")) {
      open_.push_back({token.at, token.Is(u"(") && IsCallee(previous_),
                       isStepped_ && previous_.endsOperand && !token.Is(u"{")});
      isStepped_ = false;
    } else if (token.Is(u")") || token.Is(u"]") || token.Is(u"}")) {
      Close(token);
    } else if (IsStep(token)) {
      isStepped_ = !token.endsOperand;
    } else {
      const bool belongs =
          token.Is(u".") || (token.kind == Token::Kind::Name && (token.isMember || IsStep(previous_)));
      isStepped_ = isStepped_ && belongs;
    }
  }

  static bool IsCallee(const Token& token) {
    return token.endsOperand && (token.kind == Token::Kind::Name || token.Is(u")") || token.Is(u"]"));
  }

  void Close(const Token& token) {
    isStepped_ = false;
    if (open_.empty()) return;
    const Bracket bracket = open_.back();
    open_.pop_back();
    isStepped_ = bracket.isStepped;
    if (bracket.isCall && token.Is(u")")) call_ = {bracket.at, token.End()};
  }

  Lexer lexer_;
  Token previous_;
  std::vector<Bracket> open_;
  std::optional<Call> call_;  // that has just been closed
  bool isStepped_ = false;    // `++` or `--` stands in front of what is being read
  std::vector<Insertion> found_;
};

}  // namespace

std::vector<Insertion> CallAssignments(std::u16string_view source) {
  return Finder(source).Find();
}

std::u16string WithInsertions(std::u16string_view source, const std::vector<Insertion>& insertions) {
  std::u16string result;
  std::size_t taken = 0;
  for (const Insertion& insertion : insertions) {
    result += source.substr(taken, insertion.at - taken);
    result += insertion.text;
    taken = insertion.at;
  }
  result += source.substr(taken);
  return result;
}

int OriginalColumn(int column, std::size_t begin, std::size_t length,
                   const std::vector<Insertion>& insertions) {
  for (const Insertion& insertion : insertions) {
    if (insertion.at < begin || insertion.at > begin + length) continue;
    const int at = static_cast<int>(insertion.at - begin);
    if (column <= at) break;  // all that came before has been taken off
    column = std::max(at, column - static_cast<int>(insertion.text.size()));
  }
  return column;
}

}  // namespace quarlin::jscript
