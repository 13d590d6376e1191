// Form encoding of the longest text, against appending to the result with a search of the list of
// passing characters each time, and, for characters above ASCII, against the calls of the code page
// alone.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "benchmarks/code_page_calls.h"
#include "text/form_encoding.h"

namespace quorvane::benchmarks {
namespace {

constexpr std::size_t kLongest = 32766;

std::u16string Repeated(std::u16string_view piece) {
  std::u16string text;
  while (text.size() < kLongest) text += piece.substr(0, kLongest - text.size());
  return text;
}

const std::u16string& Kept() {
  static const std::u16string kText = Repeated(u"abcdefghijklmnopqrstuvwxyz0123456789=&");
  return kText;
}
const std::u16string& Form() {
  static const std::u16string kText = Repeated(u"name=val ue&code=a,b12&other=x y");
  return kText;
}
const std::u16string& Escaped() {
  static const std::u16string kText = Repeated(u"%+,;\"'#\\");
  return kText;
}
const std::u16string& Above127() {
  static const std::u16string kText = Repeated(u"\u00E9\u00FC\u20AC\u00DF");
  return kText;
}

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

void ListSearch(benchmark::State& state, const std::u16string& text) {
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(AppendWithListSearch(text));
}

void CodePageCalls(benchmark::State& state, const std::u16string& text) {
  for ([[maybe_unused]] auto round : state)
    benchmark::DoNotOptimize(CallCodePageForEachCharacter(text));
}

void Ours(benchmark::State& state, const std::u16string& characters) {
  const Text text(characters);
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(FormEncode(text));
}

BENCHMARK_CAPTURE(ListSearch, , Kept())->Name("Kept/base_append_list_search");
BENCHMARK_CAPTURE(Ours, , Kept())->Name("Kept/FormEncode");
BENCHMARK_CAPTURE(ListSearch, , Form())->Name("Form/base_append_list_search");
BENCHMARK_CAPTURE(Ours, , Form())->Name("Form/FormEncode");
BENCHMARK_CAPTURE(ListSearch, , Escaped())->Name("Escaped/base_append_list_search");
BENCHMARK_CAPTURE(Ours, , Escaped())->Name("Escaped/FormEncode");
BENCHMARK_CAPTURE(CodePageCalls, , Above127())->Name("Above127/base_code_page_calls");
BENCHMARK_CAPTURE(Ours, , Above127())->Name("Above127/FormEncode");

}  // namespace
}  // namespace quorvane::benchmarks
