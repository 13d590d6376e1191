#pragma once

#include <utility>
#include <vector>

#include "control/automation/com.h"
#include "control/automation/error_to_hresult.h"
#include "control/automation/module_lock.h"

namespace quorvane::component {

/// One of the component model's enumerators over a list that was fixed when it was made. `Item`
/// holds an element, `Raw` is the form in which Item::CopyTo(Raw*) hands it out.
template <class EnumInterface, class Item, class Raw>
class Enumerator final : public EnumInterface {
 public:
  using Items = std::vector<Item>;

  /// Stores a new enumerator with one reference. Throws std::bad_alloc.
  static void Create(Items items, std::size_t position, EnumInterface** out) {
    *out = new Enumerator(std::move(items), position);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
    if (out == nullptr) return E_POINTER;
    const bool is_ours = id == __uuidof(IUnknown) || id == __uuidof(EnumInterface);
    *out = is_ours ? static_cast<EnumInterface*>(this) : nullptr;
    if (!is_ours) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    return static_cast<ULONG>(::InterlockedIncrement(&references_));
  }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = ::InterlockedDecrement(&references_);
    if (left == 0) {
      const ModuleLock until_all_is_done;
      delete this;
    }
    return static_cast<ULONG>(left);
  }

  /// The count of fetched elements may be unasked for only when one element is wanted.
  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, Raw* out, ULONG* fetched) override {
    if (fetched != nullptr) *fetched = 0;
    if (out == nullptr || (fetched == nullptr && wanted != 1)) return E_POINTER;
    const ComPtr<EnumInterface> alive(this);  // while the elements are counted by their owners
    ULONG count = 0;
    while (count < wanted && position_ < items_.size()) {
      items_[position_++].CopyTo(&out[count]);
      ++count;
    }
    if (fetched != nullptr) *fetched = count;
    return count == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = items_.size() - position_;
    position_ += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(EnumInterface** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    const ComPtr<EnumInterface> alive(this);
    return Guarded([&] {
      Create(items_, position_, out);
      return S_OK;
    });
  }

 private:
  Enumerator(Items items, std::size_t position) : items_(std::move(items)), position_(position) {}
  ~Enumerator() = default;

  ModuleLock lock_;
  Items items_;
  std::size_t position_;
  LONG references_ = 1;
};

}  // namespace quorvane::component
