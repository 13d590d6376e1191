#include "programs/form_host/windows/container_form.h"

#include <cmath>

#include "platform/conversions.h"
#include "programs/common/standard_streams.h"
#include "programs/form_host/settings.h"
#include "programs/form_host/windows/form_property_bag.h"
#include "runtime/ignored_result.h"
#include "runtime/runtime_error.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr int kUnitsPerInch = 2540;

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
long TwipsOf(LONG himetric) { return std::lround(himetric * 1440.0 / kUnitsPerInch); }

// Pixels of the screen to units of 0.01 mm.
SIZEL UnitsOf(const SIZE& pixels) {
  const HDC screen = ::GetDC(nullptr);
  const SIZEL units{::MulDiv(pixels.cx, kUnitsPerInch, ::GetDeviceCaps(screen, LOGPIXELSX)),
                    ::MulDiv(pixels.cy, kUnitsPerInch, ::GetDeviceCaps(screen, LOGPIXELSY))};
  ::ReleaseDC(nullptr, screen);
  return units;
}

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

Text NameOf(DISPID id) {
  for (const identities::Property& setting : kSettings)
    if (setting.dispatch_id == id) return FromUtf8(setting.name);
  return FromUtf8("member " + std::to_string(id));
}

}  // namespace

ContainerForm::ContainerForm(ChangeListener listener, CallLog* log, HWND owner)
    : listener_(std::move(listener)),
      window_(owner),
      site_(Make<Site>(window_)),
      sink_(Make<PropertySink>()),
      control_(PassBorder(CreateControl(), log)),
      members_(Query<IDispatch>(control_.Get())) {
  Check(control_->SetClientSite(site_.Get()), u"SetClientSite");
  ListenToChanges();
  window_.OnHelp([this] { ShowHelpOrFailure(); });
}

// Site and control hold each other until SetClientSite(NULL).
ContainerForm::~ContainerForm() {
  Deactivate();
  if (point_) point_->Unadvise(cookie_);
  control_->Close(OLECLOSE_NOSAVE);
  control_->SetClientSite(nullptr);
}

ComPtr<IOleObject> ContainerForm::PassBorder(const ComPtr<IOleObject>& control, CallLog* log) {
  folder_ = FolderOfCode(control.Get());
  if (log == nullptr) return control;
  boundary_.emplace(*log);
  return boundary_->PassControl(control.Get());
}

void ContainerForm::InitNew() { Check(Persistence()->InitNew(), u"IPersistPropertyBag.InitNew"); }

void ContainerForm::Load(FormBag& bag) {
  const auto property_bag = Make<FormPropertyBag>(bag);
  Check(Persistence()->Load(property_bag.Get(), nullptr), u"IPersistPropertyBag.Load");
}

void ContainerForm::Save(FormBag& bag) {
  const auto property_bag = Make<FormPropertyBag>(bag);
  Check(Persistence()->Save(property_bag.Get(), TRUE, FALSE), u"IPersistPropertyBag.Save");
}

// Every answer but a plain no counts as a yes.
bool ContainerForm::NeedsSaving() {
  const auto persistence = Query<IPersistStreamInit>(control_.Get());
  return !persistence || persistence->IsDirty() != S_FALSE;
}

SIZEL ContainerForm::Extent() const {
  SIZEL size{};
  Check(control_->GetExtent(DVASPECT_CONTENT, &size), u"IOleObject.GetExtent");
  return size;
}

// The form offers its control plenty of room and takes what comes of it.
SizeInTwips ContainerForm::Size() {
  SIZEL offer{5000, 5000};
  IgnoreResult(control_->SetExtent(DVASPECT_CONTENT, &offer));
  const SIZEL size = Extent();
  return {TwipsOf(size.cx), TwipsOf(size.cy)};
}

// At design time a control is shown even if it is out of sight at run time.
void ContainerForm::Activate() {
  const RECT place = window_.PlaceOfControl();
  Check(
      control_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, site_.Get(), 0, window_.Handle(), &place),
      u"IOleObject.DoVerb");
}

void ContainerForm::Deactivate() {
  if (const auto in_place = Query<IOleInPlaceObject>(control_.Get())) in_place->InPlaceDeactivate();
}

