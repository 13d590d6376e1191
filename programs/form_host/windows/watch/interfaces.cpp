// The interfaces whose calls are watched: a row for each method, with the names of its parameters
// and "out " before those that it fills.

#include <algorithm>
#include <stdexcept>

#include "programs/form_host/windows/watch/watcher.h"

namespace quorvane::programs {
namespace {

using Methods = std::vector<Method>;

std::vector<Parameter> ParametersOf(std::string_view list) {
  constexpr std::string_view kOut = "out ";
  std::vector<Parameter> parameters;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(", "), list.size());
    std::string_view name = list.substr(0, end);
    const bool is_out = name.starts_with(kOut);
    if (is_out) name.remove_prefix(kOut.size());
    parameters.push_back({std::string(name), is_out});
    list.remove_prefix(std::min(end + 2, list.size()));
  }
  return parameters;
}

template <auto Member>
Method Row(const char* name, std::string_view parameters) {
  Method method{name, ParametersOf(parameters), SlotOf(Member),
                reinterpret_cast<void*>(&Watcher<Member>::Call)};
  if (method.parameters.size() != Watcher<Member>::kParameters) throw std::logic_error(name);
  return method;
}

Methods operator+(Methods first, const Methods& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Methods OfWindow() {
  return {Row<&IOleWindow::GetWindow>("GetWindow", "out window"),
          Row<&IOleWindow::ContextSensitiveHelp>("ContextSensitiveHelp", "enter")};
}

// --- of the control ------------------------------------------------------------------------------

Methods OfObject() {
  return {
      Row<&IOleObject::SetClientSite>("SetClientSite", "site"),
      Row<&IOleObject::GetClientSite>("GetClientSite", "out site"),
      Row<&IOleObject::SetHostNames>("SetHostNames", "application, document"),
      Row<&IOleObject::Close>("Close", "option"),
      Row<&IOleObject::SetMoniker>("SetMoniker", "which, moniker"),
      Row<&IOleObject::GetMoniker>("GetMoniker", "assign, which, out moniker"),
      Row<&IOleObject::InitFromData>("InitFromData", "data, creation, reserved"),
      Row<&IOleObject::GetClipboardData>("GetClipboardData", "reserved, out data"),
      Row<&IOleObject::DoVerb>("DoVerb", "verb, message, site, index, window, place"),
      Row<&IOleObject::EnumVerbs>("EnumVerbs", "out verbs"),
      Row<&IOleObject::Update>("Update", ""),
      Row<&IOleObject::IsUpToDate>("IsUpToDate", ""),
      Row<&IOleObject::GetUserClassID>("GetUserClassID", "out class"),
      Row<&IOleObject::GetUserType>("GetUserType", "form, out name"),
      Row<&IOleObject::SetExtent>("SetExtent", "aspect, extent"),
      Row<&IOleObject::GetExtent>("GetExtent", "aspect, out extent"),
      Row<&IOleObject::Advise>("Advise", "sink, out cookie"),
      Row<&IOleObject::Unadvise>("Unadvise", "cookie"),
      Row<&IOleObject::EnumAdvise>("EnumAdvise", "out advises"),
      Row<&IOleObject::GetMiscStatus>("GetMiscStatus", "aspect, out status"),
      Row<&IOleObject::SetColorScheme>("SetColorScheme", "palette"),
  };
}

Methods OfControl() {
  return {Row<&IOleControl::GetControlInfo>("GetControlInfo", "info"),
          Row<&IOleControl::OnMnemonic>("OnMnemonic", "message"),
          Row<&IOleControl::OnAmbientPropertyChange>("OnAmbientPropertyChange", "id"),
          Row<&IOleControl::FreezeEvents>("FreezeEvents", "freeze")};
}

Methods OfInPlaceObject() {
  return OfWindow() +
         Methods{Row<&IOleInPlaceObject::InPlaceDeactivate>("InPlaceDeactivate", ""),
                 Row<&IOleInPlaceObject::UIDeactivate>("UIDeactivate", ""),
                 Row<&IOleInPlaceObject::SetObjectRects>("SetObjectRects", "place, clip"),
                 Row<&IOleInPlaceObject::ReactivateAndUndo>("ReactivateAndUndo", "")};
}

Methods OfActiveObject() {
  using Active = IOleInPlaceActiveObject;
  return OfWindow() +
         Methods{Row<&Active::TranslateAccelerator>("TranslateAccelerator", "message"),
                 Row<&Active::OnFrameWindowActivate>("OnFrameWindowActivate", "activate"),
                 Row<&Active::OnDocWindowActivate>("OnDocWindowActivate", "activate"),
                 Row<&Active::ResizeBorder>("ResizeBorder", "border, window, frame"),
                 Row<&Active::EnableModeless>("EnableModeless", "enable")};
}

Methods OfPersist() { return {Row<&IPersist::GetClassID>("GetClassID", "out class")}; }

Methods OfPersistPropertyBag() {
  return OfPersist() + Methods{Row<&IPersistPropertyBag::InitNew>("InitNew", ""),
                               Row<&IPersistPropertyBag::Load>("Load", "bag, log"),
                               Row<&IPersistPropertyBag::Save>("Save", "bag, clear, all")};
}

Methods OfPersistStreamInit() {
  return OfPersist() + Methods{Row<&IPersistStreamInit::IsDirty>("IsDirty", ""),
                               Row<&IPersistStreamInit::Load>("Load", "stream"),
                               Row<&IPersistStreamInit::Save>("Save", "stream, clear"),
                               Row<&IPersistStreamInit::GetSizeMax>("GetSizeMax", "size"),
                               Row<&IPersistStreamInit::InitNew>("InitNew", "")};
}

Methods OfConnectionPoints() {
  using Points = IConnectionPointContainer;
  return {Row<&Points::EnumConnectionPoints>("EnumConnectionPoints", "out points"),
          Row<&Points::FindConnectionPoint>("FindConnectionPoint", "id, out point")};
}

Methods OfConnectionPoint() {
  using Point = IConnectionPoint;
  return {Row<&Point::GetConnectionInterface>("GetConnectionInterface", "out id"),
          Row<&Point::GetConnectionPointContainer>("GetConnectionPointContainer", "out points"),
          Row<&Point::Advise>("Advise", "sink, out cookie"),
          Row<&Point::Unadvise>("Unadvise", "cookie"),
          Row<&Point::EnumConnections>("EnumConnections", "out connections")};
}

Methods OfDispatch() {
  return {
      Row<&IDispatch::GetTypeInfoCount>("GetTypeInfoCount", "out count"),
      Row<&IDispatch::GetTypeInfo>("GetTypeInfo", "index, locale, out type"),
      Row<&IDispatch::GetIDsOfNames>("GetIDsOfNames", "id, names, count, locale, out ids"),
      Row<&IDispatch::Invoke>(
          "Invoke", "member, id, locale, kind, arguments, out result, out exception, out wrong")};
}

// --- of the container ----------------------------------------------------------------------------

Methods OfClientSite() {
  return {Row<&IOleClientSite::SaveObject>("SaveObject", ""),
          Row<&IOleClientSite::GetMoniker>("GetMoniker", "assign, which, out moniker"),
          Row<&IOleClientSite::GetContainer>("GetContainer", "out container"),
          Row<&IOleClientSite::ShowObject>("ShowObject", ""),
          Row<&IOleClientSite::OnShowWindow>("OnShowWindow", "show"),
          Row<&IOleClientSite::RequestNewObjectLayout>("RequestNewObjectLayout", "")};
}

Methods OfInPlaceSite() {
  using Site = IOleInPlaceSite;
  return OfWindow() +
         Methods{Row<&Site::CanInPlaceActivate>("CanInPlaceActivate", ""),
                 Row<&Site::OnInPlaceActivate>("OnInPlaceActivate", ""),
                 Row<&Site::OnUIActivate>("OnUIActivate", ""),
                 Row<&Site::GetWindowContext>("GetWindowContext",
                                              "out frame, out page, out place, out clip, info"),
                 Row<&Site::Scroll>("Scroll", "extent"),
                 Row<&Site::OnUIDeactivate>("OnUIDeactivate", "undoable"),
                 Row<&Site::OnInPlaceDeactivate>("OnInPlaceDeactivate", ""),
                 Row<&Site::DiscardUndoState>("DiscardUndoState", ""),
                 Row<&Site::DeactivateAndUndo>("DeactivateAndUndo", ""),
                 Row<&Site::OnPosRectChange>("OnPosRectChange", "place")};
}

Methods OfControlSite() {
  using Site = IOleControlSite;
  return {Row<&Site::OnControlInfoChanged>("OnControlInfoChanged", ""),
          Row<&Site::LockInPlaceActive>("LockInPlaceActive", "lock"),
          Row<&Site::GetExtendedControl>("GetExtendedControl", "out control"),
          Row<&Site::TransformCoords>("TransformCoords", "himetric, container, how"),
          Row<&Site::TranslateAccelerator>("TranslateAccelerator", "message, keys"),
          Row<&Site::OnFocus>("OnFocus", "got"),
          Row<&Site::ShowPropertyFrame>("ShowPropertyFrame", "")};
}

Methods OfUiWindow() {
  using Page = IOleInPlaceUIWindow;
  return OfWindow() + Methods{Row<&Page::GetBorder>("GetBorder", "out border"),
                              Row<&Page::RequestBorderSpace>("RequestBorderSpace", "widths"),
                              Row<&Page::SetBorderSpace>("SetBorderSpace", "widths"),
                              Row<&Page::SetActiveObject>("SetActiveObject", "object, name")};
}

Methods OfFrame() {
  using Frame = IOleInPlaceFrame;
  return OfUiWindow() +
         Methods{Row<&Frame::InsertMenus>("InsertMenus", "menu, widths"),
                 Row<&Frame::SetMenu>("SetMenu", "menu, shared, window"),
                 Row<&Frame::RemoveMenus>("RemoveMenus", "menu"),
                 Row<&Frame::SetStatusText>("SetStatusText", "text"),
                 Row<&Frame::EnableModeless>("EnableModeless", "enable"),
                 Row<&Frame::TranslateAccelerator>("TranslateAccelerator", "message, id")};
}

Methods OfPropertyBag() {
  return {Row<&IPropertyBag::Read>("Read", "name, out value, log"),
          Row<&IPropertyBag::Write>("Write", "name, value")};
}

Methods OfPropertySink() {
  return {Row<&IPropertyNotifySink::OnChanged>("OnChanged", "member"),
          Row<&IPropertyNotifySink::OnRequestEdit>("OnRequestEdit", "member")};
}

template <class Any>
Interface Of(const char* name, const Methods& methods) {
  static_assert(kIsWatched<Any>);
  return {__uuidof(Any), name, methods};
}

const std::vector<Interface>& All() {
  static const std::vector<Interface> all{
      Of<IUnknown>("IUnknown", {}),
      Of<IOleWindow>("IOleWindow", OfWindow()),
      Of<IOleObject>("IOleObject", OfObject()),
      Of<IOleControl>("IOleControl", OfControl()),
      Of<IOleInPlaceObject>("IOleInPlaceObject", OfInPlaceObject()),
      Of<IOleInPlaceActiveObject>("IOleInPlaceActiveObject", OfActiveObject()),
      Of<IPersistPropertyBag>("IPersistPropertyBag", OfPersistPropertyBag()),
      Of<IPersistStreamInit>("IPersistStreamInit", OfPersistStreamInit()),
      Of<IConnectionPointContainer>("IConnectionPointContainer", OfConnectionPoints()),
      Of<IConnectionPoint>("IConnectionPoint", OfConnectionPoint()),
      Of<IDispatch>("IDispatch", OfDispatch()),
      Of<IOleClientSite>("IOleClientSite", OfClientSite()),
      Of<IOleInPlaceSite>("IOleInPlaceSite", OfInPlaceSite()),
      Of<IOleControlSite>("IOleControlSite", OfControlSite()),
      Of<IOleInPlaceUIWindow>("IOleInPlaceUIWindow", OfUiWindow()),
      Of<IOleInPlaceFrame>("IOleInPlaceFrame", OfFrame()),
      Of<IPropertyBag>("IPropertyBag", OfPropertyBag()),
      Of<IPropertyNotifySink>("IPropertyNotifySink", OfPropertySink()),
  };
  return all;
}

}  // namespace

// A row that is missing, or stands twice, would send calls astray.
Interface::Interface(const GUID& its_id, const char* its_name,
                     const std::vector<Method>& its_methods)
    : id(its_id), name(its_name), methods(its_methods) {
  table = {reinterpret_cast<void*>(&FaceQueryInterface), reinterpret_cast<void*>(&FaceAddRef),
           reinterpret_cast<void*>(&FaceRelease)};
  for (const Method& method : methods) {
    if (method.slot != table.size()) throw std::logic_error(std::string(name) + "." + method.name);
    table.push_back(method.watcher);
  }
}

const Interface* FindInterface(REFIID id) {
  const auto found =
      std::ranges::find_if(All(), [&](const Interface& candidate) { return candidate.id == id; });
  return found == All().end() ? nullptr : &*found;
}

}  // namespace quorvane::programs
