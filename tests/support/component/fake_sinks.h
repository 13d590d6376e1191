#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "tests/support/component/unknown_base.h"

namespace quorvane::component {

/// A container's sink for property changes.
class FakePropertySink final : public FakeUnknown<IPropertyNotifySink> {
 public:
  HRESULT STDMETHODCALLTYPE OnChanged(DISPID id) override {
    changed.push_back(id);
    if (on_changed) on_changed();
    return answer;
  }
  HRESULT STDMETHODCALLTYPE OnRequestEdit(DISPID) override {
    ++edit_requests;
    return S_OK;
  }

  std::vector<DISPID> changed;
  std::function<void()> on_changed;
  HRESULT answer = S_OK;
  int edit_requests = 0;

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IPropertyNotifySink) ? this : nullptr;
  }
};

/// A sink for the control's events that answers one source id, or IDispatch only.
class FakeEventSink final : public FakeUnknown<IDispatch> {
 public:
  explicit FakeEventSink(const GUID& source_id) : source_id_(source_id) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    ++events;
    return S_OK;
  }

  int events = 0;

 private:
  void* Find(REFIID id) override {
    const bool known =
        IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) || IsEqualIID(id, source_id_);
    return known ? this : nullptr;
  }

  GUID source_id_;
};

/// An advise sink that counts what it is told.
class FakeAdviseSink final : public FakeUnknown<IAdviseSink> {
 public:
  void STDMETHODCALLTYPE OnDataChange(FORMATETC*, STGMEDIUM*) override {}
  void STDMETHODCALLTYPE OnViewChange(DWORD aspect, LONG index) override {
    EXPECT_EQ(aspect, static_cast<DWORD>(DVASPECT_CONTENT));
    EXPECT_EQ(index, -1);
    ++views;
  }
  void STDMETHODCALLTYPE OnRename(IMoniker*) override {}
  void STDMETHODCALLTYPE OnSave() override { ++saves; }
  void STDMETHODCALLTYPE OnClose() override { ++closes; }
  int views = 0;
  int saves = 0;
  int closes = 0;

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IAdviseSink) ? this : nullptr;
  }
};

}  // namespace quorvane::component
