#include "tests/support/component/hostile_container.h"

#include <utility>

#include "tests/support/component/failing_allocations.h"
#include "tests/support/component/hostile_parts.h"

namespace quorvane::component {
namespace {

using Kind = HostileContainer::Kind;

constexpr int kDeepest = 5;
constexpr std::size_t kMostHeld = 80;
constexpr HRESULT kFailures[] = {E_FAIL,           E_NOTIMPL,
                                 E_OUTOFMEMORY,    E_UNEXPECTED,
                                 E_INVALIDARG,     DISP_E_OVERFLOW,
                                 DISP_E_EXCEPTION, S_FALSE,
                                 E_NOINTERFACE,    static_cast<HRESULT>(0x800A0009),
                                 S_OK + 77};
constexpr DWORD kAspects[] = {
    DVASPECT_CONTENT, DVASPECT_CONTENT, DVASPECT_CONTENT, DVASPECT_ICON, 0, 0xFFFFFFFF};
constexpr LONG kVerbs[] = {OLEIVERB_SHOW,
                           OLEIVERB_SHOW,
                           OLEIVERB_INPLACEACTIVATE,
                           OLEIVERB_PRIMARY,
                           OLEIVERB_HIDE,
                           OLEIVERB_UIACTIVATE,
                           OLEIVERB_PROPERTIES,
                           OLEIVERB_OPEN,
                           4711,
                           LONG_MIN};

struct Asked {
  const GUID* id;
  Kind kind;
};
const Asked kAsked[] = {
    {&IID_IUnknown, Kind::kControl},
    {&IID_IDispatch, Kind::kMembers},
    {&kSecurityCtrlId, Kind::kMembers},
    {&IID_ISupportErrorInfo, Kind::kErrorSupport},
    {&IID_IProvideClassInfo, Kind::kAny},
    {&IID_IProvideClassInfo2, Kind::kClassInfo},
    {&IID_IPersist, Kind::kAny},
    {&IID_IPersistStreamInit, Kind::kStreamInit},
    {&IID_IPersistPropertyBag, Kind::kPropertyBag},
    {&IID_IConnectionPointContainer, Kind::kPointContainer},
    {&IID_IViewObject, Kind::kAny},
    {&IID_IViewObject2, Kind::kView},
    {&IID_IOleWindow, Kind::kAny},
    {&IID_IOleInPlaceObject, Kind::kInPlace},
    {&IID_IOleInPlaceActiveObject, Kind::kActive},
    {&IID_IOleObject, Kind::kOleObject},
    {&IID_IOleControl, Kind::kOleControl},
    {&IID_IPersistStorage, Kind::kStorage},
    {&IID_IPersistStream, Kind::kAny},
    {&IID_IDataObject, Kind::kData},
    {&IID_IQuickActivate, Kind::kAny},
    {&kClassId, Kind::kAny},
};

std::uint64_t HashOf(std::string_view text) {
  std::uint64_t hash = 0;
  for (const char c : text) hash = hash * 131 + static_cast<unsigned char>(c);
  return hash;
}

std::vector<HWND> ChildrenOf(HWND parent) {
  std::vector<HWND> all;
  for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr;
       child = ::GetWindow(child, GW_HWNDNEXT)) {
    all.push_back(child);
  }
  return all;
}

std::wstring SomeText(Random& random) {
  switch (random.Below(6)) {
    case 0:
      return {};
    case 1:
      return std::wstring(L"a\0b", 3);
    case 2:
      return std::wstring(random.Below(5000), L'\xD800');
    case 3:
      return L"70000";
    default:
      return L"text " + std::to_wstring(random.Below(100));
  }
}

BSTR NewText(Random& random) {
  const std::wstring text = SomeText(random);
  return random.OneIn(5) ? nullptr
                         : ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

}  // namespace

HostileContainer::HostileContainer(const Module& module, HWND window, std::uint32_t seed)
    : module_(module), random_(seed), window_(window) {
  ::SetWindowLongW(window_, GWL_USERDATA, reinterpret_cast<LONG>(this));
  below_ = reinterpret_cast<WNDPROC>(
      ::SetWindowLongW(window_, GWL_WNDPROC, reinterpret_cast<LONG>(OnMessage)));
}

HostileContainer::~HostileContainer() {
  calls_left_ = 0;
  depth_ = kDeepest;
  on_callback = [](int, std::string_view) { return S_OK; };
  ReleaseAll();
  storage_.Reset();
  ::SetErrorInfo(0, nullptr);
  ::SetWindowLongW(window_, GWL_WNDPROC, reinterpret_cast<LONG>(below_));
  EXPECT_TRUE(ChildrenOf(window_).empty()) << "no control, but a window";
  EXPECT_EQ(parts_, 0) << "still held by the module";
  EXPECT_GE(left_, entered_) << "a site was entered, but not left";
  EXPECT_LE(left_, entered_ + refused_) << "a site was left that had not been entered";
}

LRESULT CALLBACK HostileContainer::OnMessage(HWND handle, UINT message, WPARAM first,
                                             LPARAM second) {
  auto* const self = reinterpret_cast<HostileContainer*>(::GetWindowLongW(handle, GWL_USERDATA));
  const WNDPROC below = self->below_;
  if (message == WM_PARENTNOTIFY)
    self->OnCallback(LOWORD(first) == WM_CREATE ? "child made" : "child news");
  return ::CallWindowProcW(below, handle, message, first, second);
}

HRESULT HostileContainer::OnCallback(std::string_view name) {
  ++callbacks_;
  Note(HashOf(name));
  if (const auto now = on_callback) return now(callbacks_, name);
  if (depth_ < kDeepest && random_.OneIn(3)) {
    ++depth_;
    for (unsigned n = 1 + random_.Below(3); n > 0 && calls_left_ > 0; --n) Step();
    --depth_;
  }
  return random_.OneIn(10) ? random_.Of(kFailures) : S_OK;
}

void HostileContainer::CountVisit(int entered, int refused, int left) {
  entered_ += entered;
  refused_ += refused;
  left_ += left;
}

void HostileContainer::Run(int calls) {
  calls_left_ = calls;
  while (calls_left_ > 0) Step();
}

HRESULT HostileContainer::Noted(HRESULT result) {
  Note(static_cast<std::uint32_t>(result));
  return result;
}

void HostileContainer::Hold(Kind kind, void* pointer) {
  auto* const object = static_cast<IUnknown*>(pointer);
  if (object == nullptr) return;
  held_.push_back({kind, object});
  if (held_.size() > kMostHeld) Release(random_.Below(kMostHeld));
}

void HostileContainer::Release(std::size_t index) {
  IUnknown* const pointer = held_[index].pointer;
  held_.erase(held_.begin() + static_cast<std::ptrdiff_t>(index));
  pointer->Release();
}

template <class Interface, class Call>
void HostileContainer::Receive(Kind kind, Call call) {
  auto* const nonsense = reinterpret_cast<Interface*>(0xDEAD);
  Interface* out = nonsense;
  const bool is_asked = !random_.OneIn(15);
  const HRESULT result = Noted(call(is_asked ? &out : nullptr));
  if (!is_asked) {
    EXPECT_TRUE(FAILED(result));
  } else if (FAILED(result)) {
    EXPECT_EQ(out, nullptr) << "left over from a failed call";
  } else {
    EXPECT_NE(out, nonsense);
    Hold(kind, out);
  }
}

void HostileContainer::Step() {
  --calls_left_;
  ++calls_;
  if (held_.empty() || random_.OneIn(25)) return CreateControl();
  if (random_.OneIn(12)) return Release(random_.Below(static_cast<unsigned>(held_.size())));
  if (random_.OneIn(25)) return UseWindows();
  if (random_.OneIn(12)) return StepWithoutMemory();
  const Held one = held_[random_.Below(static_cast<unsigned>(held_.size()))];
  Note(static_cast<std::uint64_t>(one.kind));
  const bool is_the_systems = one.kind == Kind::kAdvises || one.kind == Kind::kTypeInfo;
  if (random_.OneIn(4) && !is_the_systems) return AskFor(*one.pointer);
  Use(one);
}

// Each of them once, as the module's memory cannot fail twice at a time.
void HostileContainer::StepWithoutMemory() {
  if (has_no_memory_) return;
  has_no_memory_ = true;
  {
    using Lasting = FailingAllocations::Lasting;
    const FailingAllocations failing(module_.Handle(), 1 + static_cast<int>(random_.Below(6)),
                                     random_.OneIn(2) ? Lasting::kOnce : Lasting::kFromThenOn);
    Step();
  }
  has_no_memory_ = false;
}

void HostileContainer::CreateControl() {
  const bool is_inner = on_callback == nullptr && random_.OneIn(3);
  const auto factory = module_.ClassObject();
  if (!is_inner) {
    Receive<IUnknown>(Kind::kControl, [&](IUnknown** out) {
      return factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(out));
    });
    return;
  }
  auto* const outer = new HostileOuter(*this);
  Noted(factory->CreateInstance(outer, random_.OneIn(8) ? IID_IDispatch : IID_IUnknown,
                                outer->inner.OutVoid()));
  Hold(Kind::kControl, outer);
}

