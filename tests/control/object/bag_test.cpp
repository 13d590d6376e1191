// Proves persistence through the container's property bag: what is asked for, what each kind of bag
// answers, what a failure leaves, and what stands in the saved form.

#include "tests/support/component/fake_bags.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"
#include "tests/support/host_setting_windows.h"

namespace quorvane::component::bag_test {
namespace {

using Missing = FakeBag::Missing;
using Hint = FakeBag::Hint;

// A control with its settings on a fresh thread.
template <class Body>
void WithControl(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    const auto persistence = control.As<IPersistPropertyBag>();
    body(control, persistence);
  });
}

void FillBag(FakeBag& bag) {
  bag.entries = {
      {L"ServerAddress", Variant(L"host")},     {L"ServerPort", Variant::Integer16(8081)},
      {L"ServerFile", Variant(L"/form.cgi")},   {L"UseProxy", Variant::Boolean(true)},
      {L"ProxyServer", Variant(L"proxy:3128")}, {L"Username", Variant(L"user")},
      {L"Password", Variant(L"p\u00E4ss")}};
}

TEST(BagLoad, ReadsTheSevenEntriesWithTheTypesOfTheirDefaults) {
  WithControl([](auto& control, auto& persistence) {
    FakeBag bag;
    FillBag(bag);
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(bag.reads,
              (std::vector<std::wstring>{L"ServerAddress", L"ServerPort", L"ServerFile",
                                         L"UseProxy", L"ProxyServer", L"Username", L"Password"}));
    EXPECT_EQ(bag.hints,
              (std::vector<VARTYPE>{VT_BSTR, VT_I2, VT_BSTR, VT_BOOL, VT_BSTR, VT_BSTR, VT_BSTR}));
    EXPECT_EQ(bag.References(), 1U) << "the bag is not kept";
  });
}

TEST(BagLoad, TakesTheDefaultsWhateverWayTheBagSaysMissing) {
  for (const Missing missing :
       {Missing::kInvalidArgument, Missing::kParameterNotFound, Missing::kSucceedsWithEmpty}) {
    for (const Hint hint : {Hint::kIgnored, Hint::kObeyed}) {
      WithControl([&](auto& control, auto& persistence) {
        PutValues(control, kOthers);
        FakeBag bag(missing, hint);
        EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
        EXPECT_EQ(ValuesOf(control), kDefaults);
      });
    }
  }
}

TEST(BagLoad, ConvertsWhateverTypeComes) {
  WithControl([](auto& control, auto& persistence) {
    FakeBag bag;
    bag.entries = {{L"ServerAddress", Variant::Integer32(5)},
                   {L"ServerPort", Variant(L"81")},
                   {L"UseProxy", Variant(L"True")},
                   {L"Username", Variant::Boolean(true)}};
    bag.entries[L"ServerFile"].Get()->vt = VT_R8;
    bag.entries[L"ServerFile"].Get()->dblVal = 2.5;
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(ValuesOf(control), (Values{L"5", 81, L"2.5", VARIANT_TRUE, L"", L"True", L""}));
  });
}

TEST(BagLoad, ConvertsTheSameInEveryHost) {
  testing::UnderEveryHostSetting([] {
    WithControl([](auto& control, auto& persistence) {
      FakeBag bag;
      bag.entries = {{L"ServerAddress", Variant(L"")}, {L"ServerPort", Variant(L"12345.5")}};
      VARIANT* const money = bag.entries[L"ServerAddress"].Get();
      ::VariantClear(money);
      money->vt = VT_CY;
      money->cyVal.int64 = 1234567891234;
      bag.entries[L"ServerFile"].Get()->vt = VT_R8;
      bag.entries[L"ServerFile"].Get()->dblVal = 1e22;
      bag.entries[L"ProxyServer"].Get()->vt = VT_R8;
      bag.entries[L"ProxyServer"].Get()->dblVal = 123456789;
      EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
      EXPECT_EQ(ValuesOf(control), (Values{L"123456789.1234", 12346, L"1E+22", VARIANT_FALSE,
                                           L"123456789", L"", L""}));
    });
  });
}

