// SPDX-License-Identifier: GPL-3.0-or-later
// sequence.txt: its lines in turn, from the first again after the last. The file is read at each start of a
// run, and shown again whenever it changes between two runs; a run keeps the lines that it began with, so
// that none is sent twice or left out.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/program_folder.h"
#include "transmit/cycle_controls.h"

namespace quarlin {

class Sequence {
 public:
  static constexpr std::string_view fileName = "sequence.txt";
  static constexpr std::size_t mostShown = 10'000;  // lines in the list; the sequence may be longer

  // Shows the lines in lstSequence and where it is in lblSequence, both hidden while "Sequence" is not
  // checked.
  Sequence(CycleControls& controls, ProgramFolder folder);

  // Reads the file; the next line is the one that is chosen in the list.
  void Restart();

  // A run begins, and ends: in between the list marks the line that was sent last. Afterwards the choice is
  // the one that the run began with.
  void Begin();
  void End();

  // The next line, or empty when there is none.
  std::string NextLine();

  // The number of the line that NextLine gave last, from 1; 0 before the first.
  std::size_t LineNumber() const { return started_ ? number_ : 0; }
  bool Empty() const { return lines_.empty(); }

  // The file has changed on the disk.
  void FileChanged();

 private:
  void Read();
  void ShowLines();
  void ShowChoice();
  void ShowLine();
  std::size_t ChosenLine() const;

  CycleControls& controls_;
  ProgramFolder folder_;
  std::vector<std::string> lines_;
  std::string trouble_;
  std::size_t number_ = 0;  // of the line before the next one
  bool started_ = false;    // that line was given since the restart
  bool runs_ = false;
  int choice_ = 0;                 // the row that the run began with
  bool changedMeanwhile_ = false;  // the file, since the run began
};

}  // namespace quarlin
