#include "control/object/dispatch.h"

#include <algorithm>

#include "control/automation/error_to_hresult.h"
#include "control/automation/strings.h"
#include "control/interface/identities.h"

namespace quorvane::server {
namespace {

bool IsMembersInterface(REFIID id) {
  return id == __uuidof(IDispatch) ||
         std::ranges::any_of(identities::kGenerations, [&id](const identities::Generation& one) {
           return AsGuid(one.interface_id) == id;
         });
}

bool IsMember(DISPID id) {
  return std::ranges::any_of(identities::kMembers, [id](const identities::Member& member) {
    return member.dispatch_id == id;
  });
}

constexpr GUID kNoId{};

}  // namespace

void* DispatchFace::Find(REFIID id) {
  if (IsMembersInterface(id)) return static_cast<ISecurityCtrl*>(this);
  return FindInterface<ISupportErrorInfo, IProvideClassInfo, IProvideClassInfo2>(*this, id);
}

HRESULT DispatchFace::GetTypeInfoCount(UINT* count) {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT DispatchFace::GetTypeInfo(UINT index, LCID /*locale*/, ITypeInfo** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return Guarded([&] { return types_.Find(AsGuid(identities::kPresent.interface_id), out); });
}

HRESULT DispatchFace::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID /*locale*/,
                                    DISPID* ids) {
  if (reserved != kNoId) return DISP_E_UNKNOWNINTERFACE;
  if (names == nullptr || ids == nullptr) return E_POINTER;
  return Guarded([&] {
    ITypeInfo* const members = types_.OfMembers();
    return members != nullptr ? members->GetIDsOfNames(names, count, ids) : TYPE_E_CANTLOADLIBRARY;
  });
}

HRESULT DispatchFace::Invoke(DISPID id, REFIID reserved, LCID /*locale*/, WORD flags,
                             DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                             UINT* wrong_argument) {
  if (reserved != kNoId) return DISP_E_UNKNOWNINTERFACE;
  if (!IsMember(id)) return DISP_E_MEMBERNOTFOUND;
  if (arguments == nullptr) return E_POINTER;
  const auto alive = KeepAlive();
  return Guarded([&] {
    ITypeInfo* const members = types_.OfMembers();
    if (members == nullptr) return TYPE_E_CANTLOADLIBRARY;
    ::SetErrorInfo(0, nullptr);
    return members->Invoke(static_cast<ISecurityCtrl*>(this), id, flags, arguments, result,
                           exception, wrong_argument);
  });
}

HRESULT DispatchFace::GetText(BSTR* value, Text (SecurityCtrl::*member)() const) {
  if (value == nullptr) return E_POINTER;
  *value = nullptr;
  return GuardedMember([&] { *value = NewBstr((logic_.*member)()); });
}

HRESULT DispatchFace::PutText(BSTR value, void (SecurityCtrl::*member)(const Text&)) {
  const auto alive = KeepAlive();
  return GuardedMember([&] { (logic_.*member)(FromBstr(value)); });
}

HRESULT DispatchFace::get_ServerAddress(BSTR* value) {
  return GetText(value, &SecurityCtrl::ServerAddress);
}

HRESULT DispatchFace::put_ServerAddress(BSTR str_New_ServerAddress) {
  return PutText(str_New_ServerAddress, &SecurityCtrl::PutServerAddress);
}

HRESULT DispatchFace::get_ServerPort(short* value) {
  if (value == nullptr) return E_POINTER;
  *value = 0;
  return GuardedMember([&] { *value = logic_.ServerPort(); });
}

HRESULT DispatchFace::put_ServerPort(short int_New_ServerPort) {
  const auto alive = KeepAlive();
  return GuardedMember([&] { logic_.PutServerPort(int_New_ServerPort); });
}

HRESULT DispatchFace::get_ServerFile(BSTR* value) {
  return GetText(value, &SecurityCtrl::ServerFile);
}

HRESULT DispatchFace::put_ServerFile(BSTR str_New_ServerFile) {
  return PutText(str_New_ServerFile, &SecurityCtrl::PutServerFile);
}

HRESULT DispatchFace::put_UseProxy(VARIANT_BOOL bolUseProxy) {
  const auto alive = KeepAlive();
  return GuardedMember([&] { logic_.PutUseProxy(Boolean16{bolUseProxy}); });
}

HRESULT DispatchFace::get_UseProxy(VARIANT_BOOL* value) {
  if (value == nullptr) return E_POINTER;
  *value = VARIANT_FALSE;
  return GuardedMember([&] { *value = logic_.UseProxy().bits; });
}

HRESULT DispatchFace::put_ProxyServer(BSTR strProxyServer) {
  return PutText(strProxyServer, &SecurityCtrl::PutProxyServer);
}

HRESULT DispatchFace::get_ProxyServer(BSTR* value) {
  return GetText(value, &SecurityCtrl::ProxyServer);
}

HRESULT DispatchFace::put_UserName(BSTR strUserName) {
  return PutText(strUserName, &SecurityCtrl::PutUserName);
}

HRESULT DispatchFace::get_UserName(BSTR* value) { return GetText(value, &SecurityCtrl::UserName); }

HRESULT DispatchFace::put_Password(BSTR strPassword) {
  return PutText(strPassword, &SecurityCtrl::PutPassword);
}

HRESULT DispatchFace::get_Password(BSTR* value) { return GetText(value, &SecurityCtrl::Password); }

HRESULT DispatchFace::GetCRCValue(long* value) {
  if (value == nullptr) return E_POINTER;
  *value = 0;
  return GuardedMember([&] { *value = logic_.GetCRCValue(); });
}

HRESULT DispatchFace::InterfaceSupportsErrorInfo(REFIID id) {
  return IsMembersInterface(id) ? S_OK : S_FALSE;
}

HRESULT DispatchFace::GetClassInfo(ITypeInfo** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return Guarded([&] { return types_.Find(AsGuid(identities::kClassId), out); });
}

HRESULT DispatchFace::GetGUID(DWORD kind, GUID* out) {
  if (out == nullptr) return E_POINTER;
  *out = kNoId;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *out = AsGuid(identities::kPresent.source_id);
  return S_OK;
}

}  // namespace quorvane::server
