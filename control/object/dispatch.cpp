#include "control/object/dispatch.h"

#include <algorithm>

#include "control/interface/identities.h"

namespace quorvane::component {
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
  return InterfaceMap<ISupportErrorInfo, IProvideClassInfo, IProvideClassInfo2>::Find(*this, id);
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
    // Kept: arguments are converted by the rules of automation, so a late-bound Boolean of the
    // integer 1 reads back as -1, and only one of type VT_BOOL keeps its 1. Pinned by
    // Dispatch.MakesAnIntegerABooleanAndLeavesABooleansBits.
    return members->Invoke(static_cast<ISecurityCtrl*>(this), id, flags, arguments, result,
                           exception, wrong_argument);
  });
}

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
  return Guarded([&] { return types_.Find(AsGuid(identities::kClassId), out); });
}

HRESULT DispatchFace::GetGUID(DWORD kind, GUID* out) {
  if (out == nullptr) return E_POINTER;
  *out = kNoId;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  *out = AsGuid(identities::kPresent.source_id);
  return S_OK;
}

}  // namespace quorvane::component