void HostileContainer::AskFor(IUnknown& object) {
  const Asked& asked = random_.Of(kAsked);
  void* out = &out;
  const HRESULT result = Noted(object.QueryInterface(*asked.id, &out));
  if (FAILED(result))
    EXPECT_EQ(out, nullptr);
  else
    Hold(asked.kind, out);
}

void HostileContainer::Use(const Held& one) {
  IUnknown* const object = one.pointer;
  switch (one.kind) {
    case Kind::kControl:
      return AskFor(*object);
    case Kind::kMembers:
      return UseMembers(object);
    case Kind::kErrorSupport:
      Noted(static_cast<ISupportErrorInfo*>(object)->InterfaceSupportsErrorInfo(IID_IDispatch));
      return;
    case Kind::kClassInfo:
      return UseClassInfo(object);
    case Kind::kStreamInit:
      return UseStreamInit(*static_cast<IPersistStreamInit*>(object));
    case Kind::kStorage:
      return UseStorage(*static_cast<IPersistStorage*>(object));
    case Kind::kPropertyBag:
      return UsePropertyBag(*static_cast<IPersistPropertyBag*>(object));
    case Kind::kPointContainer:
      return UsePointContainer(*static_cast<IConnectionPointContainer*>(object));
    case Kind::kPoint:
      return UsePoint(*static_cast<IConnectionPoint*>(object));
    case Kind::kConnections:
      return UseEnumerator<IEnumConnections, CONNECTDATA>(
          one.kind, *static_cast<IEnumConnections*>(object),
          [](CONNECTDATA& data) { data.pUnk->Release(); });
    case Kind::kPoints:
      return UseEnumerator<IEnumConnectionPoints, IConnectionPoint*>(
          one.kind, *static_cast<IEnumConnectionPoints*>(object),
          [this](IConnectionPoint*& point) { Hold(Kind::kPoint, point); });
    case Kind::kView:
      return UseView(*static_cast<IViewObject2*>(object));
    case Kind::kData:
      return UseData(*static_cast<IDataObject*>(object));
    case Kind::kInPlace:
      return UseInPlace(*static_cast<IOleInPlaceObject*>(object));
    case Kind::kActive:
      return UseActive(*static_cast<IOleInPlaceActiveObject*>(object));
    case Kind::kOleObject:
      return UseOleObject(*static_cast<IOleObject*>(object));
    case Kind::kOleControl:
      return UseOleControl(*static_cast<IOleControl*>(object));
    case Kind::kAdvises:
    case Kind::kTypeInfo:
    case Kind::kAny:
      return;
  }
}

