// SPDX-License-Identifier: GPL-3.0-or-later
// Sends a file, or a long paste: byte for byte, or line by line as commands. It is read in pieces and goes
// out as the link has room, so a file of any size takes no more memory, and everything else goes on
// meanwhile.
#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/byte_source.h"
#include "base/hook.h"
#include "controls/status_note.h"
#include "exchange/answer_wait.h"
#include "exchange/counters.h"
#include "exchange/sender.h"
#include "transmit/file_controls.h"

namespace quarlin {

struct FileParts {
  EventLoop& loop;
  FileControls& controls;
  RunControls& run;
  Counters& counters;
  Link& link;
  Exchange& exchange;
  Sender& sender;
  Traffic& traffic;
  StatusNote& status;
};

class FileSender {
 public:
  static constexpr std::size_t pieceSize = std::size_t{64} * 1024;
  static constexpr std::size_t longestLine = pieceSize;

  explicit FileSender(FileParts parts);

  // Of what is being sent, in thousandths, for a bar that shows it.
  Hook<void(int thousandths)> OnProgress;

  // Told when Active ends.
  Hook<void()> OnEnd;

  // Offers the file: its name and size are shown, and cmdFile sends it as the boxes say. One that cannot be
  // read is said in the status bar.
  void Choose(const std::filesystem::path& file);

  // Sends a text that was pasted, each of its line ends as the transmit terminator; nothing is expanded.
  // Where that cannot be, it is said in the status bar.
  void SendPaste(std::string text);

  // Something is on its way, or paused.
  bool Active() const { return state_ != State::Idle; }

  // Ends it, and says how far it came; nothing happens where nothing is sent.
  void Cancel();
  void LinkLost(std::string_view why);

 private:
  enum class State { Idle, Sending, Paused };
  enum class Way { Bytes, Commands, PastedLines };

  // Of a line, from its beginning: where its text ends, and where the next one begins.
  struct LineEnd {
    std::size_t text;
    std::size_t next;
  };

  void cmdFile_Click();
  void cmdFileEnd_Click();
  void StartChosen();
  bool MayStart();
  void Begin(std::unique_ptr<ByteSource> source, Way way);
  void Pause();
  void GoOn();
  void Next();
  void PushBytes();
  void SendPiece();
  std::size_t PieceSize() const;
  bool HasBytes();
  bool ReadMore();
  std::optional<LineEnd> FindLine();
  void SendLine();
  void SendCommand(std::string line, std::size_t ofSource);
  void SendBytes(std::string bytes, std::size_t ofSource, SendKind kind);
  void Sent(const SendOutcome& outcome, std::size_t ofSource);
  void Answered(const WaitEnd& end);
  void CountMissingAnswer(std::uint64_t number);
  Duration LinePause() const;
  void Finish();
  void Fail(std::string_view why);
  void End(std::string_view words);
  void ShowButtons();
  void ShowProgress();
  std::string SentText() const;
  std::string Rate() const;
  static std::string Lines(std::uint64_t count);

  struct Sample {
    Instant at;
    std::uint64_t sent;
  };

  FileParts parts_;
  std::filesystem::path chosen_;
  std::unique_ptr<ByteSource> source_;
  State state_ = State::Idle;
  Way way_ = Way::Bytes;
  bool waitsForAnswers_ = false;
  std::uint64_t size_ = 0;  // when it began; what is added later is not sent
  std::uint64_t read_ = 0;
  std::uint64_t sent_ = 0;  // of the source
  std::string buffer_;      // read and not sent
  std::size_t position_ = 0;
  bool sending_ = false;     // a string is on its way through the functions on the stack
  bool nextIsDue_ = false;   // while it was paused
  bool cancelling_ = false;  // as soon as that string has ended
  std::uint64_t lines_ = 0;
  std::uint64_t missingAnswers_ = 0;
  int missingInARow_ = 0;
  Instant began_{};
  std::deque<Sample> samples_;  // of the last seconds
  AnswerWait answer_;
  Alarm nextAlarm_;
  Alarm progressAlarm_;
};

}  // namespace quarlin
