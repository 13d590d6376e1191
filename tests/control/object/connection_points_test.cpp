// Proves connection points and property notifications: which ids are accepted, how sinks are told,
// and what their answers do.

#include "tests/support/component/fake_sinks.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/unknown_base.h"

namespace quorvane::component::connection_points_test {
namespace {

constexpr DISPID kServerAddress = 0x6803000D;
constexpr DISPID kServerPort = 0x68030053;

Com<IConnectionPoint> Point(const Com<ISecurityCtrl>& control, REFIID id) {
  Com<IConnectionPoint> point;
  EXPECT_EQ(control.As<IConnectionPointContainer>()->FindConnectionPoint(id, point.Out()), S_OK);
  return point;
}

template <class Body>
void WithControl(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    {
      const auto control = module.CreateSecurityCtrl();
      body(control);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK) << "nothing is left behind";
  });
}

TEST(ConnectionPoints, AcceptEveryGenerationsSourceId) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    for (const auto& generation : identities::kGenerations) {
      const GUID id = ToGuid(generation.source_id);
      const auto point = Point(control, id);
      IID told{};
      EXPECT_EQ(point->GetConnectionInterface(&told), S_OK);
      Com<IConnectionPointContainer> container;
      EXPECT_EQ(point->GetConnectionPointContainer(container.Out()), S_OK);
      EXPECT_EQ(container.Get(), control.As<IConnectionPointContainer>().Get());
      FakeEventSink sink(id);
      DWORD cookie = 0;
      EXPECT_EQ(point->Advise(&sink, &cookie), S_OK) << generation.entry;
      EXPECT_NE(cookie, 0U);
      EXPECT_EQ(sink.References(), 2U);
      EXPECT_EQ(point->Unadvise(cookie), S_OK);
      EXPECT_EQ(sink.References(), 1U);
    }
  });
}

TEST(ConnectionPoints, TakeASinkThatOnlyKnowsIDispatch) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    for (const auto& generation : identities::kGenerations) {
      FakeEventSink sink(IID_IDispatch);
      const auto point = Point(control, ToGuid(generation.source_id));
      DWORD cookie = 0;
      EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
      EXPECT_EQ(point->Unadvise(cookie), S_OK);
    }
  });
}

TEST(ConnectionPoints, RefuseASinkThatCannotTakeTheirCalls) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink property_sink;
    FakeEventSink event_sink(kSourceId);
    DWORD cookie = 77;
    EXPECT_EQ(Point(control, kSourceId)->Advise(&property_sink, &cookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(cookie, 0U);
    EXPECT_EQ(Point(control, IID_IPropertyNotifySink)->Advise(&event_sink, &cookie),
              CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(property_sink.References(), 1U);
    EXPECT_EQ(event_sink.References(), 1U);
  });
}

TEST(ConnectionPoints, AreNotFoundUnderOtherIds) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    const auto container = control.As<IConnectionPointContainer>();
    for (const IID& id : {IID_IDispatch, IID_IUnknown, kSecurityCtrlId, kClassId}) {
      auto* point = reinterpret_cast<IConnectionPoint*>(0x1234);
      EXPECT_EQ(container->FindConnectionPoint(id, &point), CONNECT_E_NOCONNECTION);
      EXPECT_EQ(point, nullptr);
    }
    EXPECT_EQ(container->FindConnectionPoint(kSourceId, nullptr), E_POINTER);
    EXPECT_EQ(container->EnumConnectionPoints(nullptr), E_POINTER);
  });
}

TEST(ConnectionPoints, AreListedOnceEach) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    Com<IEnumConnectionPoints> list;
    ASSERT_EQ(control.As<IConnectionPointContainer>()->EnumConnectionPoints(list.Out()), S_OK);
    int notify = 0;
    int source = 0;
    int others = 0;
    list->Reset();
    for (;;) {
      Com<IConnectionPoint> point;
      ULONG fetched = 0;
      if (list->Next(1, point.Out(), &fetched) != S_OK) break;
      EXPECT_EQ(fetched, 1U);
      IID id{};
      point->GetConnectionInterface(&id);
      ++(IsEqualIID(id, IID_IPropertyNotifySink) ? notify
         : IsEqualIID(id, kSourceId)             ? source
                                                 : others);
    }
    EXPECT_EQ(notify, 1);
    EXPECT_EQ(source, 1);
    EXPECT_EQ(others, 0);
    EXPECT_EQ(list->Reset(), S_OK);
    EXPECT_EQ(list->Skip(1), S_OK);
    EXPECT_EQ(list->Skip(2), S_FALSE);
    Com<IEnumConnectionPoints> copy;
    EXPECT_EQ(list->Clone(copy.Out()), S_OK);
    EXPECT_TRUE(copy);
  });
}

