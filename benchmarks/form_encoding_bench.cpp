// Form encoding, of a form's body in several lengths and of other texts in the longest, against
// appending to the result with a search of the list of passing characters each time, and, for
// characters above ASCII, against the calls of the code page alone.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "benchmarks/code_page_calls.h"
#include "benchmarks/sweep.h"
#include "benchmarks/text_samples.h"
#include "text/form_encoding.h"

namespace quorvane::benchmarks {
namespace {

constexpr std::u16string_view kAccented = u"\u00E9\u00FC\u20AC\u00DF";
constexpr std::array kOnlyLongest{kLongest};

std::u16string AppendWithListSearch(const std::u16string& text) {
  static const std::u16string kList =
      u"1234567890ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz:/.?=_-$(){}~&";
  std::u16string out;
  for (const char16_t c : text) {
    if (kList.find(c) != std::u16string::npos) {
      out += c;
    } else if (c == u' ') {
      out += u'+';
    } else {
      char digits[8];
      std::snprintf(digits, sizeof digits, "%%%02X", static_cast<unsigned>(c));
      for (const char* digit = digits; *digit != '\0'; ++digit)
        out += static_cast<char16_t>(*digit);
    }
  }
  return out;
}

void ListSearch(benchmark::State& state, int length, std::u16string_view piece) {
  const std::u16string text = Repeated(piece, length);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(AppendWithListSearch(text));
}

void CodePageCalls(benchmark::State& state, int length, std::u16string_view piece) {
  const std::u16string text = Repeated(piece, length);
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(CallCodePageForEachCharacter(text));
}

void Ours(benchmark::State& state, int length, std::u16string_view piece) {
  const Text text(Repeated(piece, length));
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(FormEncode(text));
}

constexpr auto kBase = "base_append_list_search";
constexpr auto kOurs = "FormEncode";

[[maybe_unused]] const bool kRegistered =
    Sweep("Form", kLengths, kBase, ListSearch, kForm) &&
    Sweep("Form", kLengths, kOurs, Ours, kForm) &&
    Sweep("Form", kLengths, "copy_alone", MeasureCopyAlone, kForm) &&
    Sweep("Kept", kOnlyLongest, kBase, ListSearch, kKept) &&
    Sweep("Kept", kOnlyLongest, kOurs, Ours, kKept) &&
    Sweep("Escaped", kOnlyLongest, kBase, ListSearch, kEscaped) &&
    Sweep("Escaped", kOnlyLongest, kOurs, Ours, kEscaped) &&
    Sweep("Accented", kOnlyLongest, "base_code_page_calls", CodePageCalls, kAccented) &&
    Sweep("Accented", kOnlyLongest, kOurs, Ours, kAccented);

}  // namespace
}  // namespace quorvane::benchmarks
