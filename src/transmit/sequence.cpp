// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/sequence.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "transmit/line_files.h"

namespace quarlin {
namespace {

constexpr std::size_t mostOfALine = 200;  // characters in the list

}  // namespace

Sequence::Sequence(CycleControls& controls, ProgramFolder folder)
    : controls_(controls), folder_(std::move(folder)) {
  controls_.lstSequence.SetVisible(false);
  controls_.lblSequence.SetVisible(false);
  controls_.lstSequence.Click = [this] {
    if (!runs_) ShowChoice();
  };
}

void Sequence::Restart() {
  Read();
  ShowLines();
  number_ = ChosenLine() - 1;
  started_ = false;
  ShowChoice();
}

void Sequence::Begin() {
  Restart();
  choice_ = std::max(controls_.lstSequence.ListIndex(), 0);
  changedMeanwhile_ = false;
  runs_ = true;
}

void Sequence::End() {
  if (!std::exchange(runs_, false)) return;
  const std::size_t last = LineNumber();
  const std::size_t lines = lines_.size();
  controls_.lstSequence.SetListIndex(choice_);
  if (std::exchange(changedMeanwhile_, false)) FileChanged();
  if (last > 0) controls_.lblSequence.SetCaption(fmt::format("ended at line {} of {}", last, lines));
}

std::string Sequence::NextLine() {
  if (lines_.empty()) return {};
  number_ = number_ % lines_.size() + 1;
  started_ = true;
  ShowLine();
  return lines_[number_ - 1];
}

void Sequence::FileChanged() {
  if (!controls_.chkSequence.Checked()) return;
  if (!runs_) return Restart();
  changedMeanwhile_ = true;
  ShowLine();
}

void Sequence::Read() {
  LineFile file = ReadLineFile(folder_, fileName);
  trouble_ = file.Trouble(fileName);
  if (trouble_.empty() && file.lines.empty()) {
    trouble_ = file.error ? fmt::format("there is no {} yet", fileName)
                          : fmt::format("{} has no line to send", fileName);
  }
  lines_ = std::move(file.lines);
}

void Sequence::ShowLines() {
  ListBox& list = controls_.lstSequence;
  controls_.lblSequence.SetVisible(controls_.chkSequence.Checked());
  list.SetVisible(controls_.chkSequence.Checked() && !lines_.empty());
  const int chosen = runs_ ? choice_ : list.ListIndex();
  std::vector<ListEntry> rows;
  for (const std::string& line : lines_) {
    if (rows.size() == mostShown) break;
    rows.push_back({CodedText(line, mostOfALine), ""});
  }
  list.SetList(std::move(rows));
  list.SetListIndex(chosen >= 0 && chosen < list.ListCount() ? chosen : 0);
}

void Sequence::ShowChoice() {
  controls_.lblSequence.SetCaption(
      !trouble_.empty() ? trouble_ : fmt::format("begins at line {} of {}", ChosenLine(), lines_.size()));
}

void Sequence::ShowLine() {
  controls_.lstSequence.SetListIndex(static_cast<int>(number_) - 1);
  controls_.lblSequence.SetCaption(
      fmt::format("line {} of {}{}", number_, lines_.size(),
                  changedMeanwhile_ ? " (file changed: from the next start)" : ""));
}

std::size_t Sequence::ChosenLine() const {
  return static_cast<std::size_t>(std::max(controls_.lstSequence.ListIndex(), 0)) + 1;
}

}  // namespace quarlin