TEST(BagLoad, TakesNumbersOfEveryWidthForThePort) {
  const auto loads = [](VARTYPE type, auto set, SHORT expected) {
    WithControl([&](auto& control, auto& persistence) {
      FakeBag bag;
      VARIANT* value = bag.entries[L"ServerPort"].Get();
      value->vt = type;
      set(value);
      EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
      EXPECT_EQ(ValuesOf(control).server_port, expected) << type;
    });
  };
  loads(
      VT_I1, [](VARIANT* v) { v->cVal = -5; }, -5);
  loads(
      VT_UI1, [](VARIANT* v) { v->bVal = 200; }, 200);
  loads(
      VT_UI2, [](VARIANT* v) { v->uiVal = 9000; }, 9000);
  loads(
      VT_I4, [](VARIANT* v) { v->lVal = 9001; }, 9001);
  loads(
      VT_UI4, [](VARIANT* v) { v->ulVal = 9002; }, 9002);
  loads(
      VT_I8, [](VARIANT* v) { v->llVal = 9003; }, 9003);
  loads(
      VT_INT, [](VARIANT* v) { v->intVal = 9004; }, 9004);
  loads(
      VT_R4, [](VARIANT* v) { v->fltVal = 2.5F; }, 2);
  loads(
      VT_R8, [](VARIANT* v) { v->dblVal = 3.5; }, 4);
  loads(
      VT_CY, [](VARIANT* v) { v->cyVal.int64 = 90050000; }, 9005);
  loads(
      VT_BOOL, [](VARIANT* v) { v->boolVal = VARIANT_TRUE; }, -1);
}

TEST(BagLoad, StopsAtAnEntryThatCannotBeConvertedAndStillSucceeds) {
  for (const wchar_t* port : {L"eighty", L"70000", L""}) {
    for (const Hint hint : {Hint::kIgnored, Hint::kObeyed}) {
      WithControl([&](auto& control, auto& persistence) {
        PutValues(control, kOthers);
        FakeBag bag(Missing::kInvalidArgument, hint);
        bag.entries = {{L"ServerAddress", Variant(L"new")}, {L"ServerPort", Variant(port)}};
        EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
        Values expected = kOthers;
        expected.server_address = L"new";
        EXPECT_EQ(ValuesOf(control), expected);
        EXPECT_EQ(bag.reads.size(), 2U);
      });
    }
  }
}

TEST(BagLoad, StopsAtEachReadThatFailsInTurn) {
  for (int n = 1; n <= 7; ++n) {
    WithControl([n](auto& control, auto& persistence) {
      PutValues(control, kOthers);
      FakeBag bag;
      bag.failing_call = n;
      bag.failure = E_UNEXPECTED;
      EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
      EXPECT_EQ(bag.reads.size(), static_cast<std::size_t>(n));
      Values expected = kOthers;
      if (n > 1) expected.server_address = L"";
      if (n > 2) expected.server_port = 80;
      if (n > 3) expected.server_file = L"";
      if (n > 4) expected.use_proxy = VARIANT_FALSE;
      if (n > 5) expected.proxy_server = L"";
      if (n > 6) expected.user_name = L"";
      EXPECT_EQ(ValuesOf(control), expected) << n;
    });
  }
}

TEST(BagLoad, HandsTheContainersErrorLogToEachRead) {
  WithControl([](auto&, auto& persistence) {
    FakeErrorLog log;
    FakeBag bag;
    EXPECT_EQ(persistence->Load(&bag, &log), S_OK);
    EXPECT_EQ(bag.logs, std::vector<IErrorLog*>(7, &log));
    EXPECT_EQ(log.References(), 1U) << "the log is not kept";
    EXPECT_EQ(log.errors, 0) << "a missing entry is no fault";
    FakeBag without_log;
    EXPECT_EQ(persistence->Load(&without_log, nullptr), S_OK);
    EXPECT_EQ(without_log.logs, std::vector<IErrorLog*>(7, nullptr));
  });
}

