// SPDX-License-Identifier: GPL-3.0-or-later
// The "{nn}" pass of the macro language.
#include <algorithm>

#include "base/numbers.h"
#include "macro/expander.h"

namespace quarlin {
namespace {

// A brace that is being read.
class Brace {
 public:
  // Takes the next character. True when it ended the brace; Text() is then what stands for it.
  bool Ends(char character) {
    raw_ += character;
    if (character == '}') {
      text_ = code_ <= 255 ? std::string(1, static_cast<char>(code_)) : std::string();
      return true;
    }
    const int digit = HexDigitValue(character);
    if (digit < 0) {
      text_ = raw_ == "{{" ? "{" : raw_;
      return true;
    }
    code_ = std::min(code_ * 16 + digit, 256);  // 256 stands for any code that is too large
    return false;
  }

  const std::string& Text() const { return text_; }

  // The brace as it was written so far.
  const std::string& Raw() const { return raw_; }

 private:
  std::string raw_ = "{";
  std::string text_;
  int code_ = 0;
};

}  // namespace

std::string ExpandHexCodes(std::string_view text) {
  std::string expanded;
  expanded.reserve(text.size());
  while (true) {
    const std::size_t open = text.find('{');
    expanded.append(text.substr(0, open));
    if (open == std::string_view::npos) return expanded;
    text.remove_prefix(open + 1);

    Brace brace;
    const auto end = std::find_if(text.begin(), text.end(), [&](char c) { return brace.Ends(c); });
    if (end == text.end()) return expanded + brace.Raw();
    expanded += brace.Text();
    text.remove_prefix(static_cast<std::size_t>(end - text.begin()) + 1);
  }
}

}  // namespace quarlin
