#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "platform/thread_record.h"
#include "runtime/runtime_error.h"

namespace quorvane {

/// The files that one thread has open, by their numbers 1 to 511; the rules for those numbers, the
/// same on every platform. The files still open are closed when the thread ends.
///
/// `OpenFile` is the platform's own handle: movable, empty when default-constructed, true in a
/// condition when a file is open, and closing it on destruction and on assignment.
template <class OpenFile>
class FileNumbers final : public ThreadRecord {
 public:
  /// The lowest number that no open file holds; too many files (67) when none is left.
  [[nodiscard]] std::int16_t Free() const {
    for (std::int16_t number = 1; number <= kLast; ++number)
      if (!files_[Slot(number)]) return number;
    Raise(ErrorNumber::kTooManyFiles);
  }

  /// Raises bad file name or number (52) outside 1 to 511, file already open (55) for a number that
  /// an open file holds. To be asked before the file is opened.
  void RequireFree(std::int16_t number) const {
    if (!IsValid(number)) Raise(ErrorNumber::kBadFileNumber);
    if (files_[Slot(number)]) Raise(ErrorNumber::kFileAlreadyOpen);
  }

  /// Takes an open file under a number that RequireFree() let pass.
  void Keep(std::int16_t number, OpenFile file) { files_[Slot(number)] = std::move(file); }

  /// The file open under the number; bad file name or number (52) when there is none.
  [[nodiscard]] const OpenFile& At(std::int16_t number) const {
    if (!IsValid(number) || !files_[Slot(number)]) Raise(ErrorNumber::kBadFileNumber);
    return files_[Slot(number)];
  }

  /// Closes the file under the number; a number without one is let pass.
  void Close(std::int16_t number) {
    if (IsValid(number)) files_[Slot(number)] = OpenFile{};
  }

 private:
  static constexpr std::int16_t kLast = 511;

  static bool IsValid(std::int16_t number) { return number >= 1 && number <= kLast; }
  static std::size_t Slot(std::int16_t number) { return static_cast<std::size_t>(number - 1); }

  std::array<OpenFile, kLast> files_{};
};

}  // namespace quorvane
