// Proves that nothing wears out: round after round of create, load, save and release, and threads
// that come and go while the module is loaded and unloaded. `./test` does a few, `./test --soak` a
// million.

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/component/fake_site.h"
#include "tests/support/component/fake_stream.h"
#include "tests/support/component/host_window.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/rounds.h"
#include "tests/support/component/values.h"
// Behind windows.h:
#include <psapi.h>

namespace quorvane::component::soak_test {
namespace {

// What a host has of the system. Wine tells no counts of handles and of objects for drawing, so a
// new one's place among all stands for them: freed places are used again.
struct Belongings {
  ULONG_PTR handles;
  DWORD drawing_objects;
  int tls_indices;
  SIZE_T memory;
};

DWORD DrawingObjectPlace() {
  HBRUSH brushes[64];
  DWORD highest = 0;
  for (HBRUSH& brush : brushes) {
    brush = ::CreateSolidBrush(RGB(1, 2, 3));
    highest = std::max(highest, static_cast<DWORD>(LOWORD(brush)));
  }
  for (const HBRUSH brush : brushes) ::DeleteObject(brush);
  return highest;
}

int FreeTlsIndices() {
  std::vector<DWORD> taken;
  for (DWORD index = ::TlsAlloc(); index != TLS_OUT_OF_INDEXES; index = ::TlsAlloc())
    taken.push_back(index);
  for (const DWORD index : taken) ::TlsFree(index);
  return static_cast<int>(taken.size());
}

Belongings Present() {
  PROCESS_MEMORY_COUNTERS memory{};
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &memory, sizeof memory);
  return {HandlePlace(), DrawingObjectPlace(), FreeTlsIndices(), memory.PagefileUsage};
}

void Print(const char* what, int rounds, const Belongings& before, const Belongings& after) {
  std::printf(
      "%d %s: handles %lu -> %lu, drawing objects %lu -> %lu, free TLS indices %d -> %d, "
      "memory %lu -> %lu KB\n",
      rounds, what, static_cast<unsigned long>(before.handles),
      static_cast<unsigned long>(after.handles), before.drawing_objects, after.drawing_objects,
      before.tls_indices, after.tls_indices, static_cast<unsigned long>(before.memory / 1024),
      static_cast<unsigned long>(after.memory / 1024));
}

// Wine loses the name of the module with each icon that is loaded from it, two bytes a character
// (docs/under-fire.md): some 109 for each drawing.
void ExpectTheSame(const Belongings& before, const Belongings& after, SIZE_T drawings = 0) {
  EXPECT_LE(after.handles, before.handles + 16);
  EXPECT_LE(after.drawing_objects, before.drawing_objects + 8);
  EXPECT_EQ(after.tls_indices, before.tls_indices);
  EXPECT_LE(after.memory, before.memory + 512 * 1024 + 200 * drawings)
      << "half a megabyte is the heap's own play";
}

// A control's life with a form: made, loaded, changed, saved, every hundredth time shown.
void Round(const Module& module, FakeStream& form, FakeSite& site, HWND host, bool is_shown) {
  const auto control = module.CreateSecurityCtrl();
  const auto stream_init = control.As<IPersistStreamInit>();
  form.position = 0;
  ASSERT_EQ(stream_init->Load(&form), S_OK);
  ASSERT_EQ(control->put_ServerAddress(Bstr(L"reports.example.com").Get()), S_OK);
  if (is_shown) {
    const auto object = control.As<IOleObject>();
    ASSERT_EQ(object->SetClientSite(site.Site()), S_OK);
    ASSERT_EQ(object->DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, host, nullptr), S_OK);
    ::SendMessageW(::GetWindow(host, GW_CHILD), WM_PAINT, 0, 0);
    ASSERT_EQ(object->SetClientSite(nullptr), S_OK);
    site.log.clear();
  }
  form.content.clear();
  ASSERT_EQ(stream_init->Save(&form, TRUE), S_OK);
}

