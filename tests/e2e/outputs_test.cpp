// SPDX-License-Identifier: GPL-3.0-or-later
// What the program prints and logs may go where nobody takes it; the run goes on all the same.

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/file_handle.h"
#include "e2e/real_program.h"
#include "support/file_size_limit.h"

namespace quarlin {
namespace {

class RealOutputs : public RealProgram {
 protected:
  // Answers the whole run and returns its exit status.
  std::optional<int> Serve(Program& program, const std::string& answer) {
    wire.Serve([&](std::string_view) { return answer; }, [&] { return !program.Running(); });
    return program.Wait();
  }
};

TEST_F(RealOutputs, AFullPipeHoldsUpNoRunAndHasItAllWhenItIsRead) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  const FileHandle reader(ends[0]);
  FileHandle writer(ends[1]);
  ConfigureRun(wire.Path(), "300");
  Program& program = Start({"LOAD", "RUN", "EXIT"}, writer.Get());
  const std::string answer = std::string(998, 'x') + "\r\n";  // 300 of them are several pipes full
  int requests = 0;
  wire.Serve([&](std::string_view) { return ++requests, answer; }, [&] { return requests == 300; });
  EXPECT_EQ(fcntl(writer.Get(), F_GETFL) & O_NONBLOCK, 0) << "the stream is ours and others'";
  writer = FileHandle();
  std::string printed;
  char block[4096];
  for (ssize_t count; (count = read(reader.Get(), block, sizeof block)) > 0;) {
    printed.append(block, static_cast<std::size_t>(count));
  }
  EXPECT_EQ(program.Wait(), 0);
  std::string expected;
  for (int i = 0; i < 300; ++i) expected += "READ\n" + std::string(998, 'x') + "\n";
  EXPECT_TRUE(printed.starts_with(expected));
  EXPECT_EQ(Number(printed, "Rx :"), 300);
  EXPECT_EQ(program.Errors(), "");
}

TEST_F(RealOutputs, AReportThatNobodyReadsChangesNoStatus) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  const FileHandle reader(ends[0]);
  const FileHandle writer(ends[1]);
  ConfigureRun(wire.Path(), "100");
  Program& program = Start({"LOAD", "RUN", "x", "LOG", "EXIT"}, writer.Get());
  std::string answer = std::string(998, 'x') + "\r\n";
  wire.Serve([&](std::string_view) { return answer; }, [&] { return FileText("LOG.TXT").size() == 100'600; });
  EXPECT_TRUE(Eventually([&] {
    program.Signal(SIGTERM);  // the first after the run ends the wait for the reader
    return !program.Running();
  }));
  EXPECT_EQ(program.Wait(), 0);
  EXPECT_NE(program.Errors().find(" lines were not printed\n"), std::string::npos) << program.Errors();
}

TEST_F(RealOutputs, AClosedOutputIsNoWayOntoTheWire) {
  ConfigureRun(wire.Path(), "3");
  Program& program = Start({"LOAD", "RUN", "EXIT"}, -1);
  EXPECT_EQ(Serve(program, "OK\r\n"), 0);
  EXPECT_EQ(wire.Received(), "READ\r\nREAD\r\nREAD\r\n");
}

TEST_F(RealOutputs, ALogThatIsNoFileIsTroubleAndHoldsNothingUp) {
  ASSERT_EQ(mkfifo((folder / "LOG.TXT").c_str(), 0600), 0);
  ConfigureRun(wire.Path(), "3");
  Program& program = Start({"LOAD", "RUN", "x", "LOG", "EXIT"});
  EXPECT_EQ(Serve(program, "OK\r\n"), 1);
  EXPECT_EQ(
      program.Errors(),
      "LOG.TXT cannot be written: it is no regular file; the run goes on\nquarlin: LOG.TXT lacks 30 bytes\n");
}

TEST_F(RealOutputs, ALimitOnTheSizeOfFilesIsLikeAFullDisk) {
  ConfigureRun(wire.Path(), "20");
  std::optional<FileSizeLimit> limit(65'536);
  Program& program = Start({"LOAD", "RUN", "x", "LOG", "EXIT"}, open("/dev/null", O_WRONLY | O_CLOEXEC));
  limit.reset();
  EXPECT_EQ(Serve(program, std::string(5'000, 'x') + "\r\n"), 1);
  EXPECT_EQ(FileText("LOG.TXT").size(), 65'536U);
  EXPECT_EQ(program.Errors(),
            "LOG.TXT cannot be written: File too large; the run goes on\nquarlin: LOG.TXT lacks " +
                std::to_string(20 * 5'008 - 65'536) + " bytes\n");
}

}  // namespace
}  // namespace quarlin
