#pragma once

#include "control/automation/com.h"

namespace quorvane::server {

/// The virtual table of _SecurityCtrl, as clients were compiled against it. It answers to the
/// interface ids of all generations in identities.h.
///
/// Kept: the first three properties stand get before put, the last four put before get; clients
/// call by position. Pinned by TypeLibrary.HasTheDualInterfaceWithItsMembersInOrder.
class ISecurityCtrl : public IDispatch {
 public:
  virtual HRESULT STDMETHODCALLTYPE get_ServerAddress(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ServerAddress(BSTR str_New_ServerAddress) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ServerPort(short* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ServerPort(short int_New_ServerPort) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ServerFile(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ServerFile(BSTR str_New_ServerFile) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_UseProxy(VARIANT_BOOL bolUseProxy) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UseProxy(VARIANT_BOOL* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_ProxyServer(BSTR strProxyServer) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProxyServer(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_UserName(BSTR strUserName) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_UserName(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Password(BSTR strPassword) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Password(BSTR* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCRCValue(long* value) = 0;
};

}  // namespace quorvane::server
