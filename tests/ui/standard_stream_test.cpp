// SPDX-License-Identifier: GPL-3.0-or-later
// What is printed to a reader who is slow, absent, gone, or a terminal.

#include "ui/standard_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <sys/socket.h>
#include <termios.h>
#include <unistd.h>

#include <functional>
#include <thread>

#include "base/files.h"
#include "support/file_size_limit.h"
#include "support/poll_loop.h"
#include "support/temp_folder.h"

namespace quarlin {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

// Lines of 64 bytes that tell their number.
std::string NumberedLines(int first, int count) {
  std::string lines;
  for (int i = first; i < first + count; ++i) {
    std::string line = std::to_string(i);
    line.resize(63, '.');
    lines += line + "\n";
  }
  return lines;
}

struct Ends {
  FileHandle reader;
  FileHandle writer;
};

Ends MadeBy(const std::function<int(int*)>& make) {
  int ends[2] = {-1, -1};
  EXPECT_EQ(make(ends), 0);
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  return {FileHandle(ends[0]), FileHandle(ends[1])};
}

Ends Pipe() {
  signal(SIGPIPE, SIG_IGN);
  return MadeBy([](int* ends) { return pipe(ends); });
}

Ends Terminal() {
  return MadeBy([](int* ends) {
    termios raw{};
    cfmakeraw(&raw);
    return openpty(&ends[0], &ends[1], nullptr, &raw, nullptr);
  });
}

Ends SocketPair() {
  return MadeBy([](int* ends) { return socketpair(AF_UNIX, SOCK_STREAM, 0, ends); });
}

class StandardStreamTest : public testing::Test {
 protected:
  // What the reader gets, until it is as much as is awaited.
  std::string Read(const FileHandle& reader) {
    std::string got;
    loop.Run(
        [&] {
          char block[65536];
          ssize_t count = 0;
          while ((count = read(reader.Get(), block, sizeof block)) > 0) {
            got.append(block, static_cast<std::size_t>(count));
          }
          return got.size() >= awaited;
        },
        20s);
    return got;
  }