template <class Enumerator, class Raw, class Forget>
void HostileContainer::UseEnumerator(Kind kind, Enumerator& object, Forget forget) {
  switch (random_.Below(4)) {
    case 0:
      Noted(object.Skip(random_.Next() % 5));
      return;
    case 1:
      Noted(object.Reset());
      return;
    case 2:
      return Receive<Enumerator>(kind, [&](Enumerator** out) { return object.Clone(out); });
    default: {
      Raw some[4]{};
      ULONG count = 77;
      const bool is_counted = !random_.OneIn(4);
      const ULONG wanted = random_.Below(5);
      const HRESULT result = Noted(
          object.Next(wanted, random_.OneIn(9) ? nullptr : some, is_counted ? &count : nullptr));
      if (FAILED(result)) return;
      if (!is_counted) count = result == S_OK ? 1 : 0;
      EXPECT_LE(count, wanted);
      for (ULONG i = 0; i < count && i < 4; ++i) forget(some[i]);
    }
  }
}

void HostileContainer::UseMembers(IUnknown* object) {
  auto& members = *static_cast<ISecurityCtrl*>(object);
  using Get = HRESULT (STDMETHODCALLTYPE ISecurityCtrl::*)(BSTR*);
  using Put = HRESULT (STDMETHODCALLTYPE ISecurityCtrl::*)(BSTR);
  constexpr Get kGets[] = {&ISecurityCtrl::get_ServerAddress, &ISecurityCtrl::get_ServerFile,
                           &ISecurityCtrl::get_ProxyServer, &ISecurityCtrl::get_UserName,
                           &ISecurityCtrl::get_Password};
  constexpr Put kPuts[] = {&ISecurityCtrl::put_ServerAddress, &ISecurityCtrl::put_ServerFile,
                           &ISecurityCtrl::put_ProxyServer, &ISecurityCtrl::put_UserName,
                           &ISecurityCtrl::put_Password};
  switch (random_.Below(9)) {
    case 0: {
      BSTR text = nullptr;
      Noted((members.*random_.Of(kGets))(random_.OneIn(9) ? nullptr : &text));
      ::SysFreeString(text);
      return;
    }
    case 1:
    case 2: {
      const BSTR text = NewText(random_);
      Noted((members.*random_.Of(kPuts))(text));
      ::SysFreeString(text);
      return;
    }
    case 3:
      Noted(members.put_ServerPort(static_cast<SHORT>(random_.Next())));
      return;
    case 4:
      Noted(members.put_UseProxy(static_cast<VARIANT_BOOL>(random_.Next())));
      return;
    case 5: {
      SHORT port = 0;
      Noted(members.get_ServerPort(random_.OneIn(9) ? nullptr : &port));
      return;
    }
    case 6:
      return Receive<ITypeInfo>(Kind::kTypeInfo, [&](ITypeInfo** out) {
        return members.GetTypeInfo(random_.OneIn(5) ? random_.Next() : 0, random_.Next(), out);
      });
    case 7: {
      wchar_t known[] = L"serverport";
      wchar_t unknown[] = L"str_New_ServerPort";
      LPOLESTR names[] = {random_.OneIn(4) ? unknown : known, unknown};
      DISPID ids[2]{};
      Noted(members.GetIDsOfNames(random_.OneIn(9) ? kClassId : GUID{},
                                  random_.OneIn(9) ? nullptr : names, random_.Below(3), 0,
                                  random_.OneIn(9) ? nullptr : ids));
      return;
    }
    default:
      return Invoke(members);
  }
}

