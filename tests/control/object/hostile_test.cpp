// Proves that no container can break the module: one that calls anything at any time, re-enters
// from every callback, gives back the last reference there, destroys windows, fails where it likes
// and has no memory; while every block of the module's memory and every part of the container loses
// its pages the moment it is given back.
//
// A random round that fails names its seed; QUORVANE_HOSTILE_SEED=N repeats it alone.

#include <csignal>
#include <cstdio>
#include <functional>

#include "tests/support/component/failing_allocations.h"
#include "tests/support/component/guarded_memory.h"
#include "tests/support/component/host_window.h"
#include "tests/support/component/hostile_container.h"
#include "tests/support/component/rounds.h"
#include "tests/support/component/values.h"

namespace quorvane::component::hostile_test {
namespace {

// Says which round it was when the process cannot go on, and ends it.
class RoundWatch {
 public:
  RoundWatch()
      : handler_(::AddVectoredExceptionHandler(1, OnException)),
        on_abort_(std::signal(SIGABRT, OnAbort)) {}
  RoundWatch(const RoundWatch&) = delete;
  RoundWatch& operator=(const RoundWatch&) = delete;
  ~RoundWatch() {
    ::RemoveVectoredExceptionHandler(handler_);
    std::signal(SIGABRT, on_abort_);
  }

  static void Begin(const std::string& name) {
    round = name;
    has_failed = false;
  }

 private:
  [[noreturn]] static void End(const char* why, const void* code, const void* place) {
    std::fprintf(stderr, "%s at %p, place %p, in %s\n", why, code, place, round.c_str());
    std::fflush(stderr);
    ::TerminateProcess(::GetCurrentProcess(), 99);
    for (;;) {
    }
  }
  static LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && !std::exchange(has_failed, true))
      End("access violation", record.ExceptionAddress,
          reinterpret_cast<const void*>(record.ExceptionInformation[1]));
    return EXCEPTION_CONTINUE_SEARCH;
  }
  static void OnAbort(int) { End("the process was ended", nullptr, nullptr); }

  inline static std::string round;
  inline static bool has_failed = false;
  void* handler_;
  void (*on_abort_)(int);
};

// Each text a block of its own, whatever was there before.
const Values kLong{L"a server's address",    80,
                   L"a file of that server", VARIANT_FALSE,
                   L"a proxy's address",     L"a user's name",
                   L"a user's password"};

using Body = std::function<void(HostileContainer&)>;

constexpr auto kFriendly = [](int, std::string_view) { return S_OK; };

// A thread with a window, which has used the module once: what that leaves for the thread's later
// rounds is no loss.
class Ground {
 public:
  explicit Ground(const Module& module) : module_(module) {
    RoundWatch::Begin("the first life");
    HostileContainer container(module_, host_.Get(), 1);
    container.on_callback = [](int, std::string_view name) {
      return name == "bag Read" ? E_FAIL : S_OK;  // an error is thrown, caught and dropped
    };
    container.LiveOneLife();
  }

  // The body with a container, from settings that are the same each time; afterwards nothing of it
  // is left: no block that was not there before, no lock on the module.
  void Round(const std::string& name, std::uint32_t seed, const Body& body) const {
    RoundWatch::Begin(name);
    SCOPED_TRACE(name);
    PutValues(module_.CreateSecurityCtrl(), kLong);
    const int blocks = guarded_memory::Blocks();
    {
      HostileContainer container(module_, host_.Get(), seed);
      body(container);
    }
    PutValues(module_.CreateSecurityCtrl(), kLong);
    EXPECT_EQ(guarded_memory::Blocks(), blocks);
    EXPECT_EQ(module_.CanUnloadNow(), S_OK);
  }

 private:
  const Module& module_;
  HostWindow host_;
};

constexpr int kCallsARound = 300;
constexpr int kRoundsAThread = 20;

TEST(Hostile, RandomCallsFromEverywhereLeaveNothingBehind) {
  const RoundWatch watch;
  const GuardedModule module;
  const int one = Rounds("QUORVANE_HOSTILE_SEED", 0);
  const int first = one != 0 ? one : Rounds("QUORVANE_HOSTILE_FIRST", 1);
  const int last = one != 0 ? one : first - 1 + Rounds("QUORVANE_HOSTILE_ROUNDS", 500);
  long long calls = 0;
  int seed = first;
  while (seed <= last && !::testing::Test::HasFailure()) {
    OnApartmentThread([&] {
      const Ground ground(module.Get());
      for (int i = 0; i < kRoundsAThread && seed <= last && !::testing::Test::HasFailure();
           ++i, ++seed) {
        ground.Round("QUORVANE_HOSTILE_SEED=" + std::to_string(seed),
                     static_cast<std::uint32_t>(seed), [&](HostileContainer& container) {
                       container.Run(kCallsARound);
                       calls += container.Calls();
                     });
      }
    });
  }
  std::printf("%lld random calls, seeds %d to %d\n", calls, first, seed - 1);
}

TEST(Hostile, ASeedGivesTheSameCallsAgain) {
  const RoundWatch watch;
  const GuardedModule module;
  const auto trace_of = [&](std::uint32_t seed) {
    std::uint64_t trace = 0;
    OnApartmentThread([&] {
      const Ground ground(module.Get());
      ground.Round("trace of " + std::to_string(seed), seed, [&](auto& container) {
        container.Run(kCallsARound);
        trace = container.Trace();
      });
    });
    return trace;
  };
  for (std::uint32_t seed = 11; seed < 16; ++seed) EXPECT_EQ(trace_of(seed), trace_of(seed));
  EXPECT_NE(trace_of(11), trace_of(12));
}

