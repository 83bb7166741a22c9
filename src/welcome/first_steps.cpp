// SPDX-License-Identifier: GPL-3.0-or-later
#include "welcome/first_steps.h"

#include <fmt/format.h>

#include <filesystem>
#include <utility>

#include "base/text.h"
#include "welcome/examples.h"

namespace quarlin {
namespace {

constexpr std::string_view configuration = "config.cfg";

}  // namespace

FirstSteps::FirstSteps(Bundle bundle, ProgramFolder folder, StatusNote& status, TrialParts trialParts)
    : Try(trialParts, bundle), bundle_(std::move(bundle)), folder_(std::move(folder)), status_(status) {}

void FirstSteps::Offer() {
  offered_ = IsUntouched(folder_) && (ExamplesTrouble().empty() || Try.Trouble().empty());
  if (offered_) Hooks.changed();
}

void FirstSteps::Decline() {
  if (std::exchange(offered_, false)) Hooks.changed();
}

void FirstSteps::TakeExamples() {
  Decline();
  Copy();
}

void FirstSteps::TakeTrial() {
  Decline();
  if (!Try.Runs()) Try.Toggle();
}

std::string FirstSteps::ExamplesTrouble() const {
  std::error_code ignored;
  if (std::filesystem::is_directory(bundle_.examples, ignored)) return {};
  if (bundle_.examples.empty()) return "there are no examples here";
  return fmt::format("the examples are not installed: {}", BytesFromUtf8(bundle_.examples.string()));
}

void FirstSteps::CopyExamples() {
  const std::string question =
      fmt::format("Copy the examples into {}?\n\nFiles that are there stay as they are.",
                  BytesFromUtf8(folder_.Path().string()));
  if (Hooks.confirm(question)) Copy();
}

void FirstSteps::Copy() {
  if (const std::string trouble = ExamplesTrouble(); !trouble.empty()) return status_.Say(trouble);
  std::error_code ignored;
  const bool loads = !std::filesystem::exists(folder_.File(configuration), ignored);
  if (loads && !Hooks.mayLoad()) return;
  Decline();
  const CopiedExamples outcome = quarlin::CopyExamples(bundle_.examples, folder_);
  const bool withConfiguration = outcome.Copied(configuration);
  Hooks.takeUp(withConfiguration);
  status_.Say(outcome.Text(folder_.Path()) + (withConfiguration ? "; config.cfg is loaded" : ""));
}

}  // namespace quarlin
