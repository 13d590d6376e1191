#include "control/object/storage.h"

#include <span>
#include <utility>
#include <vector>

#include "control/automation/error_to_hresult.h"
#include "control/automation/stream.h"

namespace quorvane::component {
namespace {

constexpr const OLECHAR* kContents = L"CONTENTS";
constexpr DWORD kForReading = STGM_READ | STGM_SHARE_EXCLUSIVE;
constexpr DWORD kForWriting = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

// Only a stream that came with a success counts.
HRESULT Keep(HRESULT result, IStream* given, ComPtr<IStream>& stream) {
  if (FAILED(result)) return result;
  *stream.Receive() = given;
  return given != nullptr ? S_OK : E_UNEXPECTED;
}

HRESULT Open(IStorage& storage, DWORD mode, ComPtr<IStream>& stream) {
  IStream* given = nullptr;
  const HRESULT result = storage.OpenStream(kContents, nullptr, mode, 0, &given);
  return Keep(result, given, stream);
}

HRESULT Create(IStorage& storage, ComPtr<IStream>& stream) {
  IStream* given = nullptr;
  const HRESULT result = storage.CreateStream(kContents, kForWriting | STGM_CREATE, 0, 0, &given);
  return Keep(result, given, stream);
}

// For reading only where the storage allows no more, which systems say in two ways; saves into it
// fail then.
HRESULT OpenToKeep(IStorage& storage, ComPtr<IStream>& stream) {
  const HRESULT result = Open(storage, kForWriting, stream);
  const bool is_denied = result == STG_E_ACCESSDENIED || result == STG_E_INVALIDFLAG;
  return is_denied ? Open(storage, kForReading, stream) : result;
}

// Takes the room first, so that a medium without any leaves the old bytes alone.
HRESULT WriteFromTheFront(IStream& stream, std::span<const std::uint8_t> bytes) {
  ULARGE_INTEGER size{};
  size.QuadPart = bytes.size();
  HRESULT result = stream.SetSize(size);
  if (SUCCEEDED(result)) result = stream.Seek({}, STREAM_SEEK_SET, nullptr);
  return SUCCEEDED(result) ? WriteWholly(stream, bytes) : result;
}

}  // namespace

void* StorageFace::Find(REFIID id) { return InterfaceMap<IPersistStorage>::Find(*this, id); }

HRESULT StorageFace::GetClassID(CLSID* out) { return persistence_.GetClassID(out); }

HRESULT StorageFace::IsDirty() { return persistence_.IsDirty(); }

HRESULT StorageFace::InitNew(IStorage* storage) {
  if (storage == nullptr) return E_POINTER;
  if (HasStorage() || persistence_.WasLoaded()) return CO_E_ALREADYINITIALIZED;
  const auto alive = KeepAlive();
  Place place{ComPtr<IStorage>(storage), {}};
  HRESULT result = Create(*storage, place.contents);
  if (SUCCEEDED(result)) result = persistence_.InitNew();
  if (SUCCEEDED(result) && !hands_off_) std::swap(held_, place);
  return result;
}

HRESULT StorageFace::Load(IStorage* storage) {
  if (storage == nullptr) return E_POINTER;
  if (HasStorage()) return CO_E_ALREADYINITIALIZED;
  const auto alive = KeepAlive();
  Place place{ComPtr<IStorage>(storage), {}};
  HRESULT result = OpenToKeep(*storage, place.contents);
  if (SUCCEEDED(result)) result = persistence_.Load(place.contents.Get());
  if (SUCCEEDED(result) && !hands_off_) std::swap(held_, place);
  return result;
}

HRESULT StorageFace::Write(IStorage& storage) {
  return Guarded([&]() -> HRESULT {
    const std::vector<std::uint8_t> bytes = persistence_.Bytes();
    ComPtr<IStream> contents = held_.contents;
    if (&storage != held_.storage.Get()) {
      const HRESULT result = Create(storage, contents);
      if (FAILED(result)) return result;
    }
    return WriteFromTheFront(*contents.Get(), bytes);
  });
}

HRESULT StorageFace::Save(IStorage* storage, BOOL same_as_load) {
  if (storage == nullptr) return E_POINTER;
  if (hands_off_) return E_UNEXPECTED;
  const auto alive = KeepAlive();
  const std::uint32_t saved = persistence_.Changes();
  const HRESULT result = Write(*storage);
  if (FAILED(result)) return result;
  if (same_as_load != FALSE) persistence_.MarkCleanAt(saved);
  saved_at_ = saved;
  return S_OK;
}

HRESULT StorageFace::SaveCompleted(IStorage* storage) {
  if (!hands_off_ && !saved_at_) return E_UNEXPECTED;
  if (hands_off_ && storage == nullptr) return E_INVALIDARG;
  const auto alive = KeepAlive();
  Place place;
  if (storage != nullptr && storage != held_.storage.Get()) {
    place.storage = ComPtr<IStorage>(storage);
    const HRESULT result = OpenToKeep(*storage, place.contents);
    if (FAILED(result)) return result;
    std::swap(held_, place);
  }
  if (storage != nullptr && saved_at_) persistence_.MarkCleanAt(*saved_at_);
  saved_at_.reset();
  hands_off_ = false;
  return S_OK;
}

HRESULT StorageFace::HandsOffStorage() {
  const auto alive = KeepAlive();
  const Place released = std::exchange(held_, {});
  hands_off_ = true;
  return S_OK;
}

}  // namespace quorvane::component
