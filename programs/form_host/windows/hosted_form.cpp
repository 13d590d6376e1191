// The form in a real container: the control comes from the module that is registered for its class.

#include "programs/form_host/hosted_form.h"
#include "runtime/ignored_result.h"

#include <cmath>

#include "platform/conversions.h"
#include "programs/common/standard_streams.h"
#include "programs/form_host/settings.h"
#include "programs/form_host/windows/form_property_bag.h"
#include "programs/form_host/windows/form_window.h"
#include "programs/form_host/windows/help_viewer.h"
#include "programs/form_host/windows/late_bound.h"
#include "programs/form_host/windows/property_sink.h"
#include "programs/form_host/windows/site.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

ComPtr<IOleObject> CreateControl() {
  ComPtr<IOleObject> control;
  const HRESULT result =
      ::CoCreateInstance(component::AsGuid(identities::kClassId), nullptr, CLSCTX_INPROC_SERVER,
                         __uuidof(IOleObject), reinterpret_cast<void**>(control.Receive()));
  if (result == REGDB_E_CLASSNOTREG) {
    throw RuntimeError{result, u"CoCreateInstance",
                       u"The control is not registered; do so by regsvr32 QuorvaneSecurity.ocx"};
  }
  Check(result, u"CoCreateInstance");
  return control;
}

// Units of 0.01 mm to 1/1440 inch.
long TwipsOf(LONG himetric) { return std::lround(himetric * 1440.0 / 2540.0); }

std::string Describe(const RECT& place) {
  return std::to_string(place.right - place.left) + " x " +
         std::to_string(place.bottom - place.top) + " at " + std::to_string(place.left) + ", " +
         std::to_string(place.top);
}

// The end of standard input is as good as Enter.
DWORD WINAPI ReadLine(void* /*parameter*/) {
  char character = 0;
  while (ReadStandardInput(&character, 1) == std::size_t{1} && character != '\n') {
  }
  return 0;
}

class ContainerForm final : public HostedForm {
 public:
  explicit ContainerForm(ChangeListener listener)
      : listener_(std::move(listener)),
        site_(Make<Site>(window_.Handle(), FormWindow::PlaceOfControl())),
        sink_(Make<PropertySink>()),
        control_(CreateControl()),
        members_(Query<IDispatch>(control_.Get())) {
    Check(control_->SetClientSite(site_.Get()), u"SetClientSite");
    ListenToChanges();
    window_.OnHelp([this] { ShowHelp(); });
  }

  // Site and control hold each other until SetClientSite(NULL).
  ~ContainerForm() override {
    if (const auto in_place = Query<IOleInPlaceObject>(control_.Get()))
      in_place->InPlaceDeactivate();
    if (point_) point_->Unadvise(cookie_);
    control_->Close(OLECLOSE_NOSAVE);
    control_->SetClientSite(nullptr);
  }

  void Load(FormBag& bag) override {
    const auto property_bag = Make<FormPropertyBag>(bag);
    Check(Persistence()->Load(property_bag.Get(), nullptr), u"IPersistPropertyBag.Load");
  }

  void Save(FormBag& bag) override {
    const auto property_bag = Make<FormPropertyBag>(bag);
    Check(Persistence()->Save(property_bag.Get(), TRUE, FALSE), u"IPersistPropertyBag.Save");
  }

  // Every answer but a plain no counts as a yes.
  bool NeedsSaving() override {
    const auto persistence = Query<IPersistStreamInit>(control_.Get());
    return !persistence || persistence->IsDirty() != S_FALSE;
  }

  // The form offers its control plenty of room and takes what comes of it.
  SizeInTwips Size() override {
    SIZEL offer{5000, 5000};
    IgnoreResult(control_->SetExtent(DVASPECT_CONTENT, &offer));
    SIZEL size{};
    Check(control_->GetExtent(DVASPECT_CONTENT, &size), u"IOleObject.GetExtent");
    return {TwipsOf(size.cx), TwipsOf(size.cy)};
  }

