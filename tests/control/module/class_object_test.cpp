// Proves what the module hands out by its exports: the class object, its refusals, aggregation and
// locks.

#include "tests/support/component/module_under_test.h"

namespace quorvane::component::class_object_test {
namespace {

void* const kGarbage = reinterpret_cast<void*>(0x1234);

TEST(Exports, AreTheFourOfAComponentServer) {
  const Module module;
  for (const char* name :
       {"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"}) {
    EXPECT_NE(module.Export(name), nullptr) << name;
  }
  for (WORD ordinal = 1; ordinal <= 4; ++ordinal) {
    EXPECT_NE(::GetProcAddress(module.Handle(), MAKEINTRESOURCEA(ordinal)), nullptr) << ordinal;
  }
  EXPECT_EQ(::GetProcAddress(module.Handle(), MAKEINTRESOURCEA(1)),
            module.Export("DllCanUnloadNow"));
  EXPECT_EQ(::GetProcAddress(module.Handle(), MAKEINTRESOURCEA(2)),
            module.Export("DllGetClassObject"));
  EXPECT_EQ(::GetProcAddress(module.Handle(), MAKEINTRESOURCEA(3)),
            module.Export("DllRegisterServer"));
  EXPECT_EQ(::GetProcAddress(module.Handle(), MAKEINTRESOURCEA(4)),
            module.Export("DllUnregisterServer"));
}

// The file's test says which rights those are.
TEST(Image, HasInMemoryTheRightsThatItsSectionsState) {
  const FreshModule module;
  const auto* const image = reinterpret_cast<const BYTE*>(module.Get().Handle());
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS32*>(
      image + reinterpret_cast<const IMAGE_DOS_HEADER*>(image)->e_lfanew);
  const auto* const sections = reinterpret_cast<const IMAGE_SECTION_HEADER*>(headers + 1);
  ASSERT_GT(headers->FileHeader.NumberOfSections, 0);
  for (int i = 0; i < headers->FileHeader.NumberOfSections; ++i) {
    MEMORY_BASIC_INFORMATION memory{};
    ASSERT_NE(::VirtualQuery(image + sections[i].VirtualAddress, &memory, sizeof memory), 0U);
    const DWORD rights = sections[i].Characteristics;
    SCOPED_TRACE(
        std::string(reinterpret_cast<const char*>(sections[i].Name), IMAGE_SIZEOF_SHORT_NAME));
    // A page that is written to becomes the process's own.
    EXPECT_EQ((memory.Protect & (PAGE_READWRITE | PAGE_WRITECOPY)) != 0,
              (rights & IMAGE_SCN_MEM_WRITE) != 0)
        << memory.Protect;
    EXPECT_EQ(memory.Protect == PAGE_EXECUTE_READ, (rights & IMAGE_SCN_MEM_EXECUTE) != 0)
        << memory.Protect;
  }
}

TEST(ClassObject, IsRefusedForAnyOtherClass) {
  const Module module;
  void* out = kGarbage;
  EXPECT_EQ(module.GetClassObject(IID_IUnknown, IID_IClassFactory, &out),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(out, nullptr);
  out = kGarbage;
  EXPECT_EQ(module.GetClassObject(kSecurityCtrlId, IID_IClassFactory, &out),
            CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(out, nullptr);
}

TEST(ClassObject, IsRefusedWithoutAnOutPointer) {
  const Module module;
  EXPECT_EQ(module.GetClassObject(kClassId, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(ClassObject, AnswersIUnknownAndIClassFactoryOnly) {
  const Module module;
  Com<IUnknown> unknown;
  EXPECT_EQ(module.GetClassObject(kClassId, IID_IUnknown, unknown.OutVoid()), S_OK);
  EXPECT_EQ(unknown->AddRef(), 2U);
  EXPECT_EQ(unknown->Release(), 1U);
  for (const IID& id : {IID_IClassFactory2, IID_IDispatch, IID_IOleObject, kSecurityCtrlId}) {
    void* out = kGarbage;
    EXPECT_EQ(module.GetClassObject(kClassId, id, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
  }
}

TEST(ClassObject, CreatesTheControlUnderAnyOfItsIds) {
  OnApartmentThread([] {
    const Module module;
    const auto factory = module.ClassObject();
    for (const IID& id : {IID_IUnknown, IID_IDispatch, IID_IOleObject, IID_IPersistStreamInit,
                          IID_IPersistPropertyBag, kSecurityCtrlId}) {
      Com<IUnknown> control;
      EXPECT_EQ(factory->CreateInstance(nullptr, id, control.OutVoid()), S_OK);
      EXPECT_TRUE(control);
    }
    void* out = kGarbage;
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IStream, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  });
}

TEST(ClassObject, KeepsTheModuleInMemoryWhileItIsHeldOrLocked) {
  OnApartmentThread([] {
    const Module module;
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
    {
      const auto factory = module.ClassObject();
      EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "a class object that is handed out counts";
      EXPECT_EQ(factory->LockServer(TRUE), S_OK);
      EXPECT_EQ(factory->LockServer(TRUE), S_OK);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE);
    EXPECT_EQ(module.ClassObject()->LockServer(FALSE), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "one lock is left";
    EXPECT_EQ(module.ClassObject()->LockServer(FALSE), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(ClassObject, AnUnlockTooManyTakesNoLaterLockAway) {
  OnApartmentThread([] {
    const Module module;
    {
      const auto factory = module.ClassObject();
      EXPECT_EQ(factory->LockServer(FALSE), S_OK);
      EXPECT_EQ(factory->LockServer(FALSE), S_OK);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
    {
      const auto control = module.CreateControl();
      EXPECT_EQ(module.ClassObject()->LockServer(FALSE), S_OK);
      EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "a control is no lock";
    }
    EXPECT_EQ(module.ClassObject()->LockServer(TRUE), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "the lock counts from none, not from below";
    EXPECT_EQ(module.ClassObject()->LockServer(FALSE), S_OK);
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(ClassObject, KeepsTheModuleInMemoryWhileAControlLives) {
  OnApartmentThread([] {
    const Module module;
    {
      const auto control = module.CreateControl();
      EXPECT_EQ(module.CanUnloadNow(), S_FALSE);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(ClassObject, KeepsTheModuleInMemoryWhileAnEnumeratorLives) {
  OnApartmentThread([] {
    const Module module;
    Com<IEnumConnectionPoints> points;
    Com<IEnumConnections> connections;
    {
      const auto container = module.CreateControl().As<IConnectionPointContainer>();
      EXPECT_EQ(container->EnumConnectionPoints(points.Out()), S_OK);
      Com<IConnectionPoint> point;
      EXPECT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, point.Out()), S_OK);
      EXPECT_EQ(point->EnumConnections(connections.Out()), S_OK);
    }
    points.Reset();
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "the list of connections holds no control";
    ULONG fetched = 1;
    CONNECTDATA none{};
    EXPECT_EQ(connections->Next(1, &none, &fetched), S_FALSE);
    Com<IEnumConnections> copy;
    EXPECT_EQ(connections->Clone(copy.Out()), S_OK);
    connections.Reset();
    EXPECT_EQ(module.CanUnloadNow(), S_FALSE) << "its copy lives";
    copy.Reset();
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

// An outer object that answers IUnknown itself and sends every other id to what it holds inside.
class Outer final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    ++queries;
    if (IsEqualIID(id, IID_IUnknown)) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    return inner->QueryInterface(id, out);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++count; }
  ULONG STDMETHODCALLTYPE Release() override { return --count; }

  Com<IUnknown> inner;
  ULONG count = 1;
  int queries = 0;
};

TEST(Aggregation, NeedsIUnknown) {
  OnApartmentThread([] {
    const Module module;
    Outer outer;
    void* out = kGarbage;
    EXPECT_EQ(module.ClassObject()->CreateInstance(&outer, IID_IOleObject, &out),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(outer.count, 1U);
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(Aggregation, SendsEveryInterfaceToTheOuterUnknown) {
  OnApartmentThread([] {
    const Module module;
    Outer outer;
    ASSERT_EQ(module.ClassObject()->CreateInstance(&outer, IID_IUnknown, outer.inner.OutVoid()),
              S_OK);
    EXPECT_NE(outer.inner.Get(), static_cast<IUnknown*>(&outer));
    EXPECT_EQ(outer.count, 1U) << "the outer is held uncounted";
    for (const IID& id :
         {IID_IDispatch, IID_IOleObject, IID_IOleControl, IID_IOleInPlaceObject, IID_IViewObject2,
          IID_IPersistStreamInit, IID_IPersistPropertyBag, IID_IConnectionPointContainer,
          IID_IProvideClassInfo2, IID_ISupportErrorInfo, kSecurityCtrlId}) {
      Com<IUnknown> face;
      ASSERT_EQ(outer.inner->QueryInterface(id, face.OutVoid()), S_OK);
      EXPECT_EQ(outer.count, 2U);
      Com<IUnknown> identity;
      EXPECT_EQ(face->QueryInterface(IID_IUnknown, identity.OutVoid()), S_OK);
      EXPECT_EQ(identity.Get(), static_cast<IUnknown*>(&outer));
    }
    EXPECT_EQ(outer.count, 1U);
    {
      Com<IConnectionPointContainer> container;
      ASSERT_EQ(outer.inner->QueryInterface(IID_IConnectionPointContainer, container.OutVoid()),
                S_OK);
      Com<IConnectionPoint> point;
      ASSERT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, point.Out()), S_OK);
      Com<IConnectionPointContainer> back;
      ASSERT_EQ(point->GetConnectionPointContainer(back.Out()), S_OK);
      EXPECT_EQ(back.Get(), container.Get());
    }
    EXPECT_EQ(outer.count, 1U);
    outer.inner.Reset();
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

}  // namespace
}  // namespace quorvane::component::class_object_test
