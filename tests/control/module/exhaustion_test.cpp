// Proves that a host outlives exhausted memory: every call of the module that needs some tells of
// it, on a thread that never met an exception before as on any other, and nothing is lost.

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "tests/support/component/failing_allocations.h"
#include "tests/support/component/fake_bags.h"
#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/fake_storage.h"
#include "tests/support/component/fake_stream.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"

namespace quorvane::component::exhaustion_test {
namespace {

constexpr HRESULT kOutOfMemoryNumber = static_cast<HRESULT>(0x800A0007);

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

TEST(Exhaustion, MoreThreadsAtOnceThanTheReserveServesWaitForEachOther) {
  const FreshModule module;
  constexpr int kThreads = 40;
  const HANDLE all_done = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::atomic<int> refused{0};
  std::atomic<int> done{0};
  std::vector<std::thread> threads;
  {
    const auto factory = module.Get().ClassObject();
    const FailingAllocations failing(module.Get().Handle(), 1);
    for (int i = 0; i < kThreads; ++i) {
      threads.emplace_back([&] {
        void* control = nullptr;
        for (int again = 0; again < 20; ++again)
          refused += factory->CreateInstance(nullptr, IID_IUnknown, &control) == E_OUTOFMEMORY;
        // None ends before the others.
        if (++done == kThreads) ::SetEvent(all_done);
        ::WaitForSingleObject(all_done, INFINITE);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  EXPECT_EQ(refused, kThreads * 20);
  ::CloseHandle(all_done);
  OnApartmentThread([&] { EXPECT_EQ(module.Get().CanUnloadNow(), S_OK); });
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
  for (const auto get : {&ISecurityCtrl::get_ServerAddress, &ISecurityCtrl::get_ServerFile,
                         &ISecurityCtrl::get_ProxyServer, &ISecurityCtrl::get_UserName,
                         &ISecurityCtrl::get_Password}) {
    FailFromEachAllocationOn(
        [get](const auto& control) {
          Bstr text;
          const HRESULT result = (control.Get()->*get)(text.Out());
          EXPECT_EQ(result == S_OK, text.Get() != nullptr);
          return result;
        },
        {kOutOfMemoryNumber});
  }
  const Bstr text(std::wstring(1000, L'x'));
  for (const auto put : {&ISecurityCtrl::put_ServerAddress, &ISecurityCtrl::put_ServerFile,
                         &ISecurityCtrl::put_ProxyServer, &ISecurityCtrl::put_UserName,
                         &ISecurityCtrl::put_Password}) {
    FailFromEachAllocationOn(
        [&text, put](const auto& control) { return (control.Get()->*put)(text.Get()); },
        {kOutOfMemoryNumber});
  }
  FailFromEachAllocationOn(
      [](const auto& control) {
        LONG crc = 77;
        const HRESULT result = control->GetCRCValue(&crc);
        EXPECT_EQ(result == S_OK, crc != 0);
        return result;
      },
      {kOutOfMemoryNumber});
}

TEST(Exhaustion, LateBoundCallsSaySo) {
  DISPPARAMS none{};
  FailFromEachAllocationOn(
      [&](const auto& control) {
        Variant result;
        return control->Invoke(0x6803000D, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, result.Get(),
                               nullptr, nullptr);
      },
      {E_OUTOFMEMORY, DISP_E_EXCEPTION});
  FailFromEachAllocationOn(
      [](const auto& control) {
        auto* name = const_cast<LPOLESTR>(L"ServerPort");
        DISPID id = 0;
        return control->GetIDsOfNames(IID_NULL, &name, 1, 0, &id);
      },
      {E_OUTOFMEMORY});
  FailFromEachAllocationOn(
      [](const auto& control) {
        Com<ITypeInfo> type;
        const HRESULT result = control->GetTypeInfo(0, 0, type.Out());
        EXPECT_EQ(result == S_OK, static_cast<bool>(type));
        return result;
      },
      {E_OUTOFMEMORY});
}

TEST(Exhaustion, TheClassesNameAndDescriptionSaySo) {
  FailFromEachAllocationOn(
      [](const auto& control) {
        LPOLESTR name = nullptr;
        const HRESULT result =
            control.template As<IOleObject>()->GetUserType(USERCLASSTYPE_FULL, &name);
        ::CoTaskMemFree(name);
        return result;
      },
      {E_OUTOFMEMORY});
  FailFromEachAllocationOn(
      [](const auto& control) {
        Com<ITypeInfo> type;
        return control.template As<IProvideClassInfo>()->GetClassInfo(type.Out());
      },
      {E_OUTOFMEMORY});
}

// The events of a bag drop their errors.
TEST(Exhaustion, LoadingAndSavingABagSucceed) {
  FailFromEachAllocationOn(
      [](const auto& control) {
        FakeBag bag;
        bag.entries = {{L"ServerAddress", Variant(L"a name of some length.example.com")}};
        return control.template As<IPersistPropertyBag>()->Load(&bag, nullptr);
      },
      {S_OK});
  FailFromEachAllocationOn(
      [](const auto& control) {
        FakeBag bag;
        return control.template As<IPersistPropertyBag>()->Save(&bag, TRUE, TRUE);
      },
      {S_OK});
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
  FailFromEachAllocationOn(
      [](const auto& control) {
        ULARGE_INTEGER size{};
        return control.template As<IPersistStreamInit>()->GetSizeMax(&size);
      },
      {E_OUTOFMEMORY, S_OK});
}

// The events drop their errors: on a thread whose record was never made, too.
TEST(Exhaustion, InitNewSucceedsWithoutTheThreadsRecord) {
  const FreshModule module;
  OnApartmentThread([&] {
    const auto control = module.Get().CreateControl();
    const FailingAllocations failing(module.Get().Handle(), 1);
    EXPECT_EQ(control.As<IPersistStreamInit>()->InitNew(), S_OK);
    EXPECT_GT(FailingAllocations::Failures(), 0);
  });
  OnApartmentThread([&] { EXPECT_EQ(module.Get().CanUnloadNow(), S_OK); });
}

// All that needs memory is done before the storage is touched.
TEST(Exhaustion, SavingAndLoadingAStorageSaySo) {
  FakeStorage storage;
  FailFromEachAllocationOn(
      [&](const auto& control) {
        const auto persistence = control.template As<IPersistStorage>();
        storage.medium.calls = 0;
        const HRESULT result = persistence->Save(&storage, TRUE);
        EXPECT_EQ(storage.medium.calls > 0, result == S_OK);
        EXPECT_TRUE(storage.IsFree());
        return result;
      },
      {E_OUTOFMEMORY, S_OK});  // the event of writing drops its errors
  FailFromEachAllocationOn(
      [&](const auto& control) {
        const auto persistence = control.template As<IPersistStorage>();
        const HRESULT result = persistence->Load(&storage);
        if (result == S_OK) {
          EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
        }
        EXPECT_TRUE(storage.IsFree());
        return result;
      },
      {E_OUTOFMEMORY, S_OK});
}

TEST(Exhaustion, ListingFormatsSaysSo) {
  FailFromEachAllocationOn(
      [&](const auto& control) {
        Com<IEnumFORMATETC> formats;
        return control.template As<IDataObject>()->EnumFormatEtc(DATADIR_GET, formats.Out());
      },
      {E_OUTOFMEMORY});
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
        Com<IEnumConnections> copy;
        result = all->Clone(copy.Out());
        if (FAILED(result)) return result;
        return point->Unadvise(cookie);
      },
      {E_OUTOFMEMORY});
  EXPECT_EQ(sink.References(), 1U);
  FailFromEachAllocationOn(
      [](const auto& control) {
        Com<IEnumConnectionPoints> all;
        return control.template As<IConnectionPointContainer>()->EnumConnectionPoints(all.Out());
      },
      {E_OUTOFMEMORY});
}

}  // namespace
}  // namespace quorvane::component::exhaustion_test
