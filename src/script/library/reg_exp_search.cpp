// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/library/reg_exp_search.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <limits>
#include <utility>

#include "script/library/reg_exp_pattern.h"
#include "script/values/error.h"
#include "script/values/library_object.h"

namespace quarlin::vbs {
namespace {

// A search is cut into stretches of places at which a match may begin, and between two of them the script
// is asked whether to go on. Within a stretch the callouts of the pattern are its steps.
constexpr std::size_t firstStretch = 64;
constexpr std::size_t longestStretch = 4096;
constexpr auto shortTime = std::chrono::milliseconds(5);  // a stretch below this may be followed by a longer
constexpr std::uint64_t mostSteps = 100'000'000;          // of a stretch; some seconds
constexpr std::uint64_t stepsBetweenQuestions = 1024;
constexpr std::size_t matchesBetweenQuestions = 4096;

constexpr std::size_t stackAtFirst = std::size_t{32} * 1024;
constexpr std::size_t largestStack = std::size_t{64} * 1024 * 1024;
constexpr std::uint32_t heapKilobytes = largestStack / 1024;

struct Free {
  void operator()(pcre2_code* code) const { pcre2_code_free(code); }
  void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
  void operator()(pcre2_match_context* context) const { pcre2_match_context_free(context); }
  void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
  void operator()(pcre2_jit_stack* stack) const { pcre2_jit_stack_free(stack); }
};
template <class T>
using Owned = std::unique_ptr<T, Free>;

template <class T>
Owned<T> Checked(T* made) {
  if (made == nullptr) throw ScriptError(outOfMemory);
  return Owned<T>(made);
}

PCRE2_SPTR Units(std::u16string_view text) {
  static_assert(sizeof(PCRE2_UCHAR) == sizeof(char16_t));
  return reinterpret_cast<PCRE2_SPTR>(text.data());
}

std::uint32_t OptionsOf(const SearchPattern& pattern, CompiledPattern::Flags flags) {
  std::uint32_t options = PCRE2_MATCH_UNSET_BACKREF | PCRE2_DOLLAR_ENDONLY | PCRE2_USE_OFFSET_LIMIT;
  if (flags.ignoreCase) options |= PCRE2_CASELESS;
  if (flags.multiLine) options |= PCRE2_MULTILINE | PCRE2_ALT_CIRCUMFLEX;
  if (pattern.unicode) options |= PCRE2_UCP;
  return options;
}

ScriptError TooHard() {
  ScriptError error(outOfMemory);
  error.description = u"The search for the regular expression takes too many steps";
  return error;
}

}  // namespace

struct CompiledPattern::Code {
  Owned<pcre2_code> code;
};

CompiledPattern::CompiledPattern(std::u16string_view pattern, Flags flags) {
  const SearchPattern translated = TranslatePattern(pattern, flags.ignoreCase);
  const auto context = Checked(pcre2_compile_context_create(nullptr));
  pcre2_set_newline(context.get(), PCRE2_NEWLINE_LF);
  int error = 0;
  PCRE2_SIZE place = 0;
  Owned<pcre2_code> code(pcre2_compile(Units(translated.text), translated.text.size(),
                                       OptionsOf(translated, flags), &error, &place, context.get()));
  if (code == nullptr) throw ScriptError(regExpSyntax);
  pcre2_jit_compile(code.get(), PCRE2_JIT_COMPLETE);  // without it the search is slower and no worse
  pcre2_pattern_info(code.get(), PCRE2_INFO_CAPTURECOUNT, &groups_);
  std::size_t compiled = 0;
  std::size_t machineCode = 0;
  pcre2_pattern_info(code.get(), PCRE2_INFO_SIZE, &compiled);
  pcre2_pattern_info(code.get(), PCRE2_INFO_JITSIZE, &machineCode);
  share_.Resize(compiled + machineCode);
  code_ = std::make_unique<Code>(Code{std::move(code)});
}

CompiledPattern::~CompiledPattern() = default;

struct PatternSearch::State {
  State(const pcre2_code* code, Services& host)
      : services(host),
        context(Checked(pcre2_match_context_create(nullptr))),
        data(Checked(pcre2_match_data_create_from_pattern(code, nullptr))) {
    pcre2_set_heap_limit(context.get(), heapKilobytes);
    pcre2_set_match_limit(context.get(), std::numeric_limits<std::uint32_t>::max());
    pcre2_set_callout(
        context.get(), [](auto*, void* state) { return static_cast<State*>(state)->Step(); }, this);
  }