  PollLoop loop;
  std::size_t awaited = 0;
};

TEST_F(StandardStreamTest, AReaderThatDoesNotReadKeepsNobodyWaitingAndGetsAllLater) {
  for (const auto& make : {Pipe, Terminal, SocketPair}) {
    const Ends ends = make();
    const int flags = fcntl(ends.writer.Get(), F_GETFL);
    StandardStream stream(loop, ends.writer.Get());
    const std::string lines = NumberedLines(0, 32'000);  // nearly 2 MiB
    for (std::size_t at = 0; at < lines.size(); at += 100)
      stream.Write(std::string_view(lines).substr(at, 100));
    const int wakes = loop.Wakes();
    loop.Pass(30ms);
    EXPECT_EQ(loop.Wakes(), wakes) << "nothing to do, nothing done";
    awaited = lines.size();
    EXPECT_TRUE(Read(ends.reader) == lines);
    EXPECT_EQ(stream.LostLines(), 0U);
    EXPECT_EQ(fcntl(ends.writer.Get(), F_GETFL), flags);
  }
}

TEST_F(StandardStreamTest, BeyondFourMebibytesWholeLinesAreLostAndCounted) {
  const Ends ends = Pipe();
  StandardStream stream(loop, ends.writer.Get());
  int told = 0;
  stream.OnFirstLoss = [&] { ++told; };
  constexpr int count = 100'000;  // 6.4 MB
  stream.Write(NumberedLines(0, count) + std::string(100, 'x'));
  stream.Write(", its end\n");
  EXPECT_EQ(told, 1);
  const auto kept = static_cast<int>(count + 1 - stream.LostLines());
  awaited = static_cast<std::size_t>(kept) * 64;
  EXPECT_GT(awaited, 4 * mebibyte - 64);
  EXPECT_LT(awaited, 4 * mebibyte + mebibyte / 8);  // the pipe holds some of it
  EXPECT_TRUE(Read(ends.reader) == NumberedLines(0, kept));

  stream.Write("again\n");
  awaited = 6;
  EXPECT_EQ(Read(ends.reader), "again\n");
}

TEST_F(StandardStreamTest, ALineThatWasBegunBeforeTheLossIsEnded) {
  const Ends ends = Pipe();
  StandardStream stream(loop, ends.writer.Get());
  const std::string beginning = NumberedLines(0, 70'000).substr(0, 4 * mebibyte - 10);
  stream.Write(beginning);
  stream.Write(std::string(2 * mebibyte, 'x') + "\n");
  EXPECT_EQ(stream.LostLines(), 1U);
  awaited = beginning.size() + 1;
  EXPECT_TRUE(Read(ends.reader) == beginning + "\n");
}

TEST_F(StandardStreamTest, AStreamThatFailsLosesItsLinesAndNothingElse) {
  Ends ends = Pipe();
  StandardStream stream(loop, ends.writer.Get());
  stream.Write(NumberedLines(0, 2'000));  // half of it waits
  ends.reader = FileHandle();
  loop.Pass(10ms);
  const std::uint64_t lost = stream.LostLines();
  EXPECT_GT(lost, 0U);
  stream.Write("one\ntwo");
  EXPECT_EQ(stream.LostLines(), lost + 2);
  loop.Pass(10ms);
  EXPECT_EQ(loop.Wakes(), 1);

  const TempFolder folder;
  const FileHandle file(open((folder / "out").c_str(), O_WRONLY | O_CREAT, 0600));
  StandardStream full(loop, file.Get());
  {
    const FileSizeLimit limit(6400);  // 100 lines
    full.Write(NumberedLines(0, 128));
  }
  EXPECT_EQ(full.LostLines(), 28U);
  full.Write("room again\n");
  EXPECT_EQ(ReadWholeFile(folder / "out"), NumberedLines(0, 100) + "room again\n");
}

TEST_F(StandardStreamTest, ATerminalIsShownControlCharactersAndNotGivenThem) {
  const std::string given = "a\x1B[2J\x07\tb\x7F\xC2\x9B\xC2\xA0\xC3\xA9\r\n";
  struct {
    Ends ends;
    std::string expected;
  } rows[] = {{Terminal(), "a\\x1B[2J\\x07\\x09b\\x7F\\x9B\xC2\xA0\xC3\xA9\\x0D\n"}, {Pipe(), given}};
  for (const auto& [ends, expected] : rows) {
    StandardStream stream(loop, ends.writer.Get());
    stream.Write(given);
    awaited = expected.size();
    EXPECT_EQ(Read(ends.reader), expected);
  }
}

TEST_F(StandardStreamTest, AtTheEndItWaitsForASlowReaderButNotForever) {
  const std::string lines = NumberedLines(0, 4'000);
  {
    Ends ends = Pipe();
    StandardStream stream(loop, ends.writer.Get());
    stream.Write(lines);
    std::string got;
    fcntl(ends.reader.Get(), F_SETFL, 0);
    std::thread reader([&] {
      char block[1000];
      while (const auto count = read(ends.reader.Get(), block, sizeof block)) {
        got.append(block, static_cast<std::size_t>(count));
        if (got.ends_with("report\n")) break;
      }
    });
    stream.Finish("report\n", loop.Now() + 20s, -1);
    reader.join();
    EXPECT_TRUE(got == lines + "report\n");
  }
  const Ends nobody = Pipe();
  const Ends impatience = Pipe();
  EXPECT_EQ(write(impatience.writer.Get(), "!", 1), 1);
  struct {
    Duration patience;
    int impatience;
  } rows[] = {{20ms, -1}, {1h, impatience.reader.Get()}};
  for (const auto& row : rows) {
    StandardStream stream(loop, nobody.writer.Get());
    stream.Write(lines);
    stream.Finish("report\n", loop.Now() + row.patience, row.impatience);
    EXPECT_GT(stream.LostLines(), 2'000U);
  }
}

}  // namespace
}  // namespace quarlin
