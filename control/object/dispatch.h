#pragma once

#include "control/SecurityCtrl.h"
#include "control/automation/type_information.h"
#include "control/object/face.h"
#include "control/object/security_ctrl_interface.h"

namespace quorvane::server {

/// The members of the control, early bound (_SecurityCtrl) and late bound (IDispatch, over the
/// module's own type library), and what tells about them.
///
/// An out pointer that is null gives E_POINTER; any other is null or 0 first, because it is copied
/// out even from a failed call. A failing member gives 0x800A0000 + number and leaves the error
/// object; Invoke makes DISP_E_EXCEPTION of it. No argument is checked.
class DispatchFace final : public Face<ISecurityCtrl, ISupportErrorInfo, IProvideClassInfo2> {
 public:
  DispatchFace(IUnknown* outer, SecurityCtrl& logic) : Face(outer), logic_(logic) {}

  [[nodiscard]] void* Find(REFIID id);

  // IDispatch. Names count without case; the locale is not looked at.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** out) override;
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override;
  /// Reaches the members of the table in identities.h and nothing else: what IDispatch and IUnknown
  /// bring along (Release!) is DISP_E_MEMBERNOTFOUND, like any unknown number.
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                                   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* exception,
                                   UINT* wrong_argument) override;

  // _SecurityCtrl.
  HRESULT STDMETHODCALLTYPE get_ServerAddress(BSTR* value) override;
  HRESULT STDMETHODCALLTYPE put_ServerAddress(BSTR str_New_ServerAddress) override;
  HRESULT STDMETHODCALLTYPE get_ServerPort(short* value) override;
  HRESULT STDMETHODCALLTYPE put_ServerPort(short int_New_ServerPort) override;
  HRESULT STDMETHODCALLTYPE get_ServerFile(BSTR* value) override;
  HRESULT STDMETHODCALLTYPE put_ServerFile(BSTR str_New_ServerFile) override;
  HRESULT STDMETHODCALLTYPE put_UseProxy(VARIANT_BOOL bolUseProxy) override;
  HRESULT STDMETHODCALLTYPE get_UseProxy(VARIANT_BOOL* value) override;
  HRESULT STDMETHODCALLTYPE put_ProxyServer(BSTR strProxyServer) override;
  HRESULT STDMETHODCALLTYPE get_ProxyServer(BSTR* value) override;
  HRESULT STDMETHODCALLTYPE put_UserName(BSTR strUserName) override;
  HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) override;
  HRESULT STDMETHODCALLTYPE put_Password(BSTR strPassword) override;
  HRESULT STDMETHODCALLTYPE get_Password(BSTR* value) override;
  HRESULT STDMETHODCALLTYPE GetCRCValue(long* value) override;

  // ISupportErrorInfo.
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override;

  // IProvideClassInfo2.
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** out) override;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* out) override;

 private:
  HRESULT GetText(BSTR* value, Text (SecurityCtrl::*member)() const);
  HRESULT PutText(BSTR value, void (SecurityCtrl::*member)(const Text&));

  SecurityCtrl& logic_;
  TypeInformation types_;
};

}  // namespace quorvane::server