TEST(BagLoad, RefusesANullBag) {
  WithControl([](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->Load(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(ValuesOf(control), kOthers);
  });
}

TEST(BagLoad, MayBeRepeated) {
  WithControl([](auto& control, auto& persistence) {
    FakeBag bag;
    FillBag(bag);
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    bag.entries[L"ServerAddress"] = Variant(L"again");
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(ValuesOf(control).server_address, L"again");
  });
}

TEST(BagLoad, IsKeptFromALaterInitNew) {
  WithControl([](auto& control, auto& persistence) {
    FakeBag bag;
    FillBag(bag);
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(persistence->InitNew(), E_UNEXPECTED);
    EXPECT_EQ(ValuesOf(control), kOthers);
  });
}

TEST(BagSave, LeavesDefaultsOut) {
  WithControl([](auto& control, auto& persistence) {
    PutValues(control, kDefaults);
    FakeBag bag;
    EXPECT_EQ(persistence->Save(&bag, TRUE, TRUE), S_OK);
    EXPECT_TRUE(bag.entries.empty()) << "also when all properties are asked for";
  });
}

TEST(BagSave, StoresEachFieldInItsOwnType) {
  WithControl([](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    FakeBag bag;
    EXPECT_EQ(persistence->Save(&bag, TRUE, FALSE), S_OK);
    EXPECT_EQ(bag.entries.size(), 7U);
    EXPECT_EQ(bag.entries[L"ServerAddress"].Text(), L"host");
    EXPECT_EQ(bag.entries[L"ServerPort"]->vt, VT_I2);
    EXPECT_EQ(bag.entries[L"ServerPort"]->iVal, 8081);
    EXPECT_EQ(bag.entries[L"UseProxy"]->vt, VT_BOOL);
    EXPECT_EQ(bag.entries[L"UseProxy"]->boolVal, VARIANT_TRUE);
    EXPECT_EQ(bag.entries[L"Username"].Text(), L"user");
    EXPECT_EQ(bag.entries[L"Password"].Text(), L"p\u00E4ss");
    EXPECT_EQ(bag.References(), 1U);
  });
}

TEST(BagSave, StoresPortZeroOfANewControl) {
  WithControl([](auto& control, auto& persistence) {
    EXPECT_EQ(persistence->InitNew(), S_OK);
    FakeBag bag;
    EXPECT_EQ(persistence->Save(&bag, TRUE, TRUE), S_OK);
    ASSERT_EQ(bag.entries.size(), 1U);
    EXPECT_EQ(bag.entries[L"ServerPort"]->iVal, 0);
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(ValuesOf(control).server_port, 0);
  });
}

TEST(BagSave, WritesARawOneInUseProxyAsItIsAndLoadsItAsTrue) {
  WithControl([](auto& control, auto& persistence) {
    EXPECT_EQ(control->put_UseProxy(1), S_OK);
    FakeBag bag;
    EXPECT_EQ(persistence->Save(&bag, TRUE, TRUE), S_OK);
    EXPECT_EQ(bag.entries[L"UseProxy"]->vt, VT_BOOL);
    EXPECT_EQ(bag.entries[L"UseProxy"]->boolVal, 1) << "the present value";
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(ValuesOf(control).use_proxy, VARIANT_TRUE);
  });
}

TEST(BagSave, LeavesLaterFieldsOutAtEachWriteThatFailsInTurnAndStillSucceeds) {
  for (int n = 1; n <= 7; ++n) {
    WithControl([n](auto& control, auto& persistence) {
      PutValues(control, kOthers);
      FakeBag bag;
      bag.failing_call = n;
      EXPECT_EQ(persistence->Save(&bag, TRUE, TRUE), S_OK);
      EXPECT_EQ(bag.entries.size(), static_cast<std::size_t>(n - 1));
    });
  }
}

TEST(BagSave, RefusesANullBag) {
  WithControl([](auto&, auto& persistence) {
    EXPECT_EQ(persistence->Save(nullptr, TRUE, TRUE), E_POINTER);
  });
}

TEST(Dirtiness, FollowsPutsLoadsAndSavesOfThisControl) {
  WithControl([](auto& control, auto& persistence) {
    const auto stream = control.template As<IPersistStreamInit>();
    EXPECT_EQ(persistence->InitNew(), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_FALSE);
    EXPECT_EQ(control->put_ServerPort(5), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_OK);
    FakeBag bag;
    EXPECT_EQ(persistence->Save(&bag, FALSE, TRUE), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_OK) << "saved without clearing";
    EXPECT_EQ(persistence->Save(&bag, TRUE, TRUE), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_FALSE);
    EXPECT_EQ(control->put_ServerPort(6), S_OK);
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_FALSE);
  });
}

TEST(Dirtiness, StaysWhereTheContainerPutsFromWithinItsBag) {
  WithControl([](auto& control, auto& persistence) {
    const auto stream = control.template As<IPersistStreamInit>();
    FakeBag bag;
    FillBag(bag);
    bag.on_call = [&control] { EXPECT_EQ(control->put_ServerPort(9), S_OK); };
    EXPECT_EQ(persistence->Load(&bag, nullptr), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_OK);
    EXPECT_EQ(persistence->Save(&bag, TRUE, FALSE), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_OK);
    bag.on_call = nullptr;
    EXPECT_EQ(persistence->Save(&bag, TRUE, FALSE), S_OK);
    EXPECT_EQ(stream->IsDirty(), S_FALSE);
  });
}

TEST(Dirtiness, IsOfTheControlThatWasPutNotOfTheThread) {
  OnApartmentThread([] {
    const Module module;
    const auto first = module.CreateSecurityCtrl();
    const auto second = module.CreateSecurityCtrl();
    EXPECT_EQ(first->put_ServerPort(5), S_OK);
    EXPECT_EQ(first.As<IPersistStreamInit>()->IsDirty(), S_OK);
    EXPECT_EQ(second.As<IPersistStreamInit>()->IsDirty(), S_FALSE);
  });
}

}  // namespace
}  // namespace quorvane::component::bag_test