TEST(ConnectionPoints, ListTheirConnections) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    const auto point = Point(control, IID_IPropertyNotifySink);
    FakePropertySink first;
    FakePropertySink second;
    DWORD first_cookie = 0;
    DWORD second_cookie = 0;
    EXPECT_EQ(point->Advise(&first, &first_cookie), S_OK);
    EXPECT_EQ(point->Advise(&second, &second_cookie), S_OK);
    EXPECT_NE(first_cookie, second_cookie);
    {
      Com<IEnumConnections> list;
      ASSERT_EQ(point->EnumConnections(list.Out()), S_OK);
      CONNECTDATA data[3]{};
      ULONG fetched = 0;
      EXPECT_EQ(list->Next(3, data, &fetched), S_FALSE);
      ASSERT_EQ(fetched, 2U);
      EXPECT_EQ(data[0].dwCookie, first_cookie);
      EXPECT_EQ(data[1].dwCookie, second_cookie);
      data[0].pUnk->Release();
      data[1].pUnk->Release();
    }
    EXPECT_EQ(point->Unadvise(first_cookie), S_OK);
    EXPECT_EQ(point->Unadvise(first_cookie), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point->Unadvise(second_cookie), S_OK);
    EXPECT_EQ(point->Unadvise(0), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(first.References(), 1U);
    EXPECT_EQ(second.References(), 1U);
  });
}

TEST(ConnectionPoints, RefuseNullPointers) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    const auto point = Point(control, IID_IPropertyNotifySink);
    FakePropertySink sink;
    DWORD cookie = 0;
    EXPECT_EQ(point->Advise(nullptr, &cookie), E_POINTER);
    EXPECT_EQ(point->Advise(&sink, nullptr), E_POINTER);
    EXPECT_EQ(sink.References(), 1U);
    EXPECT_EQ(point->GetConnectionInterface(nullptr), E_POINTER);
    EXPECT_EQ(point->GetConnectionPointContainer(nullptr), E_POINTER);
    EXPECT_EQ(point->EnumConnections(nullptr), E_POINTER);
  });
}

TEST(ConnectionPoints, LetGoOfSinksThatNobodyUnadvised) {
  FakePropertySink property_sink;
  FakeEventSink event_sink(kSourceId);
  WithControl([&](const Com<ISecurityCtrl>& control) {
    DWORD cookie = 0;
    EXPECT_EQ(Point(control, IID_IPropertyNotifySink)->Advise(&property_sink, &cookie), S_OK);
    EXPECT_EQ(Point(control, kSourceId)->Advise(&event_sink, &cookie), S_OK);
  });
  EXPECT_EQ(property_sink.References(), 1U);
  EXPECT_EQ(event_sink.References(), 1U);
  EXPECT_EQ(event_sink.events, 0) << "the control has no events";
}

TEST(Notification, TellsEachSinkTheDispatchIdAfterTheValueIsStored) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink sink;
    SHORT seen = 0;
    sink.on_changed = [&] { control->get_ServerPort(&seen); };
    DWORD cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(control->put_ServerPort(81), S_OK);
    EXPECT_EQ(sink.changed, (std::vector<DISPID>{kServerPort}));
    EXPECT_EQ(seen, 81);
    EXPECT_EQ(sink.edit_requests, 0);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(control->put_ServerPort(82), S_OK);
    EXPECT_EQ(sink.changed.size(), 1U);
  });
}

