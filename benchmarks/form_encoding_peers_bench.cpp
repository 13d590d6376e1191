// Form encoding against libcurl's escape function, which takes 8-bit text.

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <string>

#include "text/form_encoding.h"

namespace quorvane::benchmarks {
namespace {

constexpr std::size_t kLongest = 32766;

std::string Repeated(std::string_view piece) {
  std::string text;
  while (text.size() < kLongest) text += piece.substr(0, kLongest - text.size());
  return text;
}

void CurlEscape(benchmark::State& state, const std::string& piece) {
  const std::string text = Repeated(piece);
  CURL* const curl = curl_easy_init();
  for ([[maybe_unused]] auto round : state) {
    char* const escaped = curl_easy_escape(curl, text.data(), static_cast<int>(text.size()));
    benchmark::DoNotOptimize(escaped);
    curl_free(escaped);
  }
  curl_easy_cleanup(curl);
}

void Ours(benchmark::State& state, const std::string& piece) {
  const std::string bytes = Repeated(piece);
  const Text text(std::u16string(bytes.begin(), bytes.end()));
  for ([[maybe_unused]] auto round : state) benchmark::DoNotOptimize(FormEncode(text));
}

constexpr auto kKept = "abcdefghijklmnopqrstuvwxyz0123456789";
constexpr auto kForm = "name=val ue&code=a,b12&other=x y";
constexpr auto kEscaped = "%+,;\"'#\\";

BENCHMARK_CAPTURE(CurlEscape, , kKept)->Name("CurlKept/base_curl_easy_escape");
BENCHMARK_CAPTURE(Ours, , kKept)->Name("CurlKept/FormEncode");
BENCHMARK_CAPTURE(CurlEscape, , kForm)->Name("CurlForm/base_curl_easy_escape");
BENCHMARK_CAPTURE(Ours, , kForm)->Name("CurlForm/FormEncode");
BENCHMARK_CAPTURE(CurlEscape, , kEscaped)->Name("CurlEscaped/base_curl_easy_escape");
BENCHMARK_CAPTURE(Ours, , kEscaped)->Name("CurlEscaped/FormEncode");

}  // namespace
}  // namespace quorvane::benchmarks
