#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "runtime/runtime_error.h"

namespace quorvane {

/// The bounds of one dimension, both inclusive. A lower bound above the upper one makes an empty
/// dimension.
struct Bounds {
  std::int32_t lower = 0;   ///< index of the first element
  std::int32_t upper = -1;  ///< index of the last one
};

/// An array of bytes with its own lower and upper bound, which need not start at 0.
///
/// It may also have no bounds at all (never allocated), or more than one dimension: of such an
/// array a caller sees the bounds of the first dimension and the bytes as one block, but no single
/// index reaches an element.
class ByteArray {
 public:
  /// Never allocated: it has no bounds.
  ByteArray() = default;
  /// One dimension, all elements 0.
  ByteArray(std::int32_t lower, std::int32_t upper);
  /// Any number of dimensions, all elements 0; an empty list makes a never-allocated array.
  explicit ByteArray(std::vector<Bounds> dimensions);

  /// The lower bound of the first dimension; subscript out of range (9) when never allocated.
  [[nodiscard]] std::int32_t LowerBound() const { return First().lower; }
  /// Its upper bound; likewise.
  [[nodiscard]] std::int32_t UpperBound() const { return First().upper; }

  /// The element at an index; subscript out of range (9) when never allocated, outside the bounds,
  /// or of several dimensions. Valid as long as the array is not assigned to.
  [[nodiscard]] std::uint8_t& At(std::int32_t index) { return elements_[Offset(index)]; }
  /// The element at an index, to be read; likewise.
  [[nodiscard]] const std::uint8_t& At(std::int32_t index) const {
    return elements_[Offset(index)];
  }

  /// All elements as one block, whatever the bounds; empty when never allocated.
  [[nodiscard]] std::span<std::uint8_t> Elements() { return elements_; }
  /// The same, to be read.
  [[nodiscard]] std::span<const std::uint8_t> Elements() const { return elements_; }

 private:
  // In the header, as they stand before the bytes of even the shortest array.
  [[nodiscard]] const Bounds& First() const {
    if (dimensions_.empty()) Raise(ErrorNumber::kSubscriptOutOfRange);
    return dimensions_.front();
  }
  [[nodiscard]] std::size_t Offset(std::int32_t index) const {
    const Bounds& bounds = First();
    if (dimensions_.size() != 1 || index < bounds.lower || index > bounds.upper) {
      Raise(ErrorNumber::kSubscriptOutOfRange);
    }
    return static_cast<std::size_t>(std::int64_t{index} - bounds.lower);
  }

  std::vector<Bounds> dimensions_;
  std::vector<std::uint8_t> elements_;
};

}  // namespace quorvane
