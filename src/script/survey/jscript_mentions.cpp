// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <array>
#include <utility>

#include "script/jscript/source_lexer.h"
#include "script/survey/mentions.h"

namespace quarlin::survey {
namespace {

using jscript::Token;

// Words and objects of the language itself.
constexpr auto ownNames = std::to_array<std::u16string_view>({u"ActiveXObject",
                                                              u"Array",
                                                              u"ArrayBuffer",
                                                              u"Boolean",
                                                              u"CollectGarbage",
                                                              u"DataView",
                                                              u"Date",
                                                              u"Enumerator",
                                                              u"Error",
                                                              u"EvalError",
                                                              u"Float32Array",
                                                              u"Float64Array",
                                                              u"Function",
                                                              u"GetObject",
                                                              u"Infinity",
                                                              u"Int16Array",
                                                              u"Int32Array",
                                                              u"Int8Array",
                                                              u"JSON",
                                                              u"Map",
                                                              u"Math",
                                                              u"NaN",
                                                              u"Number",
                                                              u"Object",
                                                              u"Promise",
                                                              u"Proxy",
                                                              u"RangeError",
                                                              u"ReferenceError",
                                                              u"Reflect",
                                                              u"RegExp",
                                                              u"ScriptEngine",
                                                              u"ScriptEngineBuildVersion",
                                                              u"ScriptEngineMajorVersion",
                                                              u"ScriptEngineMinorVersion",
                                                              u"Set",
                                                              u"String",
                                                              u"Symbol",
                                                              u"SyntaxError",
                                                              u"TypeError",
                                                              u"URIError",
                                                              u"Uint16Array",
                                                              u"Uint32Array",
                                                              u"Uint8Array",
                                                              u"VBArray",
                                                              u"WeakMap",
                                                              u"WeakSet",
                                                              u"arguments",
                                                              u"async",
                                                              u"await",
                                                              u"break",
                                                              u"case",
                                                              u"catch",
                                                              u"class",
                                                              u"const",
                                                              u"continue",
                                                              u"debugger",
                                                              u"decodeURI",
                                                              u"decodeURIComponent",
                                                              u"default",
                                                              u"delete",
                                                              u"do",
                                                              u"else",
                                                              u"encodeURI",
                                                              u"encodeURIComponent",
                                                              u"escape",
                                                              u"eval",
                                                              u"extends",
                                                              u"false",
                                                              u"finally",
                                                              u"for",
                                                              u"function",
                                                              u"globalThis",
                                                              u"if",
                                                              u"in",
                                                              u"instanceof",
                                                              u"isFinite",
                                                              u"isNaN",
                                                              u"let",
                                                              u"new",
                                                              u"null",
                                                              u"of",
                                                              u"parseFloat",
                                                              u"parseInt",
                                                              u"return",
                                                              u"static",
                                                              u"super",
                                                              u"switch",
                                                              u"this",
                                                              u"throw",
                                                              u"true",
                                                              u"try",
                                                              u"typeof",
                                                              u"undefined",
                                                              u"unescape",
                                                              u"var",
                                                              u"void",
                                                              u"while",
                                                              u"with",
                                                              u"yield"});
constexpr std::array<std::u16string_view, 5> declaringWords{u"var", u"let", u"const", u"function", u"class"};

// Methods that write or read with the signs of the locale.
constexpr std::array<std::u16string_view, 5> localeMethods{
    u"toLocaleString", u"toLocaleDateString", u"toLocaleTimeString", u"getVarDate", u"localeCompare"};

template <std::size_t count>
bool IsOneOf(const std::array<std::u16string_view, count>& names, std::u16string_view name) {
  return std::ranges::find(names, name) != names.end();
}

std::vector<Token> TokensOf(std::u16string_view source) {
  std::vector<Token> tokens;
  jscript::Lexer lexer(source);
  while (const auto token = lexer.Next()) tokens.push_back(*token);
  return tokens;
}

// What a text stands for, with a blank for everything behind a backslash but another one.
std::u16string TextOf(const Token& token) {
  std::u16string text;
  for (std::size_t i = 1; i + 1 < token.text.size(); ++i) {
    if (token.text[i] != u'\\') {
      text += token.text[i];
    } else if (++i + 1 < token.text.size()) {
      text += token.text[i] == u'\\' ? u'\\' : u' ';
    }
  }
  return text;
}

class Reader {
 public:
  Reader(std::u16string_view source, const IsKnown& isHosts)
      : source_(source), tokens_(TokensOf(source)), isHosts_(isHosts) {}

  Mentions Read() {
    for (std::size_t i = 0; i < tokens_.size(); ++i) CollectDeclared(i);
    for (std::size_t i = 0; i < tokens_.size(); ++i) Visit(i);
    return std::move(found_);
  }

 private:
  bool At(std::size_t index, std::u16string_view text) const {
    return index < tokens_.size() && tokens_[index].Is(text);
  }
  bool IsName(std::size_t index) const {
    return index < tokens_.size() && tokens_[index].kind == Token::Kind::Name;
  }

  // Lines from 1, columns from 0. Tokens are asked for in order.
  vbs::Position PositionOf(const Token& token) {
    for (; counted_ < token.at; ++counted_) {
      if (source_[counted_] != u'\n') continue;
      ++line_;
      lineStart_ = counted_ + 1;
    }
    return {line_, static_cast<int>(token.at - lineStart_)};
  }

