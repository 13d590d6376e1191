#include "control/automation/stream.h"

#include <algorithm>

namespace quorvane::component {
namespace {

constexpr std::size_t kStep = 4096;

}  // namespace

HRESULT ReadExactly(ISequentialStream& stream, std::uint32_t size,
                    std::vector<std::uint8_t>& bytes) {
  bytes.clear();
  while (bytes.size() < size) {
    const std::size_t old_size = bytes.size();
    const std::size_t step = std::min(kStep, size - old_size);
    bytes.resize(old_size + step);
    ULONG count = 0;
    const HRESULT result = stream.Read(bytes.data() + old_size, static_cast<ULONG>(step), &count);
    if (FAILED(result)) return result;
    if (count == 0 || count > step) return E_FAIL;
    bytes.resize(old_size + count);
  }
  return S_OK;
}

HRESULT WriteWholly(ISequentialStream& stream, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    ULONG count = 0;
    const HRESULT result = stream.Write(bytes.data(), static_cast<ULONG>(bytes.size()), &count);
    if (FAILED(result)) return result;
    if (count == 0 || count > bytes.size()) return STG_E_MEDIUMFULL;
    bytes = bytes.subspan(count);
  }
  return S_OK;
}

}  // namespace quorvane::component
