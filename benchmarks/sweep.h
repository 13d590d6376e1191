#pragma once

#include <benchmark/benchmark.h>

#include <span>
#include <string>
#include <type_traits>

namespace quorvane::benchmarks {

/// A size as the name of a group ends with it: 8192, from 64 Ki on 300K or 16M where it is whole.
[[nodiscard]] inline std::string SizeName(int size) {
  constexpr int kKibi = 1024;
  if (size < 64 * kKibi || size % kKibi != 0) return std::to_string(size);
  if (size % (kKibi * kKibi) != 0) return std::to_string(size / kKibi) + "K";
  return std::to_string(size / kKibi / kKibi) + "M";
}

/// Registers a variant for each size, in the group of that family and size: `Array` and 16 make
/// `Array16`. `function` gets the state, the size, and what follows here. `repetitions`: 0 leaves
/// them to the command line.
template <int repetitions = 0, class... Arguments>
bool Sweep(const std::string& family, std::span<const int> sizes, const std::string& variant,
           void (*function)(benchmark::State&, int, Arguments...),
           const std::type_identity_t<Arguments>&... arguments) {
  for (const int size : sizes) {
    const std::string name = family + SizeName(size) + "/" + variant;
    auto* const added = benchmark::RegisterBenchmark(name.c_str(), function, size, arguments...);
    if constexpr (repetitions != 0) added->Repetitions(repetitions);
  }
  return true;
}

}  // namespace quorvane::benchmarks
