#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

#include "tests/support/component/fake_stream.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/unknown_base.h"

namespace quorvane::component {

/// A compound file in memory or, with a path, on the disk.
inline Com<IStorage> NewCompoundFile(const std::wstring& path = {}) {
  Com<IStorage> storage;
  const DWORD mode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE | STGM_CREATE;
  if (!path.empty()) {
    EXPECT_EQ(::StgCreateDocfile(path.c_str(), mode, 0, storage.Out()), S_OK);
    return storage;
  }
  Com<ILockBytes> memory;
  EXPECT_EQ(::CreateILockBytesOnHGlobal(nullptr, TRUE, memory.Out()), S_OK);
  EXPECT_EQ(::StgCreateDocfileOnILockBytes(memory.Get(), mode, 0, storage.Out()), S_OK);
  return storage;
}

inline Com<IStorage> OpenCompoundFile(const std::wstring& path,
                                      DWORD mode = STGM_READWRITE | STGM_SHARE_EXCLUSIVE) {
  Com<IStorage> storage;
  EXPECT_EQ(::StgOpenStorage(path.c_str(), nullptr, mode, nullptr, 0, storage.Out()), S_OK);
  return storage;
}

/// What a faulty storage and its streams share: they fail together, and each call lets the test's
/// container run.
struct Medium {
  int calls = 0;
  int failing_call = 0;  ///< counted from 1; 0 for none
  HRESULT failure = STG_E_WRITEFAULT;
  std::uint64_t room = UINT64_MAX;  ///< for a stream, in bytes; more is STG_E_MEDIUMFULL
  int open_streams = 0;
  std::function<void()> on_call;  ///< what it does first at each call

  HRESULT Next() {
    if (const auto now = on_call) now();
    ++calls;
    return calls == failing_call ? failure : S_OK;
  }
};

/// A stream of a real compound file on a medium that may fail. Ends by its references.
class MediumStream final : public OtherStreamCalls<FakeUnknown<IStream>> {
 public:
  MediumStream(Com<IStream> real, Medium& medium) : real_(std::move(real)), medium_(medium) {
    ++medium_.open_streams;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = FakeUnknown::Release();
    if (left == 0) {
      --medium_.open_streams;
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE Read(void* target, ULONG count, ULONG* read) override {
    const HRESULT result = medium_.Next();
    return FAILED(result) ? result : real_->Read(target, count, read);
  }
  HRESULT STDMETHODCALLTYPE Write(const void* source, ULONG count, ULONG* written) override {
    const HRESULT result = medium_.Next();
    if (FAILED(result)) return result;
    ULARGE_INTEGER at{};
    EXPECT_EQ(real_->Seek({}, STREAM_SEEK_CUR, &at), S_OK);
    const ULONG fits =
        static_cast<ULONG>(std::min<std::uint64_t>(count, medium_.room - at.QuadPart));
    const HRESULT wrote = real_->Write(source, fits, written);
    return fits < count ? STG_E_MEDIUMFULL : wrote;
  }
  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* at) override {
    const HRESULT result = medium_.Next();
    return FAILED(result) ? result : real_->Seek(move, origin, at);
  }
  HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override {
    const HRESULT result = medium_.Next();
    if (FAILED(result)) return result;
    return size.QuadPart > medium_.room ? STG_E_MEDIUMFULL : real_->SetSize(size);
  }

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IStream) ? this : nullptr;
  }
  HRESULT Other() override { return E_NOTIMPL; }

  Com<IStream> real_;
  Medium& medium_;
};

/// The calls of a storage that the control never makes, as OtherStreamCalls.
template <class Base>
class OtherStorageCalls : public Base {
 public:
  using Base::Base;

  HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR*, DWORD, DWORD, DWORD,
                                          IStorage**) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR*, IStorage*, DWORD, SNB, DWORD,
                                        IStorage**) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE CopyTo(DWORD, const IID*, SNB, IStorage*) override { return Other(); }
  HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR*, IStorage*, const OLECHAR*,
                                          DWORD) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return Other(); }
  HRESULT STDMETHODCALLTYPE Revert() override { return Other(); }
  HRESULT STDMETHODCALLTYPE EnumElements(DWORD, void*, DWORD, IEnumSTATSTG**) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR*) override { return Other(); }
  HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR*, const OLECHAR*) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR*, const FILETIME*, const FILETIME*,
                                            const FILETIME*) override {
    return Other();
  }
  HRESULT STDMETHODCALLTYPE SetStateBits(DWORD, DWORD) override { return Other(); }
  HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return Other(); }

 protected:
  ~OtherStorageCalls() = default;
  virtual HRESULT Other() = 0;
};

/// A storage over a real compound file, on a medium that may fail. It makes and opens streams
/// and takes a class id, and counts what else is called.
class FakeStorage final : public OtherStorageCalls<FakeUnknown<IStorage>> {
 public:
  explicit FakeStorage(Com<IStorage> over = NewCompoundFile()) : real(std::move(over)) {}

  HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* name, DWORD mode, DWORD first, DWORD second,
                                         IStream** out) override {
    return Given(
        [&](Com<IStream>& stream) {
          return real->CreateStream(name, mode, first, second, stream.Out());
        },
        out);
  }
  HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* first, DWORD mode, DWORD second,
                                       IStream** out) override {
    return Given(
        [&](Com<IStream>& stream) {
          return real->OpenStream(name, first, mode, second, stream.Out());
        },
        out);
  }
  HRESULT STDMETHODCALLTYPE SetClass(REFCLSID id) override {
    ++class_calls;
    const HRESULT result = medium.Next();
    return FAILED(result) ? result : real->SetClass(id);
  }

  /// Nothing of it is held: neither the storage nor a stream.
  bool IsFree() const { return References() == 1 && medium.open_streams == 0; }

  Com<IStorage> real;
  Medium medium;
  int other_calls = 0;
  int class_calls = 0;              ///< of SetClass
  bool leaves_streams_out = false;  ///< says S_OK and gives none

 private:
  void* Find(REFIID id) override {
    return IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IStorage) ? this : nullptr;
  }
  template <class Call>
  HRESULT Given(Call call, IStream** out) {
    *out = nullptr;
    HRESULT result = medium.Next();
    if (FAILED(result) || leaves_streams_out) return result;
    Com<IStream> stream;
    result = call(stream);
    if (SUCCEEDED(result)) *out = new MediumStream(std::move(stream), medium);
    return result;
  }
  HRESULT Other() override {
    ++other_calls;
    return E_NOTIMPL;
  }
};

}  // namespace quorvane::component
