// SPDX-License-Identifier: GPL-3.0-or-later
#include "transmit/file_sender.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/text.h"

namespace quarlin {
namespace {

using std::chrono::milliseconds;

constexpr Duration progressPause = milliseconds(250);
constexpr Duration rateSpan = std::chrono::seconds(3);  // over which the rate is taken
constexpr std::size_t mostPieces = 4;                   // in one turn, so that the window gets its own
constexpr std::size_t writtenPiece = 64;  // where each is a write that may wait: a cancel comes between two
constexpr Duration unservedTime =
    milliseconds(50);  // in which the pauses of such a piece may keep the window

// "1,234 bytes", "1.2 MB"
std::string SizeText(std::uint64_t bytes) {
  if (bytes < 10'000) return fmt::format("{} byte{}", bytes, bytes == 1 ? "" : "s");
  const auto size = static_cast<double>(bytes);
  return bytes < 10'000'000 ? fmt::format("{:.1f} KB", size / 1e3) : fmt::format("{:.1f} MB", size / 1e6);
}

// "0:07", "1:02:03"
std::string TimeText(std::int64_t seconds) {
  const std::string minutes = seconds < 3600 ? fmt::format("{}", seconds / 60)
                                             : fmt::format("{}:{:02}", seconds / 3600, seconds / 60 % 60);
  return fmt::format("{}:{:02}", minutes, seconds % 60);
}

bool BeginsAsUtf16(std::string_view text) {
  return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

}  // namespace

FileSender::FileSender(FileParts parts)
    : parts_(parts),
      answer_(parts_.loop, parts_.exchange),
      nextAlarm_(parts_.loop, [this] { Next(); }),
      progressAlarm_(parts_.loop, [this] { ShowProgress(); }) {
  parts_.controls.cmdFile.OnClick = [this] { cmdFile_Click(); };
  parts_.controls.cmdFileEnd.OnClick = [this] { cmdFileEnd_Click(); };
  parts_.controls.chkFileLines.Click = [this] { ShowButtons(); };
  ShowButtons();
}

void FileSender::Choose(const std::filesystem::path& file) {
  if (Active()) return parts_.status.Say(fmt::format("{} is still being sent", source_->Name()));
  const OpenedSource opened = OpenFileSource(file);
  if (!opened.source) {
    return parts_.status.Say(
        fmt::format("{} cannot be sent: {}", file.filename().string(), opened.error.message()));
  }
  chosen_ = file;
  parts_.controls.lblFile.SetCaption(
      fmt::format("{}, {}", opened.source->Name(), SizeText(opened.source->Size())));
  parts_.controls.lblFileSent.SetCaption("");
  parts_.controls.fraFile.SetVisible(true);
  parts_.controls.cmdFile.SetFocus();
  OnProgress(0);
  ShowButtons();
}

void FileSender::cmdFile_Click() {
  if (state_ == State::Sending) return Pause();
  if (state_ == State::Paused) return GoOn();
  StartChosen();
}

void FileSender::cmdFileEnd_Click() {
  if (Active()) return Cancel();
  chosen_.clear();
  parts_.controls.fraFile.SetVisible(false);
}

void FileSender::StartChosen() {
  if (chosen_.empty() || !MayStart()) return;
  OpenedSource opened = OpenFileSource(chosen_);
  if (!opened.source) {
    return parts_.status.Say(
        fmt::format("{} cannot be sent: {}", chosen_.filename().string(), opened.error.message()));
  }
  Begin(std::move(opened.source), parts_.controls.chkFileLines.Checked() ? Way::Commands : Way::Bytes);
}

void FileSender::SendPaste(std::string text) {
  if (!MayStart()) return;
  Begin(MakeTextSource("the clipboard", std::move(text)), Way::PastedLines);
}

bool FileSender::MayStart() {
  std::string objection;
  if (Active()) {
    objection = fmt::format("{} is still being sent", source_->Name());
  } else if (parts_.exchange.Running()) {
    objection = "a cycle is running; stop it before you send a file";
  } else if (!parts_.link.CanPass()) {
    objection = "not connected; nothing was sent";
  }
  if (!objection.empty()) parts_.status.Say(objection);
  return objection.empty();
}

void FileSender::Begin(std::unique_ptr<ByteSource> source, Way way) {
  source_ = std::move(source);
  way_ = way;
  waitsForAnswers_ = way == Way::Commands && parts_.controls.chkFileWait.Checked();
  state_ = State::Sending;
  size_ = source_->Size();
  read_ = sent_ = lines_ = missingAnswers_ = 0;
  missingInARow_ = 0;
  nextIsDue_ = cancelling_ = false;
  began_ = parts_.loop.Now();
  samples_ = {{began_, 0}};
  parts_.status.Runs(fmt::format("sending {}", source_->Name()));
  progressAlarm_.At(began_ + progressPause);
  nextAlarm_.At(began_);
  ShowButtons();
}

void FileSender::Pause() {
  state_ = State::Paused;
  if (way_ == Way::Bytes && !sending_) nextIsDue_ = true;
  parts_.link.EndStream();
  progressAlarm_.Cancel();
  ShowProgress();
  ShowButtons();
}

void FileSender::GoOn() {
  state_ = State::Sending;
  samples_ = {{parts_.loop.Now(), sent_}};
  progressAlarm_.At(parts_.loop.Now() + progressPause);
  if (std::exchange(nextIsDue_, false)) nextAlarm_.At(parts_.loop.Now());
  ShowButtons();
}

void FileSender::Cancel() {
  if (!Active()) return;
  if (!sending_) return End(fmt::format("{}: cancelled, {}", source_->Name(), SentText()));
  cancelling_ = true;
  parts_.link.CallOff();  // its end is told
}

void FileSender::LinkLost(std::string_view why) {
  if (Active() && !sending_) Fail(why);
}

void FileSender::Next() {
  if (state_ == State::Paused) {
    nextIsDue_ = true;
  } else if (way_ != Way::Bytes) {
    SendLine();
  } else if (parts_.link.TakesStream()) {
    parts_.link.BeginStream([this] { PushBytes(); });
  } else {
    SendPiece();
  }
}

void FileSender::PushBytes() {
  if (!parts_.link.TakesStream()) {
    parts_.link.EndStream();
    return SendPiece();
  }
  for (std::size_t pieces = 0; pieces < mostPieces; ++pieces) {
    if (!HasBytes()) return;
    const std::string_view rest = std::string_view(buffer_).substr(position_);
    const Transfer taken = parts_.sender.SendSome(rest, SendKind::File);
    const bool all = taken.bytes == rest.size();
    position_ += taken.bytes;
    sent_ += taken.bytes;
    if (taken.error) {
      const std::string why = Link::CommErrorText(taken.error.value());
      parts_.sender.TellLost(fmt::format("NOT SENT: {}: {}", source_->Name(), why));
      return Fail(why);
    }
    if (!all) return;  // the link tells when it has room
  }
}

void FileSender::SendPiece() {
  if (!HasBytes()) return;
  std::string piece = buffer_.substr(position_, PieceSize());
  position_ += piece.size();
  const std::size_t size = piece.size();
  SendBytes(std::move(piece), size, SendKind::File);
}

std::size_t FileSender::PieceSize() const {
  const Duration pause = parts_.link.CharacterPause();
  if (pause <= Duration::zero()) return writtenPiece;
  return std::clamp<std::size_t>(static_cast<std::size_t>(unservedTime / pause), 1, writtenPiece);
}

// There is something in the buffer that is to be sent; otherwise that was the end, which is told.
bool FileSender::HasBytes() {
  if (position_ < buffer_.size() || ReadMore()) return true;
  if (Active()) Finish();
  return false;
}

// Drops what was sent and reads on; false at the end, and where it failed, which is told.
bool FileSender::ReadMore() {
  buffer_.erase(0, position_);
  position_ = 0;
  const std::uint64_t left = size_ - read_;
  if (left == 0) return false;
  const std::size_t before = buffer_.size();
  const std::error_code error =
      source_->ReadMore(buffer_, static_cast<std::size_t>(std::min<std::uint64_t>(left, pieceSize)));
  read_ += buffer_.size() - before;
  if (error) Fail(fmt::format("it cannot be read any more: {}", error.message()));
  return buffer_.size() > before;
}

// Where the line at the beginning of the buffer ends, and where the next one begins; nothing at the end of
// all.
std::optional<FileSender::LineEnd> FileSender::FindLine() {
  for (;;) {
    const std::string_view rest = std::string_view(buffer_).substr(position_);
    const std::size_t end = rest.find_first_of("\r\n");
    // Whether a CR stands alone only the next character tells.
    if (end != std::string_view::npos && (end + 1 < rest.size() || read_ == size_)) {
      return LineEnd{end, end + (rest.substr(end, 2) == "\r\n" ? 2 : 1)};
    }
    if (rest.size() > longestLine) {
      const std::size_t whole = std::min(end, rest.size());
      if (way_ == Way::PastedLines) return LineEnd{whole, whole};  // goes out in parts: nothing is expanded
      Fail(fmt::format("line {} is longer than {}", lines_ + 1, SizeText(longestLine)));
      return std::nullopt;
    }
    if (ReadMore()) continue;
    if (!Active() || rest.empty()) return std::nullopt;
    return LineEnd{buffer_.size(), buffer_.size()};
  }
}

void FileSender::SendLine() {
  const std::optional<LineEnd> end = FindLine();
  if (!end) return Active() ? Finish() : void();
  std::string line = buffer_.substr(position_, end->text);
  position_ += end->next;
  ++lines_;
  if (way_ == Way::PastedLines) {
    if (end->next > end->text) line += parts_.sender.Frame.TxTerminator();
    return SendBytes(std::move(line), end->next, SendKind::Key);
  }
  SendCommand(std::move(line), end->next);
}

void FileSender::SendCommand(std::string line, std::size_t ofSource) {
  if (lines_ == 1 && BeginsAsUtf16(line)) return Fail("it is UTF-16, which cannot be sent line by line");
  line = BytesFromFileText(line);
  if (line.empty()) {
    sent_ += ofSource;
    nextAlarm_.At(parts_.loop.Now());
    return;
  }
  const Sender::Expansion expansion = parts_.sender.Expand(std::move(line));
  if (expansion.pastMaximum) return Fail("the counter has passed its maximum");
  SendBytes(parts_.sender.Frame.Framed(expansion.text), ofSource, SendKind::ByHand);
}

void FileSender::SendBytes(std::string bytes, std::size_t ofSource, SendKind kind) {
  sending_ = true;
  parts_.sender.Send(std::move(bytes), kind,
                     [this, ofSource](const SendOutcome& outcome) { Sent(outcome, ofSource); });
}

void FileSender::Sent(const SendOutcome& outcome, std::size_t ofSource) {
  sending_ = false;
  if (outcome.end == SendEnd::Sent) {
    sent_ += ofSource;
  } else if (way_ == Way::Bytes) {
    sent_ += std::min(outcome.taken, ofSource);
  }
  if (cancelling_) return Cancel();
  if (outcome.end == SendEnd::Failed) return Fail(outcome.reason);
  if (outcome.end == SendEnd::Cancelled) return Fail("the link was closed");
  if (waitsForAnswers_) {
    answer_.Begin(milliseconds(parts_.run.txtAnswerTime.Integer()),
                  [this](const WaitEnd& end) { Answered(end); });
  } else {
    nextAlarm_.At(parts_.loop.Now() + (way_ == Way::Bytes ? Duration{} : LinePause()));
  }
}

Duration FileSender::LinePause() const {
  return milliseconds(std::max(parts_.controls.txtLinePause.Integer(), 0));
}

void FileSender::Answered(const WaitEnd& end) {
  if (end.how == WaitEnd::How::TimedOut) {
    CountMissingAnswer(end.number);
  } else {
    missingInARow_ = 0;
  }
  const bool enough = parts_.run.chkTimeout.Checked() && missingInARow_ > 0 &&
                      missingInARow_ >= parts_.run.txtTimeout.Integer();
  if (enough)
    return Fail(fmt::format("no answer to {} in a row", Lines(static_cast<std::uint64_t>(missingInARow_))));
  nextAlarm_.At(parts_.loop.Now() + LinePause());
}

void FileSender::CountMissingAnswer(std::uint64_t number) {
  ++missingAnswers_;
  ++missingInARow_;
  parts_.counters.lblerror.Increment();
  parts_.traffic.AppendError("TIME OUT", fmt::format("line {} of {}", lines_, source_->Name()), number);
}

void FileSender::Finish() {
  if (read_ < size_) return Fail("it has become shorter meanwhile");
  const double seconds = std::chrono::duration<double>(parts_.loop.Now() - began_).count();
  std::string words = fmt::format("{}: {} in {:.1f} s", source_->Name(), SentText(), seconds);
  if (missingAnswers_ > 0) words += fmt::format("; no answer to {}", Lines(missingAnswers_));
  const std::uint64_t now = source_->Size();
  if (now > size_)
    words += fmt::format("; {} that were added meanwhile were not sent", SizeText(now - size_));
  End(words);
}

void FileSender::Fail(std::string_view why) {
  End(fmt::format("{}: {}: {}", source_->Name(), SentText(), why));
}

void FileSender::End(std::string_view words) {
  parts_.link.EndStream();
  answer_.Cancel();
  nextAlarm_.Cancel();
  progressAlarm_.Cancel();
  state_ = State::Idle;
  ShowProgress();
  cancelling_ = false;
  source_.reset();
  std::string().swap(buffer_);
  position_ = 0;
  parts_.status.Runs("");
  parts_.status.Say(words);
  parts_.controls.lblFileSent.SetCaption(words);
  parts_.traffic.Flush();
  if (chosen_.empty()) parts_.controls.fraFile.SetVisible(false);  // a paste has come to its end
  ShowButtons();
  OnEnd();
}

void FileSender::ShowButtons() {
  FileControls& controls = parts_.controls;
  const bool idle = state_ == State::Idle;
  controls.cmdFile.SetCaption(idle ? "Send file" : state_ == State::Sending ? "Pause" : "Go on");
  controls.cmdFileEnd.SetCaption(idle ? "Close" : "Cancel");
  controls.chkFileLines.SetEnabled(idle);
  controls.chkFileWait.SetEnabled(idle && controls.chkFileLines.Checked());
}

// Comes four times a second while something is being sent.
void FileSender::ShowProgress() {
  const Instant now = parts_.loop.Now();
  samples_.push_back({now, sent_});
  while (samples_.size() > 2 && now - samples_[1].at >= rateSpan) samples_.pop_front();
  if (chosen_.empty() && !parts_.controls.fraFile.Visible() && state_ == State::Sending) {
    parts_.controls.lblFile.SetCaption(fmt::format("{}, {}", source_->Name(), SizeText(size_)));
    parts_.controls.fraFile.SetVisible(true);  // a paste that takes its time
  }
  parts_.controls.lblFileSent.SetCaption(fmt::format("{}{}", SentText(), Rate()));
  OnProgress(size_ == 0 ? 1000 : static_cast<int>(sent_ * 1000 / size_));
  if (state_ == State::Sending) progressAlarm_.At(now + progressPause);
}

std::string FileSender::SentText() const {
  return fmt::format("{} of {} bytes sent", sent_, size_);
}

// ", 960 bytes/s, 0:42 left"; nothing where nothing moves.
std::string FileSender::Rate() const {
  if (state_ == State::Paused) return ", paused";
  const double seconds = std::chrono::duration<double>(samples_.back().at - samples_.front().at).count();
  const auto bytes = static_cast<double>(samples_.back().sent - samples_.front().sent);
  if (seconds <= 0 || bytes <= 0) return "";
  const double rate = bytes / seconds;
  const std::int64_t left = std::llround(static_cast<double>(size_ - sent_) / rate);
  return fmt::format(", {}/s, {} left", SizeText(static_cast<std::uint64_t>(rate)), TimeText(left));
}

std::string FileSender::Lines(std::uint64_t count) {
  return fmt::format("{} line{}", count, count == 1 ? "" : "s");
}

}  // namespace quarlin
