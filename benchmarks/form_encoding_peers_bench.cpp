// libcurl's escape function beside ours. It takes 8-bit text and escapes more: `=`, `&` and others
// that pass in ours, and a blank becomes three characters.

#include <benchmark/benchmark.h>
#include <curl/curl.h>

#include <string>

#include "benchmarks/sweep.h"
#include "benchmarks/text_samples.h"

namespace quorvane::benchmarks {
namespace {

void CurlEscape(benchmark::State& state, int length, std::u16string_view piece) {
  const std::u16string characters = Repeated(piece, length);
  const std::string text(characters.begin(), characters.end());
  CURL* const curl = curl_easy_init();
  for ([[maybe_unused]] auto round : state) {
    char* const escaped = curl_easy_escape(curl, text.data(), length);
    benchmark::DoNotOptimize(escaped);
    curl_free(escaped);
  }
  curl_easy_cleanup(curl);
}

constexpr std::array kOnlyLongest{kLongest};
constexpr auto kPeer = "curl_easy_escape";

[[maybe_unused]] const bool kRegistered =
    Sweep("Form", kLengths, kPeer, CurlEscape, kForm) &&
    Sweep("Kept", kOnlyLongest, kPeer, CurlEscape, kKept) &&
    Sweep("Escaped", kOnlyLongest, kPeer, CurlEscape, kEscaped);

}  // namespace
}  // namespace quorvane::benchmarks
