// A growing file image in little-endian order.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "control/interface/guid.h"

namespace quorvane::typelib {

class Bytes {
 public:
  std::uint32_t Size() const { return static_cast<std::uint32_t>(data_.size()); }
  const std::vector<std::uint8_t>& Data() const { return data_; }

  void Put8(std::uint32_t value) { data_.push_back(static_cast<std::uint8_t>(value)); }

  void Put16(std::uint32_t value) {
    Put8(value & 0xFF);
    Put8((value >> 8) & 0xFF);
  }

  void Put32(std::uint32_t value) {
    Put16(value & 0xFFFF);
    Put16(value >> 16);
  }

  void Put32(std::initializer_list<std::uint32_t> values) {
    for (std::uint32_t value : values) Put32(value);
  }

  void PutText(std::string_view text) {
    for (char character : text) Put8(static_cast<std::uint8_t>(character));
  }

  void PutId(const identities::Guid& id) {
    Put32(id.data1);
    Put16(id.data2);
    Put16(id.data3);
    for (std::uint8_t byte : id.data4) Put8(byte);
  }

  void Append(const Bytes& other) {
    for (std::uint8_t byte : other.data_) Put8(byte);
  }

  /// Fills up to a multiple of 4 bytes.
  void Align(char filler) {
    while (Size() % 4 != 0) Put8(static_cast<std::uint8_t>(filler));
  }

 private:
  std::vector<std::uint8_t> data_;
};

}  // namespace quorvane::typelib
