#pragma once

#include <cstdint>
#include <vector>

#include "control/SecurityCtrl.h"
#include "control/automation/face.h"
#include "control/control_site.h"

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
  void MarkDirty() { ++changes_; }
  [[nodiscard]] bool IsMarkedDirty() const { return changes_ != clean_at_; }
  /// How many changes there were, for a save that is completed later.
  [[nodiscard]] std::uint32_t Changes() const { return changes_; }
  /// Clean, unless there were changes beyond that count.
  void MarkCleanAt(std::uint32_t changes) { clean_at_ = changes; }
  [[nodiscard]] bool WasLoaded() const { return was_loaded_; }
  /// The settings of the moment as a stream holds them. Throws std::bad_alloc.
  [[nodiscard]] std::vector<std::uint8_t> Bytes() const;

  // IPersist.
  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* out) override;

  /// Of both interfaces: a newly placed control. E_UNEXPECTED, and nothing changed, once something
  /// was loaded: some containers send it after every Load.
  HRESULT STDMETHODCALLTYPE InitNew() override;

  // IPersistStreamInit, and IPersistStream, whose slots are the same but for InitNew. Streams are
  // only read and written, from where they stand to exactly behind our data.
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

  SecurityCtrl& logic_;
  std::uint32_t changes_ = 0;
  std::uint32_t clean_at_ = 0;
  bool was_loaded_ = false;
};

}  // namespace quorvane::component
