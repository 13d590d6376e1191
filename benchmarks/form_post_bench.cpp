// The form post against the same sequence of calls that throws the reply away, for a small reply
// and for long ones. Run it beside real servers:
//   QUORVANE_TEST_BIG_PAGES=1,4,10,50,100 tests/web/real_servers.py
//   build/native/benchmarks/form_post_bench

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <string>

#include "runtime/utf8.h"
#include "web/form_post.h"

namespace quorvane::benchmarks {
namespace {

constexpr std::string_view kHeader = "Content-Type: application/x-www-form-urlencoded\r\n";
constexpr std::string_view kBody = "name=value&other=x+y";

std::int16_t ServerPort() {
  const char* const port = std::getenv("QUORVANE_TEST_NGINX");
  return static_cast<std::int16_t>(port == nullptr ? 0 : std::atoi(port));
}

// Returns the count of bytes that were read.
std::size_t BareSequence(const char* object) {
  WinInet& web = wininet();
  const InternetHandle session = web.InternetOpenA("Validate", 0, nullptr, nullptr, 0);
  const InternetHandle connection =
      web.InternetConnectA(session, "127.0.0.1", ServerPort(), nullptr, "HTTP/1.0", 3, 0, 0);
  const InternetHandle request = web.HttpOpenRequestA(connection, "POST", object, "HTTP/1.0",
                                                      nullptr, nullptr, WinInet::kFlagReload, 0);
  std::size_t total = 0;
  if (web.HttpAddRequestHeadersA(request, kHeader.data(), kHeader.size(), 0xA0000000) != 0 &&
      web.HttpSendRequestA(request, nullptr, 0, kBody.data(), kBody.size()) != 0) {
    std::array<char, 2048> block{};
    std::uint32_t count = 0;
    while (web.InternetReadFile(request, block.data(), block.size(), count) != 0 && count > 0)
      total += count;
  }
  for (const InternetHandle handle : {request, connection, session})
    benchmark::DoNotOptimize(web.InternetCloseHandle(handle));
  return total;
}

void Bare(benchmark::State& state, const char* object, std::size_t size) {
  for ([[maybe_unused]] auto round : state)
    if (BareSequence(object) != size) state.SkipWithError("no such page");
}

void Ours(benchmark::State& state, const char* object, std::size_t size) {
  const Text path = FromUtf8(object);
  const Text body = FromUtf8(kBody);
  for ([[maybe_unused]] auto round : state) {
    const Text reply = PostFormRequest(u"127.0.0.1", path, body, ServerPort());
    if (reply.Characters().size() != size) state.SkipWithError("no such page");
  }
}

constexpr std::size_t kMegabyte = 1U << 20;

// In Wine a reply of 100 MB takes seconds.
constexpr int kFew = 5;

BENCHMARK_CAPTURE(Bare, , "/size-1", 1)->Name("Reply1/base_bare_sequence");
BENCHMARK_CAPTURE(Ours, , "/size-1", 1)->Name("Reply1/PostFormRequest");
BENCHMARK_CAPTURE(Bare, , "/size-102400", 102400)->Name("Reply100K/base_bare_sequence");
BENCHMARK_CAPTURE(Ours, , "/size-102400", 102400)->Name("Reply100K/PostFormRequest");
BENCHMARK_CAPTURE(Bare, , "/big-1", kMegabyte)->Name("Reply1M/base_bare_sequence");
BENCHMARK_CAPTURE(Ours, , "/big-1", kMegabyte)->Name("Reply1M/PostFormRequest");
BENCHMARK_CAPTURE(Bare, , "/big-4", 4 * kMegabyte)->Name("Reply4M/base_bare_sequence");
BENCHMARK_CAPTURE(Ours, , "/big-4", 4 * kMegabyte)->Name("Reply4M/PostFormRequest");
BENCHMARK_CAPTURE(Bare, , "/big-10", 10 * kMegabyte)->Name("Reply10M/base_bare_sequence");
BENCHMARK_CAPTURE(Ours, , "/big-10", 10 * kMegabyte)->Name("Reply10M/PostFormRequest");
BENCHMARK_CAPTURE(Bare, , "/big-50", 50 * kMegabyte)
    ->Name("Reply50M/base_bare_sequence")
    ->Repetitions(kFew);
BENCHMARK_CAPTURE(Ours, , "/big-50", 50 * kMegabyte)
    ->Name("Reply50M/PostFormRequest")
    ->Repetitions(kFew);
BENCHMARK_CAPTURE(Bare, , "/big-100", 100 * kMegabyte)
    ->Name("Reply100M/base_bare_sequence")
    ->Repetitions(kFew);
BENCHMARK_CAPTURE(Ours, , "/big-100", 100 * kMegabyte)
    ->Name("Reply100M/PostFormRequest")
    ->Repetitions(kFew);

}  // namespace
}  // namespace quorvane::benchmarks