// Runs the body undisturbed, and then once for each of its callbacks, in which `disturb` may do
// what it likes; its answer is the callback's.
void DisturbEachCallback(const std::string& name, const Body& body,
                         const std::function<HRESULT(HostileContainer&)>& disturb) {
  const RoundWatch watch;
  const GuardedModule module;
  OnApartmentThread([&] {
    const Ground ground(module.Get());
    int callbacks = 0;
    for (int at = 0; at <= callbacks && !::testing::Test::HasFailure(); ++at) {
      ground.Round(name + " in callback " + std::to_string(at), 1,
                   [&](HostileContainer& container) {
                     container.on_callback = [&](int number, std::string_view) {
                       return number == at ? disturb(container) : S_OK;
                     };
                     body(container);
                     if (at == 0) callbacks = container.Callbacks();
                   });
    }
    EXPECT_GT(callbacks, 50);
  });
}

void LiveOneLife(HostileContainer& container) { container.LiveOneLife(); }

TEST(Hostile, EachCallbackMayFail) {
  DisturbEachCallback("failure", LiveOneLife, [](HostileContainer&) { return E_FAIL; });
}

TEST(Hostile, EachByteOfAStreamMayFail) {
  DisturbEachCallback(
      "failure",
      [](HostileContainer& container) {
        container.Meet();
        container.PutAll();
        container.SaveAndLoadAll(1);
      },
      [](HostileContainer&) { return STG_E_READFAULT; });
}

TEST(Hostile, AnythingMayHappenInEachCallback) {
  using Action = void (*)(HostileContainer&);
  static constexpr std::pair<const char*, Action> kActions[] = {
      {"release of all", [](HostileContainer& c) { c.ReleaseAll(); }},
      {"close", [](HostileContainer& c) { c.CloseAll(); }},
      {"loss of the site", [](HostileContainer& c) { c.LeaveSites(); }},
      {"deactivation", [](HostileContainer& c) { c.DeactivateAll(); }},
      {"activation", [](HostileContainer& c) { c.ShowAll(); }},
      {"put", [](HostileContainer& c) { c.PutAll(); }},
      {"save and load", [](HostileContainer& c) { c.SaveAndLoadAll(); }},
      {"storage", [](HostileContainer& c) { c.UseStorages(); }},
      {"disconnection", [](HostileContainer& c) { c.DisconnectAll(); }},
      {"end of the windows", [](HostileContainer& c) { c.DestroyWindows(); }},
  };
  for (const auto& [name, action] : kActions) {
    DisturbEachCallback(name, LiveOneLife, [act = action](HostileContainer& container) {
      act(container);
      return S_OK;
    });
  }
}

// Once and from then on; on a thread that meets the module for the first time.
TEST(Hostile, EachAcquisitionMayFailOnAFreshThread) {
  const RoundWatch watch;
  const GuardedModule module;
  using Lasting = FailingAllocations::Lasting;
  OnApartmentThread([&] { const Ground first_user(module.Get()); });
  const int blocks = guarded_memory::Blocks();
  for (const Lasting lasting : {Lasting::kOnce, Lasting::kFromThenOn}) {
    int failures = 1;
    int runs = 0;
    for (int first = 1; failures > 0 && !::testing::Test::HasFailure(); ++first, ++runs) {
      ASSERT_LT(runs, 500);
      const std::string name = "acquisition " + std::to_string(first) + " fails";
      RoundWatch::Begin(name);
      OnApartmentThread([&] {
        SCOPED_TRACE(name);
        const HostWindow host;
        HostileContainer container(module.Get(), host.Get(), 1);
        container.on_callback = kFriendly;
        const FailingAllocations failing(module.Get().Handle(), first, lasting);
        container.LiveOneLife();
        failures = FailingAllocations::Failures();
      });
      EXPECT_EQ(guarded_memory::Blocks(), blocks) << name;
      EXPECT_EQ(module.Get().CanUnloadNow(), S_OK) << name;
    }
    EXPECT_GT(runs, 50);
  }
}

TEST(GuardedMemory, TakesTheRightsOfABlockThatIsGivenBackAndHasNoneBehindIt) {
  for (const std::size_t size : {1U, 8U, 100U, 4096U, 10'000U}) {
    auto* const block = static_cast<unsigned char*>(guarded_memory::Take(size));
    const std::size_t whole = (size + 7) / 8 * 8;
    EXPECT_FALSE(::IsBadWritePtr(block, size));
    EXPECT_TRUE(::IsBadReadPtr(block + whole, 1)) << "behind a block of " << size;
    guarded_memory::Give(block);
    EXPECT_TRUE(::IsBadReadPtr(block, 1)) << "given back";
  }
}

TEST(GuardedMemory, HoldsAllThatTheModuleTakesUntilItIsUnloaded) {
  const int before = guarded_memory::Blocks();
  {
    const GuardedModule module;
    OnApartmentThread([&] {
      const auto control = module.Get().CreateSecurityCtrl();
      EXPECT_GT(guarded_memory::Blocks(), before);
      EXPECT_TRUE(::IsBadReadPtr(reinterpret_cast<unsigned char*>(control.Get()) + 8192, 1));
    });
  }
  EXPECT_EQ(guarded_memory::Blocks(), before);
}

}  // namespace
}  // namespace quorvane::component::hostile_test
