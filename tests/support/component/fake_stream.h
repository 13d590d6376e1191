#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "tests/support/component/unknown_base.h"

namespace quorvane::component {

/// The calls of a stream that the control never makes, over a fake that has IStream among its
/// interfaces; each answers what Other() does.
template <class Base>
class OtherStreamCalls : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*,
                                   ULARGE_INTEGER*) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return Other(); }
  HRESULT STDMETHODCALLTYPE Revert() override { return Other(); }
  HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return Other(); }
  HRESULT STDMETHODCALLTYPE Clone(IStream** out) override {
    *out = nullptr;
    return Other();
  }

 protected:
  ~OtherStreamCalls() = default;
  virtual HRESULT Other() = 0;
};

/// A stream over bytes that offers Read and Write only and counts what else is called. It may
/// trickle (short reads and writes), end early, or fail.
class FakeStream final : public OtherStreamCalls<FakeUnknown<IStream>> {
 public:
  explicit FakeStream(std::vector<unsigned char> bytes = {}) : content(std::move(bytes)) {}

  HRESULT STDMETHODCALLTYPE Read(void* target, ULONG count, ULONG* read) override {
    if (on_call) on_call();
    if (++calls_ == failing_call) return failure;
    const ULONG left = static_cast<ULONG>(content.size() - position);
    const ULONG n = std::min({count, left, largest_piece});
    std::copy_n(content.begin() + static_cast<std::ptrdiff_t>(position), n,
                static_cast<unsigned char*>(target));
    position += n;
    if (read != nullptr) *read = n;
    return n == count ? S_OK : S_FALSE;
  }

  HRESULT STDMETHODCALLTYPE Write(const void* source, ULONG count, ULONG* written) override {
    if (on_call) on_call();
    if (++calls_ == failing_call) return failure;
    const ULONG n = std::min(count, largest_piece);
    const auto* bytes = static_cast<const unsigned char*>(source);
    content.insert(content.end(), bytes, bytes + n);
    if (written != nullptr) *written = n;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return Other(); }
  HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return Other(); }

  std::vector<unsigned char> content;
  std::size_t position = 0;
  ULONG largest_piece = 0x7FFFFFFF;
  int failing_call = 0;  ///< counted from 1; 0 for none
  HRESULT failure = STG_E_ACCESSDENIED;
  int other_calls = 0;
  std::function<void()> on_call;  ///< what it does first at each Read and Write

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_ISequentialStream) ||
                   IsEqualIID(id, IID_IStream)
               ? this
               : nullptr;
  }
  HRESULT Other() override {
    ++other_calls;
    return E_NOTIMPL;
  }

  int calls_ = 0;
};

}  // namespace quorvane::component
