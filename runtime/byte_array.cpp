#include "runtime/byte_array.h"

#include <utility>

#include "runtime/runtime_error.h"

namespace quorvane {
namespace {

std::size_t ElementCount(const std::vector<Bounds>& dimensions) {
  if (dimensions.empty()) return 0;
  std::uint64_t count = 1;
  for (const Bounds& bounds : dimensions) {
    if (bounds.lower > bounds.upper) return 0;
    const auto extent = static_cast<std::uint64_t>(std::int64_t{bounds.upper} - bounds.lower + 1);
    if (__builtin_mul_overflow(count, extent, &count)) Raise(ErrorNumber::kOutOfMemory);
  }
  if (count > SIZE_MAX) Raise(ErrorNumber::kOutOfMemory);
  return static_cast<std::size_t>(count);
}

}  // namespace

ByteArray::ByteArray(std::int32_t lower, std::int32_t upper)
    : ByteArray(std::vector<Bounds>{{lower, upper}}) {}

ByteArray::ByteArray(std::vector<Bounds> dimensions)
    : dimensions_(std::move(dimensions)), elements_(ElementCount(dimensions_)) {}

}  // namespace quorvane
