// Proves that a host outlives exhausted memory: every call of the module that needs some tells of
// it, on a thread that never met an exception before as on any other, and nothing is lost.

#include <algorithm>
#include <functional>
#include <optional>

#include "tests/support/component/failing_allocations.h"
#include "tests/support/component/fake_bags.h"
#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_stream.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"

namespace quorvane::component {
namespace {

constexpr HRESULT kOutOfMemoryNumber = static_cast<HRESULT>(0x800A0007);

// A copy of the module that no thread has used: its exception handling has no variables yet.
class FreshModule {
 public:
  FreshModule() : copy_(folder_.File(L"fresh.ocx")) {
    EXPECT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy_.c_str(), TRUE));
    module_.emplace(copy_);
  }
  const Module& Get() const { return *module_; }

 private:
  TemporaryFolder folder_;
  std::wstring copy_;
  std::optional<Module> module_;
};

TEST(Exhaustion, CreationSaysSoFromTheFirstAllocationOn) {
  OnApartmentThread([] {
    const FreshModule module;
    const auto factory = module.Get().ClassObject();
    void* control = &control;
    {
      const FailingAllocations failing(module.Get().Handle(), 1);
      EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, &control), E_OUTOFMEMORY);
      EXPECT_GT(FailingAllocations::Failures(), 0);
    }
    EXPECT_EQ(control, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, &control), S_OK)
        << "with memory again";
    static_cast<IUnknown*>(control)->Release();
  });
}

TEST(Exhaustion, CreationSaysSoOnThreadAfterThread) {
  OnApartmentThread([] {
    const FreshModule module;
    const FailingAllocations failing(module.Get().Handle(), 1);
    for (int i = 0; i < 100; ++i) {
      OnApartmentThread([&] {
        void* control = nullptr;
        for (int again = 0; again < 3; ++again) {
          EXPECT_EQ(module.Get().ClassObject()->CreateInstance(nullptr, IID_IUnknown, &control),
                    E_OUTOFMEMORY);
        }
      });
    }
    EXPECT_EQ(module.Get().CanUnloadNow(), S_OK);
  });
}

// Runs the call with the n-th allocation and all later ones failing, n = 1, 2 ... until none does;
// each time on a fresh thread. Each failed run gives one of the stated results.
void FailFromEachAllocationOn(std::function<HRESULT(const Com<ISecurityCtrl>&)> call,
                              std::initializer_list<HRESULT> stated) {
  const FreshModule module;
  int failures = 1;
  int runs = 0;
  for (int first = 1; failures > 0; ++first, ++runs) {
    ASSERT_LT(runs, 200);
    OnApartmentThread([&] {
      const auto control = module.Get().CreateSecurityCtrl();
      PutValues(control, kOthers);
      HRESULT result = E_UNEXPECTED;
      {
        const FailingAllocations failing(module.Get().Handle(), first);
        result = call(control);
        failures = FailingAllocations::Failures();
      }
      if (failures == 0) {
        EXPECT_EQ(result, S_OK);
      } else {
        EXPECT_NE(std::find(stated.begin(), stated.end(), result), stated.end())
            << "allocation " << first << " gives " << std::hex << result;
      }
    });
  }
  EXPECT_GT(runs, 1) << "the call needs memory";
  OnApartmentThread([&] { EXPECT_EQ(module.Get().CanUnloadNow(), S_OK); });
}

TEST(Exhaustion, EveryMemberSaysSo) {
  FailFromEachAllocationOn(
      [](const auto& control) {
        Bstr text;
        const HRESULT result = control->get_ServerAddress(text.Out());
        EXPECT_EQ(result == S_OK, text.Get() != nullptr);
        return result;
      },
      {kOutOfMemoryNumber});
  const Bstr text(std::wstring(1000, L'x'));
  FailFromEachAllocationOn(
      [&](const auto& control) { return control->put_ServerAddress(text.Get()); },
      {kOutOfMemoryNumber});
}

TEST(Exhaustion, SavingAndLoadingSaySo) {
  FakeStream saved;
  FailFromEachAllocationOn(
      [&](const auto& control) {
        saved.content.clear();
        return control.template As<IPersistStreamInit>()->Save(&saved, TRUE);
      },
      {E_OUTOFMEMORY, S_OK});  // the event of writing drops its errors
  FailFromEachAllocationOn(
      [&](const auto& control) {
        saved.position = 0;
        return control.template As<IPersistStreamInit>()->Load(&saved);
      },
      {E_OUTOFMEMORY, S_OK});
}

TEST(Exhaustion, ConnectingAndListingSaySo) {
  FakePropertySink sink;
  FailFromEachAllocationOn(
      [&](const auto& control) {
        Com<IConnectionPoint> point;
        HRESULT result = control.template As<IConnectionPointContainer>()->FindConnectionPoint(
            IID_IPropertyNotifySink, point.Out());
        if (FAILED(result)) return result;
        DWORD cookie = 0;
        result = point->Advise(&sink, &cookie);
        if (FAILED(result)) return result;
        Com<IEnumConnections> all;
        result = point->EnumConnections(all.Out());
        if (FAILED(result)) return result;
        return point->Unadvise(cookie);
      },
      {E_OUTOFMEMORY});
  EXPECT_EQ(sink.References(), 1U);
}

}  // namespace
}  // namespace quorvane::component
