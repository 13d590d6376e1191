// Proves the rules of one COM object: every generation's id gives the present interface, unknown
// ids are refused.

#include "tests/support/component/module_under_test.h"
// Behind the headers of the support:
#include <docobj.h>
#include <objsafe.h>

namespace quorvane::component::identity_test {
namespace {

TEST(Identity, AnswersEveryGenerationsInterfaceIdWithThePresentInterface) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    for (const auto& generation : identities::kGenerations) {
      Com<IUnknown> face;
      EXPECT_EQ(control->QueryInterface(ToGuid(generation.interface_id), face.OutVoid()), S_OK)
          << generation.entry;
      EXPECT_EQ(static_cast<void*>(face.Get()), static_cast<void*>(control.Get()))
          << generation.entry;
    }
    EXPECT_EQ(static_cast<void*>(control.As<IDispatch>().Get()), static_cast<void*>(control.Get()));
  });
}

TEST(Identity, AnswersWhatContainersAskFor) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateControl();
    for (const IID& id :
         {IID_IUnknown, IID_IDispatch, IID_ISupportErrorInfo, IID_IProvideClassInfo,
          IID_IProvideClassInfo2, IID_IConnectionPointContainer, IID_IPersist, IID_IPersistStream,
          IID_IPersistStreamInit, IID_IPersistStorage, IID_IPersistPropertyBag, IID_IDataObject,
          IID_IOleObject, IID_IOleControl, IID_IOleWindow, IID_IOleInPlaceObject,
          IID_IOleInPlaceActiveObject, IID_IViewObject, IID_IViewObject2}) {
      Com<IUnknown> face;
      EXPECT_EQ(control->QueryInterface(id, face.OutVoid()), S_OK) << std::hex << id.Data1;
    }
  });
}

TEST(Identity, RefusesWhatItDoesNotOffer) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateControl();
    for (const IID& id : {IID_IQuickActivate,
                          IID_IPersistPropertyBag2,
                          IID_IPersistMemory,
                          IID_IPersistFile,
                          IID_IRunnableObject,
                          IID_IOleCache,
                          IID_IOleCache2,
                          IID_IOleCacheControl,
                          IID_IOleLink,
                          IID_IExternalConnection,
                          IID_IOleInPlaceObjectWindowless,
                          IID_IViewObjectEx,
                          IID_IOleDocument,
                          IID_ISpecifyPropertyPages,
                          IID_IPerPropertyBrowsing,
                          IID_IObjectSafety,
                          IID_IObjectWithSite,
                          IID_IMarshal,
                          IID_IStream,
                          kClassId,
                          kSourceId}) {
      void* out = reinterpret_cast<void*>(0x1234);
      EXPECT_EQ(control->QueryInterface(id, &out), E_NOINTERFACE) << std::hex << id.Data1;
      EXPECT_EQ(out, nullptr);
    }
  });
}

TEST(Identity, RefusesAQueryWithoutAnOutPointer) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateControl();
    EXPECT_EQ(control->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(control.As<IOleObject>()->QueryInterface(IID_IOleObject, nullptr), E_POINTER);
  });
}

// Of the objects that the control hands out beside itself.
template <class Interface>
void ExpectOnly(const Com<Interface>& object, REFIID id) {
  for (const IID& own : {IID_IUnknown, id}) {
    Com<IUnknown> same;
    EXPECT_EQ(object->QueryInterface(own, same.OutVoid()), S_OK);
    EXPECT_EQ(same.Get(), object.Get());
  }
  for (const IID& other : {IID_IDispatch, IID_IOleObject}) {
    void* out = reinterpret_cast<void*>(0x1234);
    EXPECT_EQ(object->QueryInterface(other, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
  }
  EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(Identity, OfListsAndConnectionPointsIsTheirOwn) {
  OnApartmentThread([] {
    const Module module;
    {
      const auto control = module.CreateControl();
      const auto container = control.As<IConnectionPointContainer>();
      Com<IConnectionPoint> point;
      ASSERT_EQ(container->FindConnectionPoint(IID_IPropertyNotifySink, point.Out()), S_OK);
      ExpectOnly(point, IID_IConnectionPoint);
      Com<IEnumConnectionPoints> points;
      ASSERT_EQ(container->EnumConnectionPoints(points.Out()), S_OK);
      ExpectOnly(points, IID_IEnumConnectionPoints);
      Com<IEnumConnections> connections;
      ASSERT_EQ(point->EnumConnections(connections.Out()), S_OK);
      ExpectOnly(connections, IID_IEnumConnections);
      Com<IEnumFORMATETC> formats;
      ASSERT_EQ(control.As<IDataObject>()->EnumFormatEtc(DATADIR_GET, formats.Out()), S_OK);
      ExpectOnly(formats, IID_IEnumFORMATETC);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(Identity, HasOneIUnknownFromEveryInterface) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateControl();
    for (const IID& id :
         {IID_IDispatch, IID_IOleObject, IID_IOleControl, IID_IOleInPlaceObject,
          IID_IOleInPlaceActiveObject, IID_IViewObject2, IID_IPersistStreamInit, IID_IPersistStream,
          IID_IPersistStorage, IID_IPersistPropertyBag, IID_IDataObject,
          IID_IConnectionPointContainer, IID_IProvideClassInfo2, IID_ISupportErrorInfo}) {
      Com<IUnknown> face;
      ASSERT_EQ(control->QueryInterface(id, face.OutVoid()), S_OK);
      EXPECT_EQ(face.As<IUnknown>().Get(), control.Get());
    }
  });
}

TEST(Identity, SaysThatErrorInfoGoesWithEveryGeneration) {
  OnApartmentThread([] {
    const Module module;
    const auto support = module.CreateControl().As<ISupportErrorInfo>();
    for (const auto& generation : identities::kGenerations) {
      EXPECT_EQ(support->InterfaceSupportsErrorInfo(ToGuid(generation.interface_id)), S_OK);
    }
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IDispatch), S_OK);
    EXPECT_EQ(support->InterfaceSupportsErrorInfo(IID_IOleObject), S_FALSE);
  });
}

TEST(Identity, AnswersIPersistThroughEveryPersistence) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateControl();
    CLSID id{};
    EXPECT_EQ(control.As<IPersist>()->GetClassID(&id), S_OK);
    EXPECT_TRUE(IsEqualCLSID(id, kClassId));
    id = {};
    EXPECT_EQ(control.As<IPersistStreamInit>()->GetClassID(&id), S_OK);
    EXPECT_TRUE(IsEqualCLSID(id, kClassId));
    id = {};
    EXPECT_EQ(control.As<IPersistStorage>()->GetClassID(&id), S_OK);
    EXPECT_TRUE(IsEqualCLSID(id, kClassId));
    EXPECT_EQ(control.As<IPersistPropertyBag>()->GetClassID(nullptr), E_POINTER);
    id = {};
    EXPECT_EQ(control.As<IOleObject>()->GetUserClassID(&id), S_OK);
    EXPECT_TRUE(IsEqualCLSID(id, kClassId));
  });
}

}  // namespace
}  // namespace quorvane::component::identity_test
