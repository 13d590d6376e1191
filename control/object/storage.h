#pragma once

#include <cstdint>
#include <optional>

#include "control/automation/face.h"
#include "control/object/persistence.h"

namespace quorvane::component {

/// Saving and loading by a storage of the container's compound file. The storage holds one stream,
/// "CONTENTS", in the form that IPersistStreamInit writes; the class id in it is the container's to
/// write, as is a commit.
///
/// The states are those that the component model lays down. A control that was given a storage by
/// InitNew, Load or SaveCompleted holds that storage and its open stream (normal). A Save leads to
/// "no scribble", HandsOffStorage to "hands off", where nothing of the container's is held;
/// SaveCompleted leads back from either. The control writes in Save only, so that "no scribble"
/// asks nothing of it, and a further Save is taken there.
///
/// As the stream stays open, a save into the storage at hand opens nothing, and works when the
/// system could open no more. Every call of a storage lets its container run, which may call
/// any of these operations; what is held is exchanged as a whole.
class StorageFace final : public Face<IPersistStorage> {
 public:
  StorageFace(IUnknown* outer, PersistenceFace& persistence)
      : Face(outer), persistence_(persistence) {}

  [[nodiscard]] void* Find(REFIID id);
  /// The settings of the moment, into the stream held when that is the storage held, else into a
  /// new one; state and mark stay. The storage's own failure, or E_OUTOFMEMORY before it is
  /// touched.
  [[nodiscard]] HRESULT Write(IStorage& storage);

  // IPersist.
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* out) override;

  // IPersistStorage. A failure of the storage's or the stream's is passed on, and leaves the
  // settings, the mark of changes and the state as they were.
  HRESULT STDMETHODCALLTYPE IsDirty() override;
  /// A newly placed control. CO_E_ALREADYINITIALIZED, and nothing changed, once it was given a
  /// storage, or once something was loaded.
  HRESULT STDMETHODCALLTYPE InitNew(IStorage* storage) override;
  /// CO_E_ALREADYINITIALIZED once it was given a storage; a load from elsewhere does not matter.
  /// E_FAIL when the stream does not hold a whole StreamBag. A storage that can only be read will
  /// do.
  HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override;
  /// Where it goes is decided by the storage, not by `same_as_load`. That clears the mark of
  /// changes; without it SaveCompleted with a storage does. E_UNEXPECTED in "hands off".
  HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL same_as_load) override;
  /// Null: the storage is as before. E_UNEXPECTED in the normal state, E_INVALIDARG for null in
  /// "hands off".
  HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* storage) override;
  HRESULT STDMETHODCALLTYPE HandsOffStorage() override;

 private:
  struct Place {
    ComPtr<IStorage> storage;
    ComPtr<IStream> contents;
  };

  [[nodiscard]] bool HasStorage() const { return hands_off_ || held_.storage; }

  PersistenceFace& persistence_;
  Place held_;
  bool hands_off_ = false;
  std::optional<std::uint32_t> saved_at_;  // the changes that the last Save holds: "no scribble"
};

}  // namespace quorvane::component
