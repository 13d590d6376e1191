#pragma once

#include "control/SecurityCtrl.h"
#include "control/object/face.h"
#include "control/stream_bag.h"

namespace quorvane::component {

/// Saving and loading: by the container's property bag, or by a stream that holds a StreamBag. Both
/// raise the same events of the logic, which drop their errors; so a bag that fails is no failed
/// call, while a stream that fails is.
///
/// A control is clean after InitNew and after Load; only a put makes it dirty, and a save clears
/// that when asked to. Streams and bags are the container's, and every call of theirs lets it run:
/// it may put, load or save there. A put from within leaves the control dirty, since what was saved
/// or loaded may lack it. The mark is the control's own although the settings are the thread's: a
/// put through another control on the thread leaves this one clean.
class PersistenceFace final : public Face<IPersistStreamInit, IPersistPropertyBag> {
 public:
  PersistenceFace(IUnknown* outer, SecurityCtrl& logic) : Face(outer), logic_(logic) {}

  [[nodiscard]] void* Find(REFIID id);
  void MarkDirty() { is_dirty_ = true; }
  [[nodiscard]] bool IsMarkedDirty() const { return is_dirty_; }

  // IPersist.
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* out) override;

  /// Of both interfaces: a newly placed control. E_UNEXPECTED, and nothing changed, once something
  /// was loaded: some containers send it after every Load.
  HRESULT STDMETHODCALLTYPE InitNew() override;

  // IPersistStreamInit. Streams are only read and written, from where they stand to exactly behind
  // our data.
  HRESULT STDMETHODCALLTYPE IsDirty() override;
  /// May come any number of times, also after InitNew. E_FAIL, and nothing changed, when the stream
  /// does not hold a whole StreamBag; the stream's own failure when it has one.
  HRESULT STDMETHODCALLTYPE Load(IStream* stream) override;
  HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clear_dirty) override;
  /// Exact for the settings of the moment.
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* out) override;

  // IPersistPropertyBag.
  HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override;
  /// Entries that equal their defaults are dropped also when all are asked for; a load sees no
  /// difference.
  HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clear_dirty, BOOL save_all) override;

 private:
  void LoadFrom(PropertyBag& bag);
  [[nodiscard]] StreamBag WrittenBag();

  SecurityCtrl& logic_;
  bool is_dirty_ = false;
  bool was_loaded_ = false;
};

}  // namespace quorvane::component