  // At design time a control is shown even if it is out of sight at run time.
  std::string Show() override {
    if (window_.Handle() == nullptr)
      return "nothing, as no window can be made, for want of a display? (" + window_.Reason() + ")";
    const RECT place = FormWindow::PlaceOfControl();
    Check(control_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_.Get(), 0, window_.Handle(),
                           &place),
          u"IOleObject.DoVerb");
    window_.ShowForAMoment();
    return std::string("a window of ") + std::to_string(FormWindow::kWidth) + " x " +
           std::to_string(FormWindow::kHeight) + " pixels, in it the control's, " +
           DescribeControlWindow() + ", and a panel, " + Describe(FormWindow::PlaceOfPanel());
  }

  // The keyboard is waited for beside, as the window wants to be served.
  void StayUntilEnter() override {
    if (window_.Handle() == nullptr) return;
    const HANDLE reader = ::CreateThread(nullptr, 0, ReadLine, nullptr, 0, nullptr);
    if (reader == nullptr) RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), u"CreateThread");
    window_.StayUntil(reader);
    ::CloseHandle(reader);
  }

  TaggedValue Get(const Text& member) override { return members_.Get(member); }

  void Put(const Text& member, const TaggedValue& value) override {
    members_.Put(member, value);
    for (const DISPID id : sink_->Take()) listener_(NameOf(id));
  }

  std::int32_t GetCRCValue() override { return ToInteger32(members_.Call(u"GetCRCValue")); }

 private:
  ComPtr<IPersistPropertyBag> Persistence() const {
    auto persistence = Query<IPersistPropertyBag>(control_.Get());
    if (!persistence) RaiseResult(E_NOINTERFACE, u"IPersistPropertyBag");
    return persistence;
  }

  void ListenToChanges() {
    const auto points = Query<IConnectionPointContainer>(control_.Get());
    if (!points) RaiseResult(E_NOINTERFACE, u"IConnectionPointContainer");
    Check(points->FindConnectionPoint(__uuidof(IPropertyNotifySink), point_.Receive()),
          u"IConnectionPointContainer.FindConnectionPoint");
    Check(point_->Advise(sink_.Get(), &cookie_), u"IConnectionPoint.Advise");
  }

  // F1 in the window. What goes wrong is told there, too.
  void ShowHelp() {
    try {
      help_.Open(Query<IDispatch>(control_.Get()), window_.Handle());
    } catch (...) {
      const RuntimeError error = CurrentRuntimeError();
      const Text message = error.description + u"\n" + error.source;
      ::MessageBoxW(window_.Handle(), Wide(message), L"Form", MB_OK | MB_ICONWARNING);
    }
  }

  Text NameOf(DISPID id) const {
    for (const identities::Property& setting : kSettings)
      if (setting.dispatch_id == id) return FromUtf8(setting.name);
    return FromUtf8("member " + std::to_string(id));
  }

  std::string DescribeControlWindow() const {
    HWND own = nullptr;
    const auto in_place = Query<IOleInPlaceObject>(control_.Get());
    if (!in_place || FAILED(in_place->GetWindow(&own)) || own == nullptr) return "missing";
    RECT place{};
    ::GetWindowRect(own, &place);
    ::MapWindowPoints(nullptr, window_.Handle(), reinterpret_cast<POINT*>(&place), 2);
    return Describe(place);
  }

  ChangeListener listener_;
  FormWindow window_;
  HelpViewer help_;
  ComPtr<Site> site_;
  ComPtr<PropertySink> sink_;
  ComPtr<IOleObject> control_;
  LateBound members_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

// A single-threaded apartment, as a control of the apartment model wants it.
struct Apartment {
  Apartment() { Check(::CoInitialize(nullptr), u"CoInitialize"); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { ::CoUninitialize(); }
};

struct Work {
  const std::function<void()>& body;
  std::exception_ptr failure;
};

DWORD WINAPI RunWork(void* parameter) {
  auto& work = *static_cast<Work*>(parameter);
  try {
    const Apartment apartment;
    work.body();
  } catch (...) {
    work.failure = std::current_exception();
  }
  return 0;
}

}  // namespace

std::unique_ptr<HostedForm> MakeForm(ChangeListener listener) {
  return std::make_unique<ContainerForm>(std::move(listener));
}

void OnFreshThread(const std::function<void()>& body) {
  Work work{body, nullptr};
  const HANDLE thread = ::CreateThread(nullptr, 0, RunWork, &work, 0, nullptr);
  if (thread == nullptr) RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), u"CreateThread");
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
  if (work.failure) std::rethrow_exception(work.failure);
}

}  // namespace quorvane::programs
