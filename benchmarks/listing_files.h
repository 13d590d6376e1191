#pragma once

#include "platform/files.h"

namespace quorvane::benchmarks {

/// The first match of a name by a listing of its directory, always: what files().ListName() spares
/// a plain name on Windows. On Linux it is the same as that.
[[nodiscard]] Text ListByDirectory(const Text& name);

/// The platform's files, but with every name listed.
class ListingFiles final : public Files {
 public:
  Text ListName(const Text& name) override { return ListByDirectory(name); }
  std::int16_t FreeFileNumber() override { return files().FreeFileNumber(); }
  void OpenForReading(const Text& name, std::int16_t number) override {
    files().OpenForReading(name, number);
  }
  std::int32_t Length(std::int16_t number) override { return files().Length(number); }
  void Read(std::int16_t number, ByteArray& buffer) override { files().Read(number, buffer); }
  void Close(std::int16_t number) override { files().Close(number); }
};

}  // namespace quorvane::benchmarks