TEST(Soak, CreateLoadSaveReleaseLeavesNothingBehind) {
  OnApartmentThread([] {
    const Module module;
    const HostWindow host;
    FakeSite site(FakeSite::Offers::kInPlaceSiteEx, host.Get());
    FakeStream form;
    PutValues(module.CreateSecurityCtrl(), kOthers);
    ASSERT_EQ(module.CreateControl().As<IPersistStreamInit>()->Save(&form, FALSE), S_OK);
    const int rounds = Rounds("QUORVANE_SOAK_ROUNDS", 5'000);
    const auto run = [&](int count) {
      for (int i = 0; i < count && !::testing::Test::HasFatalFailure(); ++i)
        Round(module, form, site, host.Get(), i % 100 == 0);
    };
    run(1'000);
    const Belongings before = Present();
    run(rounds);
    const Belongings after = Present();
    Print("rounds", rounds, before, after);
    ExpectTheSame(before, after, static_cast<SIZE_T>(rounds / 100));
    EXPECT_EQ(site.References(), 1U);
    EXPECT_EQ(::GetWindow(host.Get(), GW_CHILD), nullptr);
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

// The members' type information, which keeps the library in memory, and not the module.
Com<ITypeInfo> TypeLibraryOf(const std::wstring& file) {
  Com<ITypeInfo> members;
  const Module module(file);
  EXPECT_EQ(module.CreateSecurityCtrl()->GetTypeInfo(0, LOCALE_USER_DEFAULT, members.Out()), S_OK);
  return members;
}

// Four lanes: in each, one thread after the other loads the module, uses it and unloads it, some
// of them ending before their module goes and some after; now and then nobody has it.
TEST(Soak, ThreadsComeAndGoWhileTheModuleIsLoadedAndUnloaded) {
  const TemporaryFolder folder;
  const std::wstring copy = folder.File(L"come and go.ocx");
  ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
  const int rounds = Rounds("QUORVANE_SOAK_ROUNDS", 5'000) / 25;
  std::atomic<int> loads{0};
  // Wine gives a type library that one thread lets go of, the last to hold it, to another that asks
  // for it at that moment, which then calls into freed memory (docs/under-fire.md). So it is held.
  const auto members = TypeLibraryOf(copy);
  const auto live = [&](bool outlives) {
    ASSERT_TRUE(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)));
    {
      const Module module(copy);
      ++loads;
      {
        const auto control = module.CreateSecurityCtrl();
        EXPECT_EQ(control->put_ServerPort(7), S_OK);
        LONG crc = 0;
        EXPECT_EQ(control->GetCRCValue(&crc), S_OK);
        auto* name = const_cast<LPOLESTR>(L"ServerPort");
        DISPID id = 0;
        EXPECT_EQ(control->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id), S_OK);
      }
      // Loaded once more, it stays until the lane unloads it.
      if (!outlives) ::LoadLibraryW(copy.c_str());
    }
    ::CoUninitialize();
  };
  const auto unload = [&](int count) {
    for (; count > 0; --count) ::FreeLibrary(::GetModuleHandleW(copy.c_str()));
  };
  const auto run = [&](int count) {
    std::vector<std::thread> lanes;
    for (int lane = 0; lane < 4; ++lane) {
      lanes.emplace_back([&, lane] {
        int left_loaded = 0;
        for (int i = 0; i < count / 4; ++i) {
          const bool outlives = (i + lane) % 3 != 0;
          std::thread(live, outlives).join();
          if (!outlives) ++left_loaded;
          if (left_loaded == 2) unload(std::exchange(left_loaded, 0));
        }
        unload(left_loaded);
      });
    }
    for (std::thread& lane : lanes) lane.join();
  };
  run(200);
  EXPECT_FALSE(IsInMemory(copy));
  const Belongings before = Present();
  loads = 0;
  run(rounds);
  const Belongings after = Present();
  EXPECT_FALSE(IsInMemory(copy));
  Print("loads on as many threads", loads, before, after);
  ExpectTheSame(before, after);
}

}  // namespace
}  // namespace quorvane::component::soak_test