void HostileContainer::Invoke(IDispatch& object) {
  static constexpr DISPID kIds[] = {0x6803000D, 0x68030053, 0x6803000C, 0x68030048,
                                    0x68030047, 0x68030046, 0x68030045, 0,
                                    -1,         -501,       0x60000002};
  static constexpr WORD kFlags[] = {DISPATCH_PROPERTYGET,
                                    DISPATCH_PROPERTYPUT,
                                    DISPATCH_PROPERTYPUT,
                                    DISPATCH_METHOD,
                                    DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                    DISPATCH_PROPERTYPUTREF,
                                    0};
  Variant arguments[3];
  DISPID put = DISPID_PROPERTYPUT;
  const WORD flags = random_.Of(kFlags);
  UINT count = flags == DISPATCH_PROPERTYPUT ? 1 : 0;
  if (random_.OneIn(6)) count = random_.Below(4);
  for (UINT i = 0; i < count; ++i) FillVariant(arguments[i].Get());
  const bool is_named = flags == DISPATCH_PROPERTYPUT && count > 0;
  DISPPARAMS parameters{arguments[0].Get(), is_named ? &put : nullptr, count, is_named ? 1U : 0U};
  Variant result;
  EXCEPINFO exception{};
  UINT wrong = 0;
  Noted(object.Invoke(
      random_.Of(kIds), random_.OneIn(15) ? kClassId : GUID{}, 0, flags,
      random_.OneIn(15) ? nullptr : &parameters, random_.OneIn(3) ? nullptr : result.Get(),
      random_.OneIn(3) ? nullptr : &exception, random_.OneIn(3) ? nullptr : &wrong));
  ::SysFreeString(exception.bstrSource);
  ::SysFreeString(exception.bstrDescription);
  ::SysFreeString(exception.bstrHelpFile);
}

// The value is empty, or a type alone that tells what is wanted.
void HostileContainer::FillVariant(VARIANT* value) {
  *value = {};
  const auto set = [&](VARTYPE type) { V_VT(value) = type; };
  switch (random_.Below(12)) {
    case 0:
      return;
    case 1:
      set(VT_BSTR);
      V_BSTR(value) = NewText(random_);
      return;
    case 2:
      set(VT_I2);
      V_I2(value) = static_cast<SHORT>(random_.Next());
      return;
    case 3:
      set(VT_I4);
      V_I4(value) = static_cast<LONG>(random_.Next());
      return;
    case 4:
      set(VT_BOOL);
      V_BOOL(value) = static_cast<VARIANT_BOOL>(random_.Next());
      return;
    case 5:
      set(VT_R8);
      V_R8(value) = random_.OneIn(3) ? 1e300 : static_cast<double>(random_.Next()) / 3.0;
      return;
    case 6:
      set(random_.OneIn(2) ? VT_DISPATCH : VT_UNKNOWN);
      V_DISPATCH(value) = new HostileDispatch(*this);
      return;
    case 7:
      set(VT_ERROR);
      V_ERROR(value) = random_.OneIn(2) ? DISP_E_PARAMNOTFOUND : E_FAIL;
      return;
    case 8:
      set(VT_ARRAY | VT_UI1);
      V_ARRAY(value) = ::SafeArrayCreateVector(VT_UI1, 0, random_.Below(100));
      return;
    case 9:
      set(VT_CY);
      V_CY(value).int64 = static_cast<LONGLONG>(random_.Next()) << random_.Below(32);
      return;
    case 10:
      set(VT_DATE);
      V_DATE(value) = static_cast<double>(random_.Next());
      return;
    default:
      set(VT_NULL);
      return;
  }
}

void HostileContainer::UseClassInfo(IUnknown* object) {
  auto& info = *static_cast<IProvideClassInfo2*>(object);
  GUID id{};
  if (random_.OneIn(2)) {
    Noted(info.GetGUID(random_.Below(3), random_.OneIn(9) ? nullptr : &id));
    return;
  }
  Receive<ITypeInfo>(Kind::kTypeInfo, [&](ITypeInfo** out) { return info.GetClassInfo(out); });
}

void HostileContainer::UseStreamInit(IPersistStreamInit& object) {
  static constexpr ULONG kPieces[] = {1, 2, 7, 100, 1'000'000};
  const ULONG piece = random_.Of(kPieces);
  switch (random_.Below(6)) {
    case 0:
      EXPECT_TRUE(SUCCEEDED(Noted(object.IsDirty())));
      return;
    case 1:
      Noted(object.InitNew());
      return;
    case 2: {
      ULARGE_INTEGER size{};
      Noted(object.GetSizeMax(random_.OneIn(9) ? nullptr : &size));
      return;
    }
    case 3: {
      const auto written = std::make_shared<std::vector<unsigned char>>();
      const Com<HostileStream> stream(new HostileStream(*this, written, piece));
      const HRESULT result =
          Noted(object.Save(random_.OneIn(15) ? nullptr : stream.Get(), random_.OneIn(2)));
      if (result == S_OK) saved_ = *written;
      return;
    }
    default: {
      std::vector<unsigned char> bytes = saved_;
      for (unsigned n = random_.Below(4); n > 0 && !bytes.empty(); --n)
        bytes[random_.Below(static_cast<unsigned>(bytes.size()))] =
            static_cast<unsigned char>(random_.Next());
      if (random_.OneIn(5)) bytes.resize(bytes.size() / 2);
      const Com<HostileStream> stream(new HostileStream(
          *this, std::make_shared<std::vector<unsigned char>>(std::move(bytes)), piece));
      Noted(object.Load(random_.OneIn(15) ? nullptr : stream.Get()));
      return;
    }
  }
}

