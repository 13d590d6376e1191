#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "control/control_site.h"

namespace quorvane {

/// A property bag in a block of bytes, for containers that save a form as a stream: the control's
/// persistence runs on it unchanged.
///
/// All numbers are little-endian. The head of 12 bytes: the characters "QSPB", the version 1 (32
/// bits), the count of bytes that follow (32 bits). The body: the count of entries (32 bits), then
/// per entry the length of its name in characters (32 bits), the name (16-bit characters), the kind
/// of its value (16 bits: 8 text, 2 integer, 11 Boolean, as automation numbers them), the length of
/// its data in bytes (32 bits), the data: 16-bit characters without a terminator, or 16 bits.
///
/// What the control writes holds only what differs from the defaults. A reader passes over names
/// and kinds that it does not know, and over bytes behind the last entry.
class StreamBag final : public PropertyBag {
 public:
  static constexpr std::size_t kHeadSize = 12;  ///< in bytes

  /// The size of the body that follows the head; nothing when the head is not of this form.
  [[nodiscard]] static std::optional<std::uint32_t> BodySize(
      std::span<const std::uint8_t, kHeadSize> head);
  /// The bag in a whole body; nothing when a length in it leads beyond its end or does not fit the
  /// kind.
  [[nodiscard]] static std::optional<StreamBag> FromBody(std::span<const std::uint8_t> body);

  /// Head and body.
  [[nodiscard]] std::vector<std::uint8_t> ToBytes() const;

  /// The first entry of exactly that name.
  [[nodiscard]] TaggedValue ReadProperty(const Text& name,
                                         const TaggedValue& default_value) override;
  /// Takes texts, 16-bit integers and Booleans; raises type mismatch (13) for any other kind. A
  /// name is written at most once.
  void WriteProperty(const Text& name, const TaggedValue& value,
                     const TaggedValue& default_value) override;

 private:
  struct Entry {
    Text name;
    TaggedValue value;
  };
  std::vector<Entry> entries_;
};

}  // namespace quorvane