  // Behind the bracket that closes the one at `index`.
  std::size_t Behind(std::size_t index) const {
    int depth = 0;
    for (; index < tokens_.size(); ++index) {
      const Token& token = tokens_[index];
      if (token.Is(u"(") || token.Is(u"[") || token.Is(u"{")) ++depth;
      if (token.Is(u")") || token.Is(u"]") || token.Is(u"}")) --depth;
      if (depth == 0) return index + 1;
    }
    return index;
  }

  // A name that is declared, assigned as a whole or a parameter anywhere is the script's own.
  void CollectDeclared(std::size_t index) {
    const Token& token = tokens_[index];
    if (token.Is(u"function")) CollectParameters(index);
    if (token.Is(u"=>")) CollectParametersBefore(index);
    if (token.kind != Token::Kind::Name || token.isMember) return;
    const bool isDeclared = index > 0 && tokens_[index - 1].kind == Token::Kind::Name &&
                            IsOneOf(declaringWords, tokens_[index - 1].text);
    const bool isAssigned = At(index + 1, u"=") && !isHosts_(token.text);
    const bool isCaught = index > 1 && At(index - 1, u"(") && At(index - 2, u"catch");
    const bool isKey = At(index + 1, u":");
    const bool isWalked = At(index + 1, u"in") || At(index + 1, u"of");
    const bool isListed = index > 0 && At(index - 1, u",") && (At(index + 1, u",") || At(index + 1, u";"));
    if (isDeclared || isAssigned || isCaught || isKey || isWalked || isListed) declared_.emplace(token.text);
  }

  void CollectParameters(std::size_t index) {
    std::size_t at = index + (IsName(index + 1) ? 2 : 1);
    if (!At(at, u"(")) return;
    const std::size_t end = Behind(at);
    for (; at < end; ++at) {
      if (IsName(at)) declared_.emplace(tokens_[at].text);
    }
  }

  // Of "a => a.x" and "(a, b) => a.x".
  void CollectParametersBefore(std::size_t arrow) {
    std::size_t at = arrow;
    do {
      if (at == 0) return;
      --at;
      if (IsName(at)) declared_.emplace(tokens_[at].text);
    } while (At(arrow - 1, u")") && !At(at, u"("));
  }

  void Visit(std::size_t index) {
    const Token& token = tokens_[index];
    if (token.kind == Token::Kind::Text) {
      found_.texts.push_back({TextOf(token), PositionOf(token)});
    }
    if (token.kind != Token::Kind::Name) return;
    VisitProgram(index);
    const bool isDeclaration = index > 0 && At(index - 1, u"function");
    if (isDeclaration) {
      const bool takesArguments = !At(index + 2, u")");
      found_.procedures.push_back({std::u16string(token.text), PositionOf(token), takesArguments});
      return;
    }
    found_.used.insert(FoldedName(token.text));
    if (token.isMember) {
      if (At(index + 1, u"(") && IsOneOf(localeMethods, token.text)) {
        found_.conversions.push_back({std::u16string(token.text), PositionOf(token)});
      }
      return;
    }
    if (token.Is(u"eval") || token.Is(u"with")) found_.runsTexts = true;
    VisitChain(index);
  }

  // new ActiveXObject("Scripting.Dictionary"), GetObject("", "Excel.Application")
  void VisitProgram(std::size_t index) {
    const Token& token = tokens_[index];
    const bool makes = token.Is(u"ActiveXObject") || token.Is(u"CreateObject");
    if (!makes && !token.Is(u"GetObject")) return;
    if (!At(index + 1, u"(")) return;
    const std::size_t last = makes ? index + 2 : Behind(index + 1) - 2;
    if (last >= tokens_.size() || tokens_[last].kind != Token::Kind::Text || tokens_[last].text.size() < 2)
      return;
    found_.programs.push_back({TextOf(tokens_[last]), PositionOf(token)});
  }

  void VisitChain(std::size_t index) {
    const Token& token = tokens_[index];
    const bool isOwn = IsOneOf(ownNames, token.text) || declared_.contains(std::u16string(token.text));
    const bool isKey = At(index + 1, u":") || (index > 0 && At(index - 1, u"new"));
    if (isOwn || isKey) return;
    Chain chain{{std::u16string(token.text)}, {}, PositionOf(token), {}};
    Chain::Step* step = &chain.root;
    for (std::size_t at = index + 1; at < tokens_.size();) {
      if (At(at, u"(") || At(at, u"[")) {
        step->indexed = true;
        at = Behind(at);
      } else if (At(at, u".") && IsName(at + 1)) {
        chain.members.push_back({std::u16string(tokens_[at + 1].text)});
        step = &chain.members.back();
        at += 2;
      } else {
        break;
      }
    }
    if (!chain.members.empty() || chain.root.indexed) found_.chains.push_back(std::move(chain));
  }

  std::u16string_view source_;
  std::vector<Token> tokens_;
  const IsKnown& isHosts_;
  Mentions found_;
  std::set<std::u16string> declared_;
  std::size_t counted_ = 0;  // how far lines are counted
  std::size_t lineStart_ = 0;
  int line_ = 1;
};

}  // namespace

Mentions MentionsOfJscript(std::u16string_view source, const IsKnown& isHosts) {
  return Reader(source, isHosts).Read();
}

}  // namespace quarlin::survey