void HostileContainer::UseStorage(IPersistStorage& object) {
  // Nothing is counted before the call: whoever counts may let go of the object.
  Com<IStorage> kept = std::exchange(storage_, {});
  Com<IStorage> fresh;
  if (!kept || random_.OneIn(3)) fresh = Com<IStorage>(new HostileStorage(*this, saved_));
  IStorage* const given = random_.OneIn(12) ? nullptr : fresh ? fresh.Get() : kept.Get();
  UseStorage(object, given);
  storage_ = fresh ? std::move(fresh) : std::move(kept);
}

void HostileContainer::UseStorage(IPersistStorage& object, IStorage* given) {
  switch (random_.Below(6)) {
    case 0:
      EXPECT_TRUE(SUCCEEDED(Noted(object.IsDirty())));
      return;
    case 1:
      Noted(object.InitNew(given));
      return;
    case 2:
      Noted(object.Load(given));
      return;
    case 3:
      Noted(object.Save(given, random_.OneIn(2)));
      return;
    case 4:
      Noted(object.SaveCompleted(given));
      return;
    default:
      Noted(object.HandsOffStorage());
      return;
  }
}

void HostileContainer::UsePropertyBag(IPersistPropertyBag& object) {
  const Com<HostileBag> bag(new HostileBag(*this));
  const Com<HostileErrorLog> log(new HostileErrorLog(*this));
  switch (random_.Below(5)) {
    case 0:
      Noted(object.InitNew());
      return;
    case 1:
    case 2:
      Noted(
          object.Save(random_.OneIn(15) ? nullptr : bag.Get(), random_.OneIn(2), random_.OneIn(2)));
      return;
    default:
      Noted(object.Load(random_.OneIn(15) ? nullptr : bag.Get(),
                        random_.OneIn(2) ? nullptr : log.Get()));
      return;
  }
}

void HostileContainer::UsePointContainer(IConnectionPointContainer& object) {
  const GUID ids[] = {IID_IPropertyNotifySink, IID_IPropertyNotifySink, kSourceId, kClassId};
  if (random_.OneIn(3))
    return Receive<IEnumConnectionPoints>(Kind::kPoints, [&](IEnumConnectionPoints** out) {
      return object.EnumConnectionPoints(out);
    });
  const GUID& id = random_.Of(ids);
  Receive<IConnectionPoint>(
      Kind::kPoint, [&](IConnectionPoint** out) { return object.FindConnectionPoint(id, out); });
}

void HostileContainer::UsePoint(IConnectionPoint& object) {
  switch (random_.Below(6)) {
    case 0: {
      GUID id{};
      Noted(object.GetConnectionInterface(random_.OneIn(9) ? nullptr : &id));
      return;
    }
    case 1:
      return Receive<IConnectionPointContainer>(
          Kind::kPointContainer,
          [&](IConnectionPointContainer** out) { return object.GetConnectionPointContainer(out); });
    case 2:
      return Receive<IEnumConnections>(
          Kind::kConnections, [&](IEnumConnections** out) { return object.EnumConnections(out); });
    case 3: {
      const DWORD cookie = cookies_.empty() || random_.OneIn(6)
                               ? random_.Next()
                               : cookies_[random_.Below(static_cast<unsigned>(cookies_.size()))];
      Noted(object.Unadvise(cookie));
      return;
    }
    default: {
      const Com<IUnknown> sink(random_.OneIn(3)
                                   ? static_cast<IUnknown*>(new HostileDispatch(*this))
                                   : static_cast<IUnknown*>(new HostilePropertySink(*this)));
      DWORD cookie = 0;
      Noted(object.Advise(random_.OneIn(15) ? nullptr : sink.Get(),
                          random_.OneIn(15) ? nullptr : &cookie));
      if (cookie != 0) cookies_.push_back(cookie);
      return;
    }
  }
}

void HostileContainer::UseView(IViewObject2& object) {
  const Com<HostileAdviseSink> sink(new HostileAdviseSink(*this));
  switch (random_.Below(6)) {
    case 0:
    case 1:
      Noted(object.SetAdvise(random_.Of(kAspects), random_.Below(8),
                             random_.OneIn(4) ? nullptr : sink.Get()));
      return;
    case 2: {
      DWORD aspects = 0;
      DWORD flags = 0;
      IAdviseSink* out = nullptr;
      Noted(object.GetAdvise(random_.OneIn(3) ? nullptr : &aspects,
                             random_.OneIn(3) ? nullptr : &flags,
                             random_.OneIn(3) ? nullptr : &out));
      Hold(Kind::kAny, out);
      return;
    }
    case 3: {
      SIZEL size{};
      Noted(object.GetExtent(random_.Of(kAspects), random_.OneIn(2) ? -1 : 9, nullptr,
                             random_.OneIn(9) ? nullptr : &size));
      return;
    }
    case 4: {
      const HDC dc = ::CreateCompatibleDC(nullptr);
      const RECTL bounds{0, 0, static_cast<LONG>(random_.Below(60)),
                         static_cast<LONG>(random_.Below(60)) - 30};
      Noted(object.Draw(random_.Of(kAspects), -1, nullptr, nullptr, nullptr,
                        random_.OneIn(9) ? reinterpret_cast<HDC>(0xBAD) : dc,
                        random_.OneIn(9) ? nullptr : &bounds, nullptr, nullptr, 0));
      ::DeleteDC(dc);
      return;
    }
    default: {
      DWORD key = 0;
      Noted(object.Freeze(random_.Of(kAspects), -1, nullptr, random_.OneIn(3) ? nullptr : &key));
      Noted(object.Unfreeze(random_.Next()));
      return;
    }
  }
}

