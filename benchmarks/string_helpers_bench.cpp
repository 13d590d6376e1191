// Replace-all, of a long text and, for a match at each character and for none, of several lengths:
// against rebuilding the text at each match, and against asking the collation at each place.

#include <benchmark/benchmark.h>

#include <string>

#include "benchmarks/replace_samples.h"
#include "benchmarks/sweep.h"
#include "platform/collation.h"
#include "tests/support/fake_collation.h"
#include "text/string_helpers.h"

namespace quorvane::benchmarks {
namespace {

char16_t ToLower(char16_t c) { return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c + 32) : c; }

std::size_t PlainFind(const std::u16string& text, const std::u16string& find, std::size_t from) {
  for (std::size_t place = from; place + find.size() <= text.size(); ++place) {
    std::size_t same = 0;
    while (same < find.size() && ToLower(text[place + same]) == ToLower(find[same])) ++same;
    if (same == find.size()) return place;
  }
  return std::u16string::npos;
}

// The whole text anew at each match.
std::u16string Rebuilt(std::u16string text, const Replacing& task) {
  std::size_t from = 0;
  for (;;) {
    const std::size_t found = PlainFind(text, task.find, from);
    if (found == std::u16string::npos) return text;
    text = text.substr(0, found) + task.replacement + text.substr(found + task.find.size());
    from = found + task.replacement.size();
  }
}

void Rebuild(benchmark::State& state, const Replacing& task) {
  const std::u16string text = task.Sample();
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(Rebuilt(text, task));
}

void Ours(benchmark::State& state, const Replacing& task) {
  const Text text(task.Sample());
  const Text find(task.find);
  const Text replacement(task.replacement);
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(ReplaceAll(text, find, replacement));
  }
}

void EveryPlace(benchmark::State& state, const Replacing& task) {
  const Text text(task.Sample());
  const Text find(task.find);
  const Text replacement(task.replacement);
  const testing::NotPlain collation(systemCollation());
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(ReplaceAll(text, find, replacement, collation));
  }
}

void CopyAlone(benchmark::State& state, const Replacing& task) {
  MeasureCopyAlone(state, task.length, task.piece);
}

// Nothing but one comparison at every place.
void ComparisonsAlone(benchmark::State& state, const Replacing& task) {
  const std::u16string sample = task.Sample();
  const std::u16string_view text = sample;
  for ([[maybe_unused]] auto round : state) {
    for (std::size_t place = 0; place + task.find.size() <= text.size(); ++place) {
      benchmark::DoNotOptimize(
          systemCollation().AreEqual(text.substr(place, task.find.size()), task.find));
    }
  }
}

[[maybe_unused]] const bool kRegistered =
    Sweep("Each", kLengths, "base_rebuild", OfLength<Rebuild>, kEachCharacter) &&
    Sweep("Each", kLengths, "ReplaceAll", OfLength<Ours>, kEachCharacter) &&
    Sweep("Each", kLengths, "copy_alone", OfLength<CopyAlone>, kEachCharacter) &&
    Sweep("None", kLengthsWithoutMatch, "base_rebuild", OfLength<Rebuild>, kNone) &&
    Sweep("None", kLengthsWithoutMatch, "ReplaceAll", OfLength<Ours>, kNone) &&
    Sweep("None", kLengthsWithoutMatch, "copy_alone", OfLength<CopyAlone>, kNone);

BENCHMARK_CAPTURE(EveryPlace, , kEachCharacter)->Name("Each32766/collation_everywhere");
BENCHMARK_CAPTURE(Rebuild, , kEachThird)->Name("Match3/base_rebuild");
BENCHMARK_CAPTURE(EveryPlace, , kEachThird)->Name("Match3/collation_everywhere");
BENCHMARK_CAPTURE(Ours, , kEachThird)->Name("Match3/ReplaceAll");
BENCHMARK_CAPTURE(Rebuild, , kGrowing)->Name("Growing/base_rebuild");
BENCHMARK_CAPTURE(EveryPlace, , kGrowing)->Name("Growing/collation_everywhere");
BENCHMARK_CAPTURE(Ours, , kGrowing)->Name("Growing/ReplaceAll");
BENCHMARK_CAPTURE(Rebuild, , kEachTenth)->Name("Match10/base_rebuild");
BENCHMARK_CAPTURE(EveryPlace, , kEachTenth)->Name("Match10/collation_everywhere");
BENCHMARK_CAPTURE(Ours, , kEachTenth)->Name("Match10/ReplaceAll");
BENCHMARK_CAPTURE(Rebuild, , kEachHundredth)->Name("Match100/base_rebuild");
BENCHMARK_CAPTURE(EveryPlace, , kEachHundredth)->Name("Match100/collation_everywhere");
BENCHMARK_CAPTURE(Ours, , kEachHundredth)->Name("Match100/ReplaceAll");
BENCHMARK_CAPTURE(EveryPlace, , kNone)->Name("None32766/collation_everywhere");
BENCHMARK_CAPTURE(ComparisonsAlone, , kOtherScript)->Name("Other/base_comparisons_alone");
BENCHMARK_CAPTURE(Ours, , kOtherScript)->Name("Other/ReplaceAll");

}  // namespace
}  // namespace quorvane::benchmarks
