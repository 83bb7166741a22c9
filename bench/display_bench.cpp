// SPDX-License-Identifier: GPL-3.0-or-later
// How fast the display's ring takes text: floods of the kinds that a link or a script can bring, in the
// pieces of 64 KiB in which a fast link delivers them.
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "display/text_ring.h"

namespace quarlin {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;

std::string PieceOf(std::string_view line) {
  std::string piece;
  while (piece.size() < pieceSize) piece += line;
  piece.resize(pieceSize);
  return piece;
}

void AppendFlood(benchmark::State& state, std::string_view line) {
  const std::string piece = PieceOf(line);
  TextRing ring;
  for (auto _ : state) ring.Append(piece, TextKind::Received, colors::black, LocalTime());
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(pieceSize));
}

BENCHMARK_CAPTURE(AppendFlood, LinesOf30, std::string_view("ST,GS,N:  123.456 kg,T: 0.0\x03\r\n"));
BENCHMARK_CAPTURE(AppendFlood, LinesOf30EndedByReturn,
                  std::string_view("ST,GS,N:  123.456 kg,T: 0.00\x03\r"));
BENCHMARK_CAPTURE(AppendFlood, EmptyLines, std::string_view("\r\n"));
BENCHMARK_CAPTURE(AppendFlood, OneEndlessLine, std::string_view("0123456789"));

// A request and its answer by turns, each in its own colour and each a call.
void AppendExchange(benchmark::State& state) {
  const std::string_view request = "READ\r\n";
  const std::string_view answer = "ST,GS,N:  123.456 kg,T: 0.0\r\n";
  TextRing ring;
  for (auto _ : state) {
    ring.Append(request, TextKind::Sent, colors::blue, LocalTime());
    ring.Append(answer, TextKind::Received, colors::black, LocalTime());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(AppendExchange);

// What the view does for a frame: a screenful from the end of a full ring.
void ReadScreen(benchmark::State& state) {
  const std::string piece = PieceOf("ST,GS,N:  123.456 kg,T: 0.0\x03\r\n");
  TextRing ring;
  while (ring.FirstLine() == 0) ring.Append(piece, TextKind::Received, colors::black, LocalTime());
  for (auto _ : state) {
    for (std::uint64_t number = ring.EndLine() - 60; number < ring.EndLine(); ++number) {
      benchmark::DoNotOptimize(ring.Line(number));
    }
  }
}
BENCHMARK(ReadScreen);

}  // namespace
}  // namespace quarlin