void HostileContainer::UseData(IDataObject& object) {
  static const UINT kEmbedSource = ::RegisterClipboardFormatW(L"Embed Source");
  const UINT formats[] = {CF_METAFILEPICT, kEmbedSource, CF_TEXT};
  static constexpr DWORD kMedia[] = {TYMED_MFPICT, TYMED_ISTORAGE, TYMED_ISTORAGE, TYMED_HGLOBAL};
  FORMATETC format{static_cast<CLIPFORMAT>(random_.Of(formats)), nullptr, random_.Of(kAspects),
                   random_.OneIn(6) ? 7 : -1, random_.Of(kMedia)};
  FORMATETC* const asked = random_.OneIn(12) ? nullptr : &format;
  STGMEDIUM medium{};
  switch (random_.Below(5)) {
    case 0:
      if (Noted(object.GetData(asked, random_.OneIn(12) ? nullptr : &medium)) == S_OK)
        ::ReleaseStgMedium(&medium);
      return;
    case 1: {
      const Com<IStorage> storage(new HostileStorage(*this, {}));
      medium.tymed = TYMED_ISTORAGE;
      medium.pstg = random_.OneIn(6) ? nullptr : storage.Get();
      Noted(object.GetDataHere(asked, &medium));
      return;
    }
    case 2:
      Noted(object.QueryGetData(asked));
      return;
    case 3: {
      IEnumFORMATETC* all = nullptr;
      Noted(object.EnumFormatEtc(random_.Below(3), &all));
      Hold(Kind::kAny, all);
      return;
    }
    default: {
      const Com<HostileAdviseSink> sink(new HostileAdviseSink(*this));
      DWORD cookie = 0;
      Noted(object.DAdvise(asked, random_.Below(8), sink.Get(), &cookie));
      return;
    }
  }
}

const RECT* HostileContainer::SomeRectangle(RECT& place) {
  static constexpr RECT kSome[] = {{5, 5, 33, 33},
                                   {0, 0, 0, 0},
                                   {10, 10, 400, 400},
                                   {50, 50, 10, 10},
                                   {LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX}};
  place = random_.Of(kSome);
  return random_.OneIn(6) ? nullptr : &place;
}

void HostileContainer::UseInPlace(IOleInPlaceObject& object) {
  RECT where{};
  RECT clip{};
  HWND window = nullptr;
  switch (random_.Below(6)) {
    case 0: {
      const HRESULT result = Noted(object.GetWindow(&window));
      EXPECT_EQ(result == S_OK, ::IsWindow(window) != FALSE);
      return;
    }
    case 1:
      Noted(object.InPlaceDeactivate());
      return;
    case 2:
      Noted(object.UIDeactivate());
      return;
    case 3:
      Noted(object.ReactivateAndUndo());
      Noted(object.ContextSensitiveHelp(TRUE));
      return;
    default: {
      const RECT* const new_place = SomeRectangle(where);
      Noted(object.SetObjectRects(new_place, SomeRectangle(clip)));
      return;
    }
  }
}

void HostileContainer::UseActive(IOleInPlaceActiveObject& object) {
  MSG message{};
  Noted(object.TranslateAccelerator(random_.OneIn(3) ? nullptr : &message));
  Noted(object.OnFrameWindowActivate(TRUE));
  Noted(object.OnDocWindowActivate(FALSE));
  Noted(object.ResizeBorder(nullptr, nullptr, TRUE));
  Noted(object.EnableModeless(FALSE));
}

