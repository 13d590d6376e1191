#include "control/object/persistence.h"

#include <optional>
#include <vector>

#include "control/automation/error_to_hresult.h"
#include "control/automation/stream.h"
#include "control/automation/strings.h"
#include "control/automation/variant_value.h"
#include "control/interface/identities.h"
#include "control/stream_bag.h"

namespace quorvane::component {
namespace {

/// The container's IPropertyBag as the control's logic sees it. Holds nothing beyond the call that
/// brought the bag.
class ContainerBag final : public PropertyBag {
 public:
  /// The log may be null; the bag must not.
  ContainerBag(IPropertyBag& bag, IErrorLog* log) : bag_(bag), log_(log) {}

  /// The bag is told the type of the default as the wanted one, and whatever comes back is taken.
  /// Containers say "not stored" in three ways: E_INVALIDARG; S_OK with VT_EMPTY; S_OK with
  /// DISP_E_PARAMNOTFOUND in the value. Any other failure raises overflow (6) for DISP_E_OVERFLOW,
  /// else type mismatch (13).
  [[nodiscard]] TaggedValue ReadProperty(const Text& name,
                                         const TaggedValue& default_value) override;
  /// Writes nothing when the value equals the default. Raises the number of the bag's failure.
  void WriteProperty(const Text& name, const TaggedValue& value,
                     const TaggedValue& default_value) override;

 private:
  IPropertyBag& bag_;
  IErrorLog* log_;
};

TaggedValue ContainerBag::ReadProperty(const Text& name, const TaggedValue& default_value) {
  const VARTYPE wanted = TypeOf(default_value);
  Variant answer;
  V_VT(answer.Get()) = wanted;
  const HRESULT result = bag_.Read(Wide(name), answer.Get(), log_);
  if (result == E_INVALIDARG) return default_value;
  if (FAILED(result)) RaiseFailedCall(result == DISP_E_OVERFLOW ? result : DISP_E_TYPEMISMATCH);
  if (IsMissing(*answer.Get())) return default_value;
  return ToTaggedValue(*answer.Get(), wanted);
}

void ContainerBag::WriteProperty(const Text& name, const TaggedValue& value,
                                 const TaggedValue& default_value) {
  if (value == default_value) return;
  Variant out(value);
  const HRESULT result = bag_.Write(Wide(name), out.Get());
  if (FAILED(result)) RaiseFailedCall(result);
}

}  // namespace

void* PersistenceFace::Find(REFIID id) {
  if (id == __uuidof(IPersist) || id == __uuidof(IPersistStream))
    return static_cast<IPersistStreamInit*>(this);
  return InterfaceMap<IPersistStreamInit, IPersistPropertyBag>::Find(*this, id);
}

HRESULT PersistenceFace::GetClassID(CLSID* out) {
  if (out == nullptr) return E_POINTER;
  *out = AsGuid(identities::kClassId);
  return S_OK;
}

// Kept: InitNew after a Load is refused, as the component model's documentation asks; a container
// that always sends it would wipe what it just loaded. Pinned by
// BagLoad.IsKeptFromALaterInitNew.
HRESULT PersistenceFace::InitNew() {
  if (was_loaded_) return E_UNEXPECTED;
  logic_.InitProperties();
  // Kept: a new control is clean, though its port of 0 is not the default of a saved form; a
  // container that asks first saves it only after a change. Pinned by
  // Dirtiness.FollowsPutsLoadsAndSavesOfThisControl.
  MarkCleanAt(changes_);
  return S_OK;
}

// Kept: a further Load works, after InitNew too; a container that loads twice would notice a
// refusal. Pinned by BagLoad.MayBeRepeated.
//
// Clean from before the bag is read: a container may put a property from within its bag.
void PersistenceFace::LoadFrom(PropertyBag& bag) {
  MarkCleanAt(changes_);
  logic_.ReadProperties(bag);
  was_loaded_ = true;
}

std::vector<std::uint8_t> PersistenceFace::Bytes() const {
  StreamBag bag;
  logic_.WriteProperties(bag);
  return bag.ToBytes();
}

HRESULT PersistenceFace::IsDirty() { return IsMarkedDirty() ? S_OK : S_FALSE; }

HRESULT PersistenceFace::Load(IStream* stream) {
  if (stream == nullptr) return E_POINTER;
  const auto alive = KeepAlive();
  return Guarded([&]() -> HRESULT {
    std::vector<std::uint8_t> head;
    if (const HRESULT result = ReadExactly(*stream, StreamBag::kHeadSize, head); FAILED(result))
      return result;
    const auto body_size = StreamBag::BodySize(std::span(head).first<StreamBag::kHeadSize>());
    if (!body_size) return E_FAIL;
    std::vector<std::uint8_t> body;
    if (const HRESULT result = ReadExactly(*stream, *body_size, body); FAILED(result))
      return result;
    std::optional<StreamBag> bag = StreamBag::FromBody(body);
    if (!bag) return E_FAIL;
    LoadFrom(*bag);
    return S_OK;
  });
}

HRESULT PersistenceFace::Save(IStream* stream, BOOL clear_dirty) {
  if (stream == nullptr) return E_POINTER;
  const auto alive = KeepAlive();
  return Guarded([&] {
    const auto bytes = Bytes();
    const std::uint32_t written = changes_;
    const HRESULT result = WriteWholly(*stream, bytes);
    if (SUCCEEDED(result) && clear_dirty != FALSE) MarkCleanAt(written);
    return result;
  });
}

HRESULT PersistenceFace::GetSizeMax(ULARGE_INTEGER* out) {
  if (out == nullptr) return E_POINTER;
  out->QuadPart = 0;
  return Guarded([&] {
    out->QuadPart = Bytes().size();
    return S_OK;
  });
}

HRESULT PersistenceFace::Load(IPropertyBag* bag, IErrorLog* log) {
  if (bag == nullptr) return E_POINTER;
  const auto alive = KeepAlive();
  ContainerBag container_bag(*bag, log);
  LoadFrom(container_bag);
  return S_OK;
}

// Kept: the event drops its errors, so a save into a failing bag says S_OK over a half-written form
// and clears the mark; a container learns of it by its own bag only. Pinned by
// BagSave.LeavesLaterFieldsOutAtEachWriteThatFailsInTurnAndStillSucceeds.
HRESULT PersistenceFace::Save(IPropertyBag* bag, BOOL clear_dirty, BOOL /*save_all*/) {
  if (bag == nullptr) return E_POINTER;
  const auto alive = KeepAlive();
  ContainerBag container_bag(*bag, nullptr);
  if (clear_dirty != FALSE) MarkCleanAt(changes_);
  logic_.WriteProperties(container_bag);
  return S_OK;
}

}  // namespace quorvane::component