TEST(Notification, UsesEachMembersOwnDispatchId) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink sink;
    DWORD cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    const Bstr text(L"x");
    EXPECT_EQ(control->put_ServerAddress(text.Get()), S_OK);
    EXPECT_EQ(control->put_ServerPort(1), S_OK);
    EXPECT_EQ(control->put_ServerFile(text.Get()), S_OK);
    EXPECT_EQ(control->put_UseProxy(VARIANT_TRUE), S_OK);
    EXPECT_EQ(control->put_ProxyServer(text.Get()), S_OK);
    EXPECT_EQ(control->put_UserName(text.Get()), S_OK);
    EXPECT_EQ(control->put_Password(text.Get()), S_OK);
    EXPECT_EQ(sink.changed, (std::vector<DISPID>{0x6803000D, 0x68030053, 0x6803000C, 0x68030048,
                                                 0x68030047, 0x68030046, 0x68030045}));
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
  });
}

TEST(Notification, FailureReachesTheCallerOfThePutWithTheValueStored) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink failing;
    FakePropertySink behind;
    failing.answer = E_FAIL;
    DWORD failing_cookie = 0;
    DWORD behind_cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&failing, &failing_cookie), S_OK);
    EXPECT_EQ(point->Advise(&behind, &behind_cookie), S_OK);
    EXPECT_TRUE(FAILED(control->put_ServerPort(83)));
    SHORT port = 0;
    EXPECT_EQ(control->get_ServerPort(&port), S_OK);
    EXPECT_EQ(port, 83);
    EXPECT_EQ(behind.changed.size(), 1U) << "the remaining sinks are still told";
    EXPECT_EQ(point->Unadvise(failing_cookie), S_OK);
    EXPECT_EQ(point->Unadvise(behind_cookie), S_OK);
  });
}

// Leaves an error object as a sink does that was written with a language's own errors.
void LeaveError(const wchar_t* source, const wchar_t* description) {
  Com<ICreateErrorInfo> maker;
  ASSERT_EQ(::CreateErrorInfo(maker.Out()), S_OK);
  maker->SetSource(const_cast<wchar_t*>(source));
  maker->SetDescription(const_cast<wchar_t*>(description));
  ::SetErrorInfo(0, maker.As<IErrorInfo>().Get());
}

struct Told {
  HRESULT result = S_OK;
  std::wstring source;
  std::wstring description;
};

// What the caller of a put is told when a sink answers so.
Told PutWithSink(const Com<ISecurityCtrl>& control, FakePropertySink& sink) {
  DWORD cookie = 0;
  const auto point = Point(control, IID_IPropertyNotifySink);
  EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
  Told told;
  told.result = control->put_ServerPort(83);
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  Com<IErrorInfo> error;
  Bstr text;
  if (::GetErrorInfo(0, error.Out()) != S_OK) return told;
  EXPECT_EQ(error->GetSource(text.Out()), S_OK);
  told.source = text.Text();
  EXPECT_EQ(error->GetDescription(text.Out()), S_OK);
  told.description = text.Text();
  return told;
}

TEST(Notification, AFailureKeepsItsNumberSourceAndDescription) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink sink;
    sink.answer = static_cast<HRESULT>(0x800A01A8);
    sink.on_changed = [] { LeaveError(L"Form1.Sink", L"Object required"); };
    const Told told = PutWithSink(control, sink);
    EXPECT_EQ(told.result, static_cast<HRESULT>(0x800A01A8));
    EXPECT_EQ(told.source, L"Form1.Sink");
    EXPECT_EQ(told.description, L"Object required");
  });
}

TEST(Notification, AFailureWithoutAnErrorObjectIsToldByItsNumber) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink sink;
    sink.answer = E_OUTOFMEMORY;
    const Told told = PutWithSink(control, sink);
    EXPECT_EQ(told.result, static_cast<HRESULT>(0x800A0007)) << "7, not 6, which is overflow";
    EXPECT_EQ(told.description, L"Out of memory");
    sink.answer = DISP_E_OVERFLOW;
    EXPECT_EQ(PutWithSink(control, sink).result, static_cast<HRESULT>(0x800A0006));
    sink.answer = E_FAIL;
    EXPECT_EQ(PutWithSink(control, sink).result, E_FAIL);
    sink.answer = static_cast<HRESULT>(0x800A0035);
    EXPECT_EQ(PutWithSink(control, sink).description, L"File not found");
  });
}