void HostileContainer::UseOleObject(IOleObject& object) {
  const Com<HostileSite> site(new HostileSite(*this));
  const Com<HostileAdviseSink> sink(new HostileAdviseSink(*this));
  RECT place{};
  SIZEL size{static_cast<LONG>(random_.Next()), 5};
  switch (random_.Below(16)) {
    case 0:
    case 1:
      EXPECT_EQ(Noted(object.SetClientSite(random_.OneIn(3) ? nullptr : site.Get())), S_OK);
      return;
    case 2:
      return Receive<IOleClientSite>(
          Kind::kAny, [&](IOleClientSite** out) { return object.GetClientSite(out); });
    case 3:
      Noted(object.Close(random_.Below(5)));
      return;
    case 4:
    case 5:
    case 6: {
      const LONG verb = random_.Of(kVerbs);
      Noted(object.DoVerb(verb, nullptr, random_.OneIn(2) ? nullptr : site.Get(),
                          static_cast<LONG>(random_.Next()), random_.OneIn(4) ? nullptr : window_,
                          SomeRectangle(place)));
      return;
    }
    case 7: {
      DWORD cookie = 0;
      Noted(object.Advise(random_.OneIn(15) ? nullptr : sink.Get(),
                          random_.OneIn(15) ? nullptr : &cookie));
      if (cookie != 0) cookies_.push_back(cookie);
      return;
    }
    case 8:
      Noted(object.Unadvise(random_.Below(5)));
      return;
    case 9:
      return Receive<IEnumSTATDATA>(Kind::kAdvises,
                                    [&](IEnumSTATDATA** out) { return object.EnumAdvise(out); });
    case 10:
      Noted(object.SetExtent(random_.Of(kAspects), random_.OneIn(9) ? nullptr : &size));
      return;
    case 11:
      if (Noted(object.GetExtent(DVASPECT_CONTENT, &size)) == S_OK) {
        EXPECT_EQ(size.cx, 741);
        EXPECT_EQ(size.cy, 741);
      }
      return;
    case 12: {
      LPOLESTR name = nullptr;
      Noted(object.GetUserType(random_.Next(), random_.OneIn(9) ? nullptr : &name));
      ::CoTaskMemFree(name);
      return;
    }
    case 13:
      return Receive<IEnumOLEVERB>(Kind::kAny,
                                   [&](IEnumOLEVERB** out) { return object.EnumVerbs(out); });
    case 14:
      return Receive<IMoniker>(Kind::kAny, [&](IMoniker** out) {
        return object.GetMoniker(random_.Next(), random_.Next(), out);
      });
    default:
      Noted(object.SetHostNames(nullptr, nullptr));
      Noted(object.InitFromData(nullptr, TRUE, random_.Next()));
      Noted(object.SetMoniker(random_.Next(), nullptr));
      Noted(object.SetColorScheme(nullptr));
      Noted(object.Update());
      return;
  }
}

void HostileContainer::UseOleControl(IOleControl& object) {
  CONTROLINFO info{sizeof info, nullptr, 9, 9};
  Noted(object.GetControlInfo(random_.OneIn(5) ? nullptr : &info));
  Noted(object.OnMnemonic(nullptr));
  Noted(object.OnAmbientPropertyChange(static_cast<DISPID>(random_.Next())));
  Noted(object.FreezeEvents(random_.OneIn(2)));
}

void HostileContainer::UseWindows() {
  const std::vector<HWND> all = ChildrenOf(window_);
  if (all.empty()) return;
  const HWND one = all[random_.Below(static_cast<unsigned>(all.size()))];
  switch (random_.Below(5)) {
    case 0:
      ::DestroyWindow(one);
      return;
    case 1:
      ::ShowWindow(one, random_.OneIn(2) ? SW_HIDE : SW_SHOWNA);
      return;
    case 2: {
      const HDC dc = ::CreateCompatibleDC(nullptr);
      ::SendMessageW(one, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), 0);
      ::DeleteDC(dc);
      return;
    }
    case 3:
      ::SendMessageW(one, WM_PAINT, 0, 0);
      return;
    default:
      ::SendMessageW(one, WM_USER + random_.Below(100), random_.Next(), 0);
      return;
  }
}

template <class Interface>
Interface* HostileContainer::Find(Kind kind) {
  for (const Held& one : held_) {
    if (one.kind == kind) return static_cast<Interface*>(one.pointer);
  }
  return nullptr;
}

// By index: the body lets references come and go.
template <class Interface, class Body>
void HostileContainer::ForAll(Kind kind, Body body) {
  for (std::size_t i = 0; i < held_.size(); ++i) {
    if (held_[i].kind == kind) body(*static_cast<Interface*>(held_[i].pointer));
  }
}

// None of them uses an object for a second call: the first may have been its last.
void HostileContainer::ReleaseAll() {
  while (!held_.empty()) Release(held_.size() - 1);
}

void HostileContainer::CloseAll() {
  ForAll<IOleObject>(Kind::kOleObject, [](auto& object) { object.Close(OLECLOSE_SAVEIFDIRTY); });
}

void HostileContainer::LeaveSites() {
  ForAll<IOleObject>(Kind::kOleObject, [](auto& object) { object.SetClientSite(nullptr); });
}

void HostileContainer::DeactivateAll() {
  ForAll<IOleInPlaceObject>(Kind::kInPlace, [](auto& object) { object.InPlaceDeactivate(); });
}

void HostileContainer::ShowAll() {
  ForAll<IOleObject>(Kind::kOleObject, [this](auto& object) {
    object.DoVerb(OLEIVERB_SHOW, nullptr, nullptr, 0, window_, nullptr);
  });
}

void HostileContainer::PutAll() {
  ForAll<ISecurityCtrl>(Kind::kMembers, [](auto& object) { object.put_ServerPort(4711); });
  const Bstr password(L"another password, and a longer one");
  ForAll<ISecurityCtrl>(Kind::kMembers, [&](auto& object) { object.put_Password(password.Get()); });
}

void HostileContainer::SaveAndLoadAll(ULONG piece) {
  const auto bytes = std::make_shared<std::vector<unsigned char>>();
  ForAll<IPersistStreamInit>(Kind::kStreamInit, [&](auto& object) {
    const Com<HostileStream> stream(new HostileStream(*this, bytes, piece));
    Noted(object.Save(stream.Get(), TRUE));
  });
  ForAll<IPersistStreamInit>(Kind::kStreamInit, [&](auto& object) {
    const Com<HostileStream> stream(new HostileStream(*this, bytes, piece));
    Noted(object.Load(stream.Get()));
  });
}

