// Proves the control inside documents that embed objects: the system's own helpers make it, run it,
// draw it, save it, load it and carry it over the clipboard; what they ask for and are refused is
// refused on purpose.

#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "tests/support/component/canvas.h"
#include "tests/support/component/fake_site.h"
#include "tests/support/component/fake_storage.h"
#include "tests/support/component/fake_stream.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"

namespace quorvane::component::embedding_test {
namespace {

// An outer object around a control that writes down which interfaces it is asked for in vain.
class AskedObject final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (IsEqualIID(id, IID_IUnknown)) {
      *out = this;
      AddRef();
      return S_OK;
    }
    const HRESULT result = control->QueryInterface(id, out);
    if (FAILED(result)) refused.push_back(id);
    return result;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  ULONG References() const { return references_; }

  Com<IUnknown> control;
  std::vector<IID> refused;

 private:
  ULONG references_ = 1;
};

// The class object of the module, but each control has an outer object. Makes one at a time.
class AskedClass final : public FakeUnknown<IClassFactory> {
 public:
  explicit AskedClass(const Module& module) : real_(module.ClassObject()) {
    EXPECT_EQ(::CoRegisterClassObject(kClassId, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                      &registration_),
              S_OK);
  }
  AskedClass(const AskedClass&) = delete;
  AskedClass& operator=(const AskedClass&) = delete;
  ~AskedClass() {
    EXPECT_EQ(::CoRevokeClassObject(registration_), S_OK);
    EXPECT_EQ(asked.References(), 1U) << "nobody holds the control";
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** out) override {
    EXPECT_EQ(asked.References(), 1U) << "the last one has ended";
    const HRESULT result = real_->CreateInstance(&asked, IID_IUnknown, asked.control.OutVoid());
    return FAILED(result) ? result : asked.QueryInterface(id, out);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

  AskedObject asked;

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IClassFactory) ? this : nullptr;
  }

  Com<IClassFactory> real_;
  DWORD registration_ = 0;
};