TEST(Notification, AFailureIsToldByTheErrorObjectOfItsOwnSink) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink content;
    content.on_changed = [] { LeaveError(L"Form1.Content", L"all is well"); };
    DWORD cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&content, &cookie), S_OK);
    FakePropertySink failing;
    failing.answer = DISP_E_OVERFLOW;
    Told told = PutWithSink(control, failing);
    EXPECT_EQ(told.source, L"");
    EXPECT_EQ(told.description, L"Overflow");
    failing.on_changed = [] { LeaveError(L"Form1.Sink", L""); };
    told = PutWithSink(control, failing);
    EXPECT_EQ(told.source, L"Form1.Sink");
    EXPECT_EQ(told.description, L"Overflow") << "which has one of its own";
    content.answer = E_OUTOFMEMORY;
    told = PutWithSink(control, failing);
    EXPECT_EQ(told.source, L"Form1.Content") << "the first that fails";
    EXPECT_EQ(told.result, static_cast<HRESULT>(0x800A0007));
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
  });
}

// An error object that tells nothing, and leaves something in the out pointer all the same.
class SilentError final : public FakeUnknown<IErrorInfo> {
 public:
  HRESULT STDMETHODCALLTYPE GetGUID(GUID*) override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR* out) override { return Refuse(out); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* out) override { return Refuse(out); }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* out) override { return Refuse(out); }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD*) override { return E_FAIL; }

 private:
  void* Find(REFIID) override { return this; }
  static HRESULT Refuse(BSTR* out) {
    *out = reinterpret_cast<BSTR>(0x1234);
    return E_FAIL;
  }
};

TEST(Notification, AFailureBearsAnErrorObjectThatTellsNothing) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    SilentError silent;
    FakePropertySink sink;
    sink.answer = DISP_E_OVERFLOW;
    sink.on_changed = [&] { ::SetErrorInfo(0, &silent); };
    const Told told = PutWithSink(control, sink);
    EXPECT_EQ(told.result, static_cast<HRESULT>(0x800A0006));
    EXPECT_EQ(told.source, L"");
    EXPECT_EQ(told.description, L"Overflow");
    EXPECT_EQ(silent.References(), 1U);
  });
}

TEST(Notification, TakesNotImplementedForNotInterested) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink sink;
    sink.answer = E_NOTIMPL;
    DWORD cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(control->put_ServerPort(84), S_OK);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
  });
}

TEST(Notification, LetsASinkUnadviseItselfAndPutAgain) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink leaving;
    FakePropertySink staying;
    DWORD leaving_cookie = 0;
    DWORD staying_cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&leaving, &leaving_cookie), S_OK);
    EXPECT_EQ(point->Advise(&staying, &staying_cookie), S_OK);
    leaving.on_changed = [&] {
      EXPECT_EQ(point->Unadvise(leaving_cookie), S_OK);
      EXPECT_EQ(control->put_ServerAddress(Bstr(L"nested").Get()), S_OK);
    };
    EXPECT_EQ(control->put_ServerPort(85), S_OK);
    EXPECT_EQ(leaving.changed, (std::vector<DISPID>{kServerPort}));
    EXPECT_EQ(staying.changed, (std::vector<DISPID>{kServerAddress, kServerPort}));
    EXPECT_EQ(leaving.References(), 1U);
    EXPECT_EQ(point->Unadvise(staying_cookie), S_OK);
  });
}

TEST(Notification, IsNotSilencedByFrozenEventsNorSentByLoading) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    FakePropertySink sink;
    DWORD cookie = 0;
    const auto point = Point(control, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(control.As<IPersistStreamInit>()->InitNew(), S_OK);
    EXPECT_TRUE(sink.changed.empty());
    EXPECT_EQ(control.As<IOleControl>()->FreezeEvents(TRUE), S_OK);
    EXPECT_EQ(control->put_ServerPort(86), S_OK);
    EXPECT_EQ(sink.changed.size(), 1U);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
  });
}

TEST(Notification, GoesToTheSinksOfThisControlOnly) {
  WithControl([](const Com<ISecurityCtrl>& control) {
    const Module module;
    const auto other = module.CreateSecurityCtrl();
    FakePropertySink sink;
    DWORD cookie = 0;
    const auto point = Point(other, IID_IPropertyNotifySink);
    EXPECT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_EQ(control->put_ServerPort(87), S_OK);
    EXPECT_TRUE(sink.changed.empty());
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
  });
}

}  // namespace
}  // namespace quorvane::component::connection_points_test