// Through all its states: normal, "no scribble", "hands off" and back.
void HostileContainer::UseStorages() {
  const Com<IStorage> storage(new HostileStorage(*this, {}));
  const auto all = [&](auto body) { ForAll<IPersistStorage>(Kind::kStorage, body); };
  all([&](auto& object) { Noted(object.Save(storage.Get(), FALSE)); });
  all([&](auto& object) { Noted(object.SaveCompleted(storage.Get())); });
  all([&](auto& object) { Noted(object.Save(storage.Get(), TRUE)); });
  all([](auto& object) { object.HandsOffStorage(); });
  all([&](auto& object) { Noted(object.SaveCompleted(storage.Get())); });
}

void HostileContainer::DisconnectAll() {
  for (std::size_t i = 0; i < cookies_.size(); ++i) {
    ForAll<IConnectionPoint>(Kind::kPoint,
                             [&](auto& point) { Noted(point.Unadvise(cookies_[i])); });
  }
  ForAll<IViewObject2>(Kind::kView,
                       [](auto& view) { view.SetAdvise(DVASPECT_CONTENT, 0, nullptr); });
  ForAll<IOleObject>(Kind::kOleObject, [](auto& object) { object.Unadvise(1); });
}

void HostileContainer::DestroyWindows() {
  for (const HWND child : ChildrenOf(window_)) ::DestroyWindow(child);
}

void HostileContainer::Meet() {
  CreateControl();
  for (const Asked& asked : kAsked) {
    auto* const control = Find<IUnknown>(Kind::kControl);
    if (control == nullptr || asked.kind == Kind::kControl || asked.kind == Kind::kAny) continue;
    void* out = nullptr;
    if (SUCCEEDED(Noted(control->QueryInterface(*asked.id, &out)))) Hold(asked.kind, out);
  }
}

void HostileContainer::LiveOneLife() {
  Meet();
  const auto with = [this]<class Interface>(Kind kind, Interface*, auto body) {
    if (auto* const object = Find<Interface>(kind)) body(*object);
  };
  const auto with_object = [&](auto body) {
    with(Kind::kOleObject, static_cast<IOleObject*>(nullptr), body);
  };
  const auto with_stream = [&](auto body) {
    with(Kind::kStreamInit, static_cast<IPersistStreamInit*>(nullptr), body);
  };
  const auto with_bag = [&](auto body) {
    const Com<HostileBag> bag(new HostileBag(*this));
    with(Kind::kPropertyBag, static_cast<IPersistPropertyBag*>(nullptr),
         [&](auto& object) { body(object, bag.Get()); });
  };
  const auto connect = [&](const GUID& id, IUnknown* owned_sink) {
    const Com<IUnknown> sink(owned_sink);
    with(Kind::kPointContainer, static_cast<IConnectionPointContainer*>(nullptr),
         [&](auto& points) {
           IConnectionPoint* point = nullptr;
           if (FAILED(Noted(points.FindConnectionPoint(id, &point)))) return;
           Hold(Kind::kPoint, point);
           DWORD cookie = 0;
           if (SUCCEEDED(Noted(point->Advise(sink.Get(), &cookie)))) cookies_.push_back(cookie);
         });
  };
  with_object([&](auto& object) {
    const Com<HostileSite> site(new HostileSite(*this));
    Noted(object.SetClientSite(site.Get()));
  });
  with_stream([&](auto& object) { Noted(object.InitNew()); });
  connect(IID_IPropertyNotifySink, new HostilePropertySink(*this));
  connect(IID_IPropertyNotifySink, new HostilePropertySink(*this));
  connect(kSourceId, new HostileDispatch(*this));
  with_object([&](auto& object) {
    const Com<HostileAdviseSink> sink(new HostileAdviseSink(*this));
    DWORD cookie = 0;
    Noted(object.Advise(sink.Get(), &cookie));
  });
  with(Kind::kView, static_cast<IViewObject2*>(nullptr), [&](auto& view) {
    const Com<HostileAdviseSink> sink(new HostileAdviseSink(*this));
    Noted(view.SetAdvise(DVASPECT_CONTENT, ADVF_PRIMEFIRST, sink.Get()));
  });
  ShowAll();
  PutAll();
  with(Kind::kInPlace, static_cast<IOleInPlaceObject*>(nullptr), [&](auto& object) {
    const RECT wide{50, 60, 250, 260};
    Noted(object.SetObjectRects(&wide, &wide));
  });
  SaveAndLoadAll();
  with_bag([&](auto& object, IPropertyBag* bag) { Noted(object.Load(bag, nullptr)); });
  PutAll();
  with_bag([&](auto& object, IPropertyBag* bag) { Noted(object.Save(bag, TRUE, TRUE)); });
  PutAll();
  UseStorages();
  CloseAll();
  ShowAll();
  DisconnectAll();
  DeactivateAll();
  LeaveSites();
  ReleaseAll();
}

}  // namespace quorvane::component