  // What goes wrong here must not unwind the library: it is kept until the library has returned.
  int Step() noexcept {
    if (++steps % stepsBetweenQuestions != 0) return 0;
    try {
      if (steps > mostSteps) throw TooHard();
      AskToGoOn(services);
      return 0;
    } catch (...) {
      thrown = std::current_exception();
      return PCRE2_ERROR_CALLOUT;
    }
  }

  // Most patterns do with the little that is there from the start; false when this one had the large stack.
  bool EnlargeStack() {
    if (stack != nullptr) return false;
    stack = Checked(pcre2_jit_stack_create(stackAtFirst, largestStack, nullptr));
    pcre2_jit_stack_assign(context.get(), nullptr, stack.get());
    return true;
  }

  Services& services;
  Owned<pcre2_jit_stack> stack;
  Owned<pcre2_match_context> context;
  Owned<pcre2_match_data> data;
  std::uint64_t steps = 0;
  std::exception_ptr thrown;
};

PatternSearch::PatternSearch(std::shared_ptr<const CompiledPattern> pattern, std::u16string_view text,
                             Services& services)
    : pattern_(std::move(pattern)),
      text_(text),
      services_(services),
      state_(std::make_unique<State>(pattern_->code_->code.get(), services)) {}

PatternSearch::~PatternSearch() = default;

bool PatternSearch::FindFrom(std::size_t start) {
  std::size_t stretch = firstStretch;
  while (start + stretch <= text_.size()) {
    const Instant began = services_.Time().Now();
    if (Try(start, start + stretch - 1)) return true;
    start += stretch;
    const bool quick = services_.Time().Now() - began < shortTime;
    stretch = quick ? std::min(stretch * 4, longestStretch) : std::max<std::size_t>(stretch / 4, 1);
    AskToGoOn(services_);
  }
  return start <= text_.size() && Try(start, text_.size());
}

bool PatternSearch::FindNext() {
  if (++found_ % matchesBetweenQuestions == 0) AskToGoOn(services_);
  if (!FindFrom(next_)) return false;
  next_ = End() + (End() == Begin() ? 1 : 0);  // behind an empty match one further, or it would come again
  return true;
}

bool PatternSearch::Try(std::size_t firstStart, std::size_t lastStart) {
  pcre2_set_offset_limit(state_->context.get(), lastStart);
  state_->steps = 0;
  for (;;) {
    const int result = pcre2_match(pattern_->code_->code.get(), Units(text_), text_.size(), firstStart, 0,
                                   state_->data.get(), state_->context.get());
    if (result > 0) return true;
    switch (result) {
      case PCRE2_ERROR_NOMATCH:
        return false;
      case PCRE2_ERROR_CALLOUT:
        std::rethrow_exception(std::exchange(state_->thrown, nullptr));
      case PCRE2_ERROR_NOMEMORY:
        throw ScriptError(outOfMemory);
      case PCRE2_ERROR_JIT_STACKLIMIT:
        if (state_->EnlargeStack()) continue;
        [[fallthrough]];
      default:
        throw TooHard();
    }
  }
}

std::size_t PatternSearch::Begin(std::uint32_t group) const {
  return pcre2_get_ovector_pointer(state_->data.get())[2 * std::size_t{group}];
}

std::size_t PatternSearch::End(std::uint32_t group) const {
  return pcre2_get_ovector_pointer(state_->data.get())[2 * std::size_t{group} + 1];
}

std::u16string_view PatternSearch::Text(std::uint32_t group) const {
  return Begin(group) == unmatched ? std::u16string_view()
                                   : text_.substr(Begin(group), End(group) - Begin(group));
}

}  // namespace quarlin::vbs