// A control that keeps another size than it was given tells its site so.
void ContainerForm::Resize(const SIZE& pixels) {
  SIZEL wanted = UnitsOf(pixels);
  IgnoreResult(control_->SetExtent(DVASPECT_CONTENT, &wanted));
  IgnoreResult(Extent());
  const auto in_place = Query<IOleInPlaceObject>(control_.Get());
  if (!in_place || ControlWindow() == nullptr) return;
  const RECT before = window_.PlaceOfControl();
  const RECT place{before.left, before.top, before.left + pixels.cx, before.top + pixels.cy};
  window_.PutControl(place);
  RECT form{};
  ::GetClientRect(window_.Handle(), &form);
  Check(in_place->SetObjectRects(&place, &form), u"IOleInPlaceObject.SetObjectRects");
}

std::string ContainerForm::Show() {
  if (window_.Handle() == nullptr)
    return "nothing, as no window can be made, for want of a display? (" + window_.Reason() + ")";
  Activate();
  window_.ShowForAMoment();
  return std::string("a window of ") + std::to_string(FormWindow::kWidth) + " x " +
         std::to_string(FormWindow::kHeight) + " pixels, in it the control's, " +
         DescribeControlWindow() + ", and a panel, " + Describe(FormWindow::PlaceOfPanel());
}

// The keyboard is waited for beside, as the window wants to be served.
void ContainerForm::StayUntilEnter() {
  if (window_.Handle() == nullptr) return;
  const HANDLE reader = ::CreateThread(nullptr, 0, ReadLine, nullptr, 0, nullptr);
  if (reader == nullptr) RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), u"CreateThread");
  window_.StayUntil(reader);
  ::CloseHandle(reader);
}

void ContainerForm::Put(const Text& member, const TaggedValue& value) {
  members_.Put(member, value);
  for (const DISPID id : sink_->Take()) listener_(NameOf(id));
}

std::int32_t ContainerForm::GetCRCValue() { return ToInteger32(members_.Call(u"GetCRCValue")); }

void ContainerForm::ShowHelp(DWORD context) {
  help_.Open(folder_ + HelpFileName(members_.Type()), context, window_.Handle());
}

DWORD ContainerForm::HelpContextOf(const Text& member) {
  DWORD context = 0;
  Check(
      members_.Type()->GetDocumentation(members_.IdOf(member), nullptr, nullptr, &context, nullptr),
      u"ITypeInfo.GetDocumentation");
  return context;
}

// F1 in the window. What goes wrong is told there, too.
void ContainerForm::ShowHelpOrFailure() {
  try {
    ShowHelp(0);
  } catch (...) {
    const RuntimeError error = CurrentRuntimeError();
    const Text message = error.description + u"\n" + error.source;
    ::MessageBoxW(window_.Handle(), Wide(message), L"Form", MB_OK | MB_ICONWARNING);
  }
}

ComPtr<IPersistPropertyBag> ContainerForm::Persistence() const {
  auto persistence = Query<IPersistPropertyBag>(control_.Get());
  if (!persistence) RaiseResult(E_NOINTERFACE, u"IPersistPropertyBag");
  return persistence;
}

void ContainerForm::ListenToChanges() {
  const auto points = Query<IConnectionPointContainer>(control_.Get());
  if (!points) RaiseResult(E_NOINTERFACE, u"IConnectionPointContainer");
  Check(points->FindConnectionPoint(__uuidof(IPropertyNotifySink), point_.Receive()),
        u"IConnectionPointContainer.FindConnectionPoint");
  Check(point_->Advise(sink_.Get(), &cookie_), u"IConnectionPoint.Advise");
}

HWND ContainerForm::ControlWindow() const {
  HWND own = nullptr;
  const auto in_place = Query<IOleInPlaceObject>(control_.Get());
  return in_place && SUCCEEDED(in_place->GetWindow(&own)) ? own : nullptr;
}

std::string ContainerForm::DescribeControlWindow() const {
  const HWND own = ControlWindow();
  if (own == nullptr) return "missing";
  RECT place{};
  ::GetWindowRect(own, &place);
  ::MapWindowPoints(nullptr, window_.Handle(), reinterpret_cast<POINT*>(&place), 2);
  return Describe(place);
}

}  // namespace quorvane::programs
