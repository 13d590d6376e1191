// Replace-all against other ways to search regardless of case: ICU's string search at secondary
// strength, and the algorithms of Boost.

#include <benchmark/benchmark.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>

#include <boost/algorithm/string/replace.hpp>
#include <memory>

#include "benchmarks/replace_samples.h"
#include "text/string_helpers.h"

namespace quorvane::benchmarks {
namespace {

void Icu(benchmark::State& state, const Replacing& task) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance("en", status));
  collator->setStrength(icu::Collator::SECONDARY);
  const std::u16string sample = task.Sample();
  const icu::UnicodeString text(sample.data(), static_cast<std::int32_t>(sample.size()));
  const icu::UnicodeString find(task.find.data(), static_cast<std::int32_t>(task.find.size()));
  for ([[maybe_unused]] auto round : state) {
    icu::StringSearch search(find, text, dynamic_cast<icu::RuleBasedCollator*>(collator.get()),
                             nullptr, status);
    std::u16string result;
    std::size_t next = 0;
    for (auto place = search.first(status); place != USEARCH_DONE; place = search.next(status)) {
      const auto found = static_cast<std::size_t>(place);
      result.append(sample, next, found - next).append(task.replacement);
      next = found + static_cast<std::size_t>(search.getMatchedLength());
    }
    result.append(sample, next);
    benchmark::DoNotOptimize(result);
  }
  if (U_FAILURE(status)) state.SkipWithError("ICU failed");
}

void Boost(benchmark::State& state, const Replacing& task) {
  const std::u16string text = task.Sample();
  const std::string bytes(text.begin(), text.end());
  const std::string find(task.find.begin(), task.find.end());
  const std::string replacement(task.replacement.begin(), task.replacement.end());
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(boost::ireplace_all_copy(bytes, find, replacement));
  }
}

void Ours(benchmark::State& state, const Replacing& task) {
  const Text text(task.Sample());
  const Text find(task.find);
  const Text replacement(task.replacement);
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(ReplaceAll(text, find, replacement));
  }
}

BENCHMARK_CAPTURE(Icu, , kEachCharacter)->Name("Peers1/base_icu");
BENCHMARK_CAPTURE(Boost, , kEachCharacter)->Name("Peers1/boost");
BENCHMARK_CAPTURE(Ours, , kEachCharacter)->Name("Peers1/ReplaceAll");
BENCHMARK_CAPTURE(Icu, , kEachThird)->Name("Peers3/base_icu");
BENCHMARK_CAPTURE(Boost, , kEachThird)->Name("Peers3/boost");
BENCHMARK_CAPTURE(Ours, , kEachThird)->Name("Peers3/ReplaceAll");
BENCHMARK_CAPTURE(Icu, , kEachTenth)->Name("Peers10/base_icu");
BENCHMARK_CAPTURE(Boost, , kEachTenth)->Name("Peers10/boost");
BENCHMARK_CAPTURE(Ours, , kEachTenth)->Name("Peers10/ReplaceAll");
BENCHMARK_CAPTURE(Icu, , kEachHundredth)->Name("Peers100/base_icu");
BENCHMARK_CAPTURE(Boost, , kEachHundredth)->Name("Peers100/boost");
BENCHMARK_CAPTURE(Ours, , kEachHundredth)->Name("Peers100/ReplaceAll");
BENCHMARK_CAPTURE(Icu, , kNone)->Name("PeersNone/base_icu");
BENCHMARK_CAPTURE(Boost, , kNone)->Name("PeersNone/boost");
BENCHMARK_CAPTURE(Ours, , kNone)->Name("PeersNone/ReplaceAll");

}  // namespace
}  // namespace quorvane::benchmarks
