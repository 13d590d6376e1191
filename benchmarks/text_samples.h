#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <string>

namespace quorvane::benchmarks {

/// The lengths of texts that are measured, up to the longest.
inline constexpr int kLongest = 32766;
inline constexpr std::array kLengths{64, 256, 1024, 4096, 8192, 16384, 24576, kLongest};

/// What the texts are made of: characters that pass, a form's body, characters that do not pass.
inline constexpr std::u16string_view kKept = u"abcdefghijklmnopqrstuvwxyz0123456789";
inline constexpr std::u16string_view kForm = u"name=val ue&code=a,b12&other=x y";
inline constexpr std::u16string_view kEscaped = u"%+,;\"'#\\";

/// A text of that length.
inline std::u16string Repeated(std::u16string_view piece, int length) {
  std::u16string text;
  const auto wanted = static_cast<std::size_t>(length);
  while (text.size() < wanted) text += piece.substr(0, wanted - text.size());
  return text;
}

/// The limit of whatever makes a text of a text: a copy of it.
inline void MeasureCopyAlone(benchmark::State& state, int length, std::u16string_view piece) {
  const std::u16string text = Repeated(piece, length);
  for ([[maybe_unused]] auto round : state) {
    std::u16string copy(text);
    benchmark::DoNotOptimize(copy);
  }
}

}  // namespace quorvane::benchmarks
