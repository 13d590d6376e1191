// Replace-all against other ways to search regardless of case: ICU's string search at secondary
// strength, and the algorithms of Boost.

#include <benchmark/benchmark.h>
#include <unicode/stsearch.h>
#include <unicode/tblcoll.h>

#include <boost/algorithm/string/replace.hpp>
#include <memory>

#include "benchmarks/replace_samples.h"
#include "benchmarks/sweep.h"

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

[[maybe_unused]] const bool kRegistered =
    Sweep("Each", kLengths, "icu", OfLength<Icu>, kEachCharacter) &&
    Sweep("Each", kLengths, "boost", OfLength<Boost>, kEachCharacter) &&
    Sweep("None", kLengthsWithoutMatch, "icu", OfLength<Icu>, kNone) &&
    Sweep("None", kLengthsWithoutMatch, "boost", OfLength<Boost>, kNone);

BENCHMARK_CAPTURE(Icu, , kEachThird)->Name("Match3/icu");
BENCHMARK_CAPTURE(Boost, , kEachThird)->Name("Match3/boost");
BENCHMARK_CAPTURE(Icu, , kEachTenth)->Name("Match10/icu");
BENCHMARK_CAPTURE(Boost, , kEachTenth)->Name("Match10/boost");
BENCHMARK_CAPTURE(Icu, , kEachHundredth)->Name("Match100/icu");
BENCHMARK_CAPTURE(Boost, , kEachHundredth)->Name("Match100/boost");

}  // namespace
}  // namespace quorvane::benchmarks