template <class Body>
void InADocument(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    {
      AskedClass known(module);
      body(known);
      known.asked.control.Reset();
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

// All that any helper asks for and does not get; docs/interfaces.md has the reason for each.
void ExpectRefusedOnPurposeOnly(const AskedObject& asked) {
  for (const IID& id : asked.refused) {
    const bool is_known =
        std::ranges::any_of(std::array{IID_IRunnableObject, IID_IOleCache, IID_IOleLink,
                                       IID_IMarshal, IID_IExternalConnection},
                            [&](const IID& known) { return IsEqualIID(known, id); });
    EXPECT_TRUE(is_known) << std::hex << id.Data1;
  }
}

Com<ISecurityCtrl> MembersOf(const Com<IOleObject>& object) {
  return object.As<ISecurityCtrl>(kSecurityCtrlId);
}

FORMATETC Content(UINT format, DWORD medium) {
  return {static_cast<CLIPFORMAT>(format), nullptr, DVASPECT_CONTENT, -1, medium};
}

FORMATETC Picture() { return Content(CF_METAFILEPICT, TYMED_MFPICT); }

FORMATETC Source() { return Content(::RegisterClipboardFormatW(L"Embed Source"), TYMED_ISTORAGE); }

TEST(Embedding, MakesTheControlWithEachRendering) {
  FORMATETC picture = Picture();
  const struct {
    DWORD rendering;
    FORMATETC* format;
  } kinds[] = {{OLERENDER_NONE, nullptr},
               {OLERENDER_DRAW, nullptr},
               {OLERENDER_FORMAT, &picture},
               {OLERENDER_ASIS, nullptr}};
  for (const auto& kind : kinds) {
    InADocument([&](AskedClass& known) {
      FakeSite site(FakeSite::Offers::kClientSiteOnly);
      const auto storage = NewCompoundFile();
      Com<IOleObject> object;
      ASSERT_EQ(::OleCreate(kClassId, IID_IOleObject, kind.rendering, kind.format, site.Site(),
                            storage.Get(), object.OutVoid()),
                S_OK)
          << kind.rendering;
      const Canvas canvas;
      const RECT bounds{8, 8, 36, 36};
      EXPECT_EQ(::OleDraw(object.Get(), DVASPECT_CONTENT, canvas.Device(), &bounds), S_OK);
      EXPECT_GT(canvas.Colours(bounds).size(), 2U);
      EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
      EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
      ExpectRefusedOnPurposeOnly(known.asked);
    });
  }
}

TEST(Embedding, SavesAndLoadsTheSettingsWithTheDocument) {
  const auto storage = NewCompoundFile();
  InADocument([&](AskedClass&) {
    Com<IOleObject> object;
    ASSERT_EQ(::OleCreate(kClassId, IID_IOleObject, OLERENDER_DRAW, nullptr, nullptr, storage.Get(),
                          object.OutVoid()),
              S_OK);
    PutValues(MembersOf(object), kOthers);
    const auto persistence = object.As<IPersistStorage>();
    EXPECT_EQ(::OleSave(persistence.Get(), storage.Get(), TRUE), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(nullptr), S_OK);
  });
  InADocument([&](AskedClass& known) {
    FakeSite site(FakeSite::Offers::kClientSiteOnly);
    Com<IOleObject> object;
    ASSERT_EQ(::OleLoad(storage.Get(), IID_IOleObject, site.Site(), object.OutVoid()), S_OK);
    EXPECT_EQ(ValuesOf(MembersOf(object)), kOthers);
    EXPECT_EQ(object.As<IPersistStorage>()->IsDirty(), S_FALSE);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    ExpectRefusedOnPurposeOnly(known.asked);
  });
}

TEST(Embedding, LoadsFromAStreamByItsClass) {
  Com<IStream> stream;
  ASSERT_EQ(::CreateStreamOnHGlobal(nullptr, TRUE, stream.Out()), S_OK);
  OnApartmentThread([&] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    PutValues(control, kOthers);
    const auto persistence = control.As<IPersistStream>();
    ASSERT_TRUE(persistence);
    EXPECT_EQ(::OleSaveToStream(persistence.Get(), stream.Get()), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
  });
  EXPECT_EQ(stream->Seek({}, STREAM_SEEK_SET, nullptr), S_OK);
  InADocument([&](AskedClass& known) {
    Com<IOleObject> object;
    ASSERT_EQ(::OleLoadFromStream(stream.Get(), IID_IOleObject, object.OutVoid()), S_OK);
    EXPECT_EQ(ValuesOf(MembersOf(object)), kOthers);
    ExpectRefusedOnPurposeOnly(known.asked);
  });
}

// A control in the container's process always runs, and says so by not having IRunnableObject.
TEST(Embedding, AlwaysRuns) {
  InADocument([](AskedClass& known) {
    Com<IOleObject> object;
    ASSERT_EQ(known.CreateInstance(nullptr, IID_IOleObject, object.OutVoid()), S_OK);
    EXPECT_TRUE(::OleIsRunning(object.Get()));
    EXPECT_EQ(::OleRun(object.Get()), S_OK);
    EXPECT_EQ(::OleSetContainedObject(object.Get(), TRUE), S_OK);
    EXPECT_EQ(::OleLockRunning(object.Get(), TRUE, FALSE), S_OK);
    EXPECT_EQ(::OleLockRunning(object.Get(), FALSE, TRUE), S_OK);
    EXPECT_EQ(::OleNoteObjectVisible(object.Get(), TRUE), S_OK);
    EXPECT_EQ(::OleNoteObjectVisible(object.Get(), FALSE), S_OK);
    EXPECT_FALSE(known.asked.refused.empty());
    ExpectRefusedOnPurposeOnly(known.asked);
  });
}

// The clipboard outlives the control that was copied; what it holds makes another one, with the
// settings that the first one had then.
TEST(Embedding, IsCarriedOverTheClipboard) {
  InADocument([](AskedClass& known) {
    Com<IOleObject> object;
    ASSERT_EQ(known.CreateInstance(nullptr, IID_IOleObject, object.OutVoid()), S_OK);
    PutValues(MembersOf(object), kOthers);
    ASSERT_EQ(::OleSetClipboard(object.As<IDataObject>().Get()), S_OK);
    EXPECT_EQ(::OleFlushClipboard(), S_OK);
    PutValues(MembersOf(object), kDefaults);
    object.Reset();
    known.asked.control.Reset();
    Com<IDataObject> copied;
    ASSERT_EQ(::OleGetClipboard(copied.Out()), S_OK);
    EXPECT_EQ(::OleQueryCreateFromData(copied.Get()), S_OK);
    EXPECT_EQ(::OleQueryLinkFromData(copied.Get()), S_FALSE) << "nothing to link to";
    FakeSite site(FakeSite::Offers::kClientSiteOnly);
    const auto storage = NewCompoundFile();
    ASSERT_EQ(::OleCreateFromData(copied.Get(), IID_IOleObject, OLERENDER_DRAW, nullptr,
                                  site.Site(), storage.Get(), object.OutVoid()),
              S_OK);
    EXPECT_EQ(ValuesOf(MembersOf(object)), kOthers);
    EXPECT_EQ(object->SetClientSite(nullptr), S_OK);
    copied.Reset();
    EXPECT_EQ(::OleSetClipboard(nullptr), S_OK);
    ExpectRefusedOnPurposeOnly(known.asked);
  });
}

// The cache that documents keep beside an object shows it when the object itself is not there.
TEST(Embedding, FillsADocumentsCache) {
  InADocument([](AskedClass& known) {
    Com<IOleCache> cache;
    ASSERT_EQ(::CreateDataCache(nullptr, kClassId, IID_IOleCache, cache.OutVoid()), S_OK);
    FORMATETC picture = Picture();
    DWORD connection = 0;
    ASSERT_EQ(cache->Cache(&picture, 0, &connection), S_OK);
    {
      Com<IDataObject> data;
      ASSERT_EQ(known.CreateInstance(nullptr, IID_IDataObject, data.OutVoid()), S_OK);
      EXPECT_EQ(cache->InitCache(data.Get()), S_OK);
    }
    known.asked.control.Reset();
    const Canvas canvas;
    const RECTL bounds{8, 8, 36, 36};
    EXPECT_EQ(cache.As<IViewObject>()->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr,
                                            canvas.Device(), &bounds, nullptr, nullptr, 0),
              S_OK);
    EXPECT_GT(canvas.Colours({8, 8, 36, 36}).size(), 2U);
  });
}

template <class Body>
void WithData(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    {
      const auto control = module.CreateSecurityCtrl();
      const auto data = control.As<IDataObject>();
      ASSERT_TRUE(data);
      body(control, data);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(Data, ListsItsSourceAndItsPicture) {
  WithData([](auto&, auto& data) {
    Com<IEnumFORMATETC> formats;
    ASSERT_EQ(data->EnumFormatEtc(DATADIR_GET, formats.Out()), S_OK);
    FORMATETC listed[3]{};
    ULONG count = 0;
    EXPECT_EQ(formats->Next(3, listed, &count), S_FALSE);
    ASSERT_EQ(count, 2U);
    const FORMATETC expected[] = {Source(), Picture()};
    for (int i = 0; i < 2; ++i) {
      EXPECT_EQ(listed[i].cfFormat, expected[i].cfFormat);
      EXPECT_EQ(listed[i].ptd, nullptr);
      EXPECT_EQ(listed[i].dwAspect, static_cast<DWORD>(DVASPECT_CONTENT));
      EXPECT_EQ(listed[i].lindex, -1);
      EXPECT_EQ(listed[i].tymed, expected[i].tymed);
      EXPECT_EQ(data->QueryGetData(&listed[i]), S_OK);
    }
    Com<IEnumFORMATETC> none;
    EXPECT_EQ(data->EnumFormatEtc(DATADIR_SET, none.Out()), E_NOTIMPL);
    EXPECT_FALSE(none);
    EXPECT_EQ(data->EnumFormatEtc(DATADIR_GET, nullptr), E_POINTER);
  });
}

TEST(Data, SaysWhatOfARequestItCannotMeet) {
  WithData([](auto&, auto& data) {
    FORMATETC icon = Picture();
    icon.dwAspect = DVASPECT_ICON;
    FORMATETC source_icon = Source();
    source_icon.dwAspect = DVASPECT_ICON;
    const struct {
      FORMATETC asked;
      HRESULT answer;
    } requests[] = {{Content(CF_TEXT, TYMED_HGLOBAL), DV_E_FORMATETC},
                    {Content(0, TYMED_ISTORAGE), DV_E_FORMATETC},
                    {Content(CF_METAFILEPICT, TYMED_HGLOBAL), DV_E_TYMED},
                    {Content(Source().cfFormat, TYMED_HGLOBAL | TYMED_ISTREAM), DV_E_TYMED},
                    {icon, DV_E_DVASPECT},
                    {source_icon, DV_E_DVASPECT}};
    for (auto request : requests) {
      EXPECT_EQ(data->QueryGetData(&request.asked), request.answer);
      STGMEDIUM medium;
      std::memset(&medium, 0xCC, sizeof(medium));
      EXPECT_EQ(data->GetData(&request.asked, &medium), request.answer);
      EXPECT_EQ(medium.tymed, static_cast<DWORD>(TYMED_NULL)) << "nothing to release";
      EXPECT_EQ(medium.pUnkForRelease, nullptr);
    }
    FORMATETC either = Content(CF_METAFILEPICT, TYMED_HGLOBAL | TYMED_MFPICT);
    EXPECT_EQ(data->QueryGetData(&either), S_OK);
  });
}

TEST(Data, GivesItsPictureAsAMetafile) {
  WithData([](auto&, auto& data) {
    FORMATETC picture = Picture();
    STGMEDIUM medium{};
    ASSERT_EQ(data->GetData(&picture, &medium), S_OK);
    ASSERT_EQ(medium.tymed, static_cast<DWORD>(TYMED_MFPICT));
    EXPECT_EQ(medium.pUnkForRelease, nullptr);
    const auto* given = static_cast<METAFILEPICT*>(::GlobalLock(medium.hMetaFilePict));
    ASSERT_NE(given, nullptr);
    EXPECT_EQ(given->mm, MM_ANISOTROPIC);
    EXPECT_EQ(given->xExt, 741);
    EXPECT_EQ(given->yExt, 741);
    const Canvas canvas;
    ::SetMapMode(canvas.Device(), MM_ANISOTROPIC);
    ::SetViewportOrgEx(canvas.Device(), 8, 8, nullptr);
    ::SetViewportExtEx(canvas.Device(), 28, 28, nullptr);
    EXPECT_TRUE(::PlayMetaFile(canvas.Device(), given->hMF));
    EXPECT_GT(canvas.Colours({8, 8, 36, 36}).size(), 2U);
    for (const RECT& around :
         {RECT{0, 0, 64, 8}, RECT{0, 36, 64, 64}, RECT{0, 8, 8, 36}, RECT{36, 8, 64, 36}}) {
      EXPECT_EQ(canvas.Colours(around), (std::set<DWORD>{Canvas::kMagenta}));
    }
    ::GlobalUnlock(medium.hMetaFilePict);
    ::ReleaseStgMedium(&medium);
  });
}

HDC WINAPI NoRecorder(LPCWSTR) { return nullptr; }
HGLOBAL WINAPI NoMemory(UINT, SIZE_T) { return nullptr; }
HRESULT WINAPI NoStorage(const OLECHAR*, DWORD, DWORD, IStorage**) { return STG_E_MEDIUMFULL; }

int metafiles_deleted = 0;
BOOL WINAPI DeleteAndCount(HMETAFILE metafile) {
  if (metafile != nullptr) ++metafiles_deleted;
  return ::DeleteMetaFile(metafile);
}

TEST(Data, SaysWhatTheSystemRefused) {
  WithData([](auto&, auto& data) {
    const HMODULE module = ::GetModuleHandleW(QUORVANE_MODULE_FILE);
    const testing::ReplacedImport counted(module, "DeleteMetaFile", DeleteAndCount);
    metafiles_deleted = 0;
    const auto refuse = [&](const char* call, auto* refusal, FORMATETC asked, HRESULT stated) {
      const testing::ReplacedImport refused(module, call, refusal);
      ASSERT_TRUE(refused.Took()) << call;
      STGMEDIUM medium{};
      EXPECT_EQ(data->GetData(&asked, &medium), stated) << call;
      EXPECT_EQ(medium.tymed, static_cast<DWORD>(TYMED_NULL)) << call;
    };
    refuse("CreateMetaFileW", NoRecorder, Picture(), E_OUTOFMEMORY);
    EXPECT_EQ(metafiles_deleted, 0);
    refuse("GlobalAlloc", NoMemory, Picture(), E_OUTOFMEMORY);
    EXPECT_EQ(metafiles_deleted, 1) << "the picture that found no room";
    refuse("StgCreateDocfile", NoStorage, Source(), STG_E_MEDIUMFULL);
  });
}

TEST(Data, GivesItselfInAStorageAndStaysAsItWas) {
  WithData([](auto& control, auto& data) {
    PutValues(control, kOthers);
    FORMATETC source = Source();
    STGMEDIUM medium{};
    ASSERT_EQ(data->GetData(&source, &medium), S_OK);
    ASSERT_EQ(medium.tymed, static_cast<DWORD>(TYMED_ISTORAGE));
    EXPECT_EQ(medium.pUnkForRelease, nullptr);
    const auto persistence = control.template As<IPersistStorage>();
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "a copy is no save";
    EXPECT_EQ(persistence->SaveCompleted(nullptr), E_UNEXPECTED);
    CLSID written{};
    EXPECT_EQ(::ReadClassStg(medium.pstg, &written), S_OK);
    EXPECT_TRUE(IsEqualCLSID(written, kClassId));
    PutValues(control, kDefaults);
    EXPECT_EQ(persistence->Load(medium.pstg), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    ::ReleaseStgMedium(&medium);
  });
}

TEST(Data, GoesIntoTheCallersStorage) {
  WithData([](auto& control, auto& data) {
    PutValues(control, kOthers);
    FORMATETC source = Source();
    FakeStorage storage;
    STGMEDIUM medium{};
    medium.tymed = TYMED_ISTORAGE;
    medium.pstg = &storage;
    int n = 1;
    for (;; ++n) {
      ASSERT_LT(n, 20);
      storage.medium.calls = 0;
      storage.medium.failing_call = n;
      const HRESULT result = data->GetDataHere(&source, &medium);
      EXPECT_TRUE(storage.IsFree()) << n;
      if (result == S_OK) break;
      EXPECT_EQ(result, STG_E_WRITEFAULT) << n;
    }
    EXPECT_EQ(n, 6) << "class id, stream, room, front, bytes";
    PutValues(control, kDefaults);
    storage.medium.failing_call = 0;
    const auto persistence = control.template As<IPersistStorage>();
    EXPECT_EQ(persistence->Load(&storage), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);

    FORMATETC picture = Picture();
    EXPECT_EQ(data->GetDataHere(&picture, &medium), DV_E_FORMATETC);
    medium.pstg = nullptr;
    EXPECT_EQ(data->GetDataHere(&source, &medium), DV_E_TYMED);
    FakeStream stream;
    medium.tymed = TYMED_ISTREAM;
    medium.pstm = &stream;
    EXPECT_EQ(data->GetDataHere(&source, &medium), DV_E_TYMED);
    EXPECT_TRUE(stream.content.empty());
  });
}

TEST(Data, LivesThroughTheCallsOfTheCallersStorage) {
  OnApartmentThread([] {
    const Module module;
    FakeStorage storage;
    IDataObject* last = nullptr;
    {
      const auto control = module.CreateControl();
      last = control.As<IDataObject>().Get();
      last->AddRef();
    }
    ULONG left = 0;
    storage.medium.on_call = [&] {
      storage.medium.on_call = nullptr;
      left = last->Release();
    };
    FORMATETC source = Source();
    STGMEDIUM medium{};
    medium.tymed = TYMED_ISTORAGE;
    medium.pstg = &storage;
    EXPECT_EQ(last->GetDataHere(&source, &medium), S_OK);
    EXPECT_EQ(left, 1U) << "held by the call itself";
    EXPECT_TRUE(storage.IsFree());
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

TEST(Data, TakesNoneAndTellsNobody) {
  WithData([](auto&, auto& data) {
    FORMATETC picture = Picture();
    STGMEDIUM medium{};
    EXPECT_EQ(data->SetData(&picture, &medium, FALSE), E_NOTIMPL);
    DWORD cookie = 7;
    EXPECT_EQ(data->DAdvise(&picture, 0, nullptr, &cookie), OLE_E_ADVISENOTSUPPORTED);
    EXPECT_EQ(cookie, 0U);
    EXPECT_EQ(data->DAdvise(&picture, 0, nullptr, nullptr), OLE_E_ADVISENOTSUPPORTED);
    EXPECT_EQ(data->DUnadvise(1), OLE_E_ADVISENOTSUPPORTED);
    auto* sinks = reinterpret_cast<IEnumSTATDATA*>(0x1234);
    EXPECT_EQ(data->EnumDAdvise(&sinks), OLE_E_ADVISENOTSUPPORTED);
    EXPECT_EQ(sinks, nullptr);
    DVTARGETDEVICE device{};
    picture.ptd = &device;
    FORMATETC canonical{};
    EXPECT_EQ(data->GetCanonicalFormatEtc(&picture, &canonical), DATA_S_SAMEFORMATETC);
    EXPECT_EQ(canonical.cfFormat, picture.cfFormat);
    EXPECT_EQ(canonical.ptd, nullptr);
  });
}

TEST(Data, RefusesNullPointers) {
  WithData([](auto&, auto& data) {
    FORMATETC picture = Picture();
    STGMEDIUM medium{};
    EXPECT_EQ(data->GetData(nullptr, &medium), E_POINTER);
    EXPECT_EQ(data->GetData(&picture, nullptr), E_POINTER);
    EXPECT_EQ(data->GetDataHere(nullptr, &medium), E_POINTER);
    EXPECT_EQ(data->GetDataHere(&picture, nullptr), E_POINTER);
    EXPECT_EQ(data->QueryGetData(nullptr), E_POINTER);
    EXPECT_EQ(data->GetCanonicalFormatEtc(nullptr, &picture), E_POINTER);
    EXPECT_EQ(data->GetCanonicalFormatEtc(&picture, nullptr), E_POINTER);
  });
}

}  // namespace
}  // namespace quorvane::component::embedding_test
