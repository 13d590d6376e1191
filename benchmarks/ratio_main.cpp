// Runs the benchmarks of a program and prints how each variant compares with the base of its group.
//
// A benchmark is named GROUP/VARIANT; the variant whose name starts with `base` is what the others
// of its group are measured against. Each variant is run several times, all of them in random
// order, so that a machine that slows down for a while does not favour one, and the ratio is that
// of the medians. The spread, from the 10th to the 90th percentile in percent of the median, tells
// how far to trust it. Options of the benchmark library given by hand take precedence.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

struct Variant {
  std::string name;
  std::vector<double> times;  // nanoseconds a round, one for each repetition

  // The time below which that share of the repetitions lies.
  [[nodiscard]] double Percentile(double share) const {
    std::vector<double> sorted = times;
    std::ranges::sort(sorted);
    return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1) + 0.5)];
  }
  [[nodiscard]] double Median() const { return Percentile(0.5); }
  [[nodiscard]] double SpreadInPercent() const {
    return 100 * (Percentile(0.9) - Percentile(0.1)) / Median();
  }
};

class RatioReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& context) override {
    PrintBasicContext(&std::cerr, context);
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Iteration && !run.error_occurred) Remember(run);
  }

  void Finalize() override {
    std::printf("%-12s %-30s %14s %8s %8s\n", "group", "variant", "median ns", "spread", "ratio");
    for (const auto& [group, variants] : groups_) Print(group, variants);
  }

 private:
  // By their order of definition.
  using Variants = std::map<std::int64_t, Variant>;

  void Remember(const Run& run) {
    const std::string& name = run.run_name.function_name;
    const std::size_t slash = std::min(name.find('/'), name.size() - 1);
    Variant& variant = groups_[name.substr(0, slash)][run.family_index];
    variant.name = name.substr(slash + 1);
    variant.times.push_back(run.real_accumulated_time * 1e9 / static_cast<double>(run.iterations));
  }

  static void Print(const std::string& group, const Variants& variants) {
    const auto base = std::ranges::find_if(
        variants, [](const auto& entry) { return entry.second.name.starts_with("base"); });
    std::printf("\n");
    for (const auto& [order, variant] : variants) {
      std::printf("%-12s %-30s %14.1f %7.0f%%", group.c_str(), variant.name.c_str(),
                  variant.Median(), variant.SpreadInPercent());
      if (base != variants.end()) std::printf(" %8.2f", base->second.Median() / variant.Median());
      std::printf("\n");
    }
  }

  std::map<std::string, Variants> groups_;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> defaults{argv[0], "--benchmark_repetitions=15",
                                    "--benchmark_min_time=0.02",
                                    "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> arguments;
  for (std::string& argument : defaults) arguments.push_back(argument.data());
  arguments.insert(arguments.end(), argv + 1, argv + argc);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
