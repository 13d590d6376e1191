// The interface of the control for C++, written by the build from control/interface/identities.h.
#pragma once

#include <ole2.h>

inline constexpr CLSID CLSID_SecurityCtrl = {
    0xD87A57E7, 0x81C3, 0x11D5, {0x97, 0xD8, 0x00, 0x50, 0xBA, 0x8C, 0xAA, 0xD8}};
inline constexpr IID IID_ISecurityCtrl = {
    0x80A6F5ED, 0x2A74, 0x4AA0, {0xBD, 0x7A, 0x21, 0x1C, 0xF8, 0x5A, 0xEC, 0xE2}};

/// The virtual table of _SecurityCtrl.
struct ISecurityCtrl : IDispatch {
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
