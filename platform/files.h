#pragma once

#include <cstdint>

#include "runtime/byte_array.h"
#include "runtime/text.h"

namespace quorvane {

/// Access to files by number, for reading. A failing operation raises a run-time error whose
/// number, source and description are the platform's own; nothing is then open that was not open
/// before.
///
/// Names are the caller's, unchanged: the platform decides what a relative or an empty one means; a
/// zero ends a name. Numbers belong to the calling thread, and what it leaves open is closed when
/// it ends.
class Files {
 public:
  virtual ~Files() = default;

  /// The first directory entry that matches the name (wild cards allowed) among normal files,
  /// without its directory; the empty text when there is none. Hidden files, system files and
  /// directories do not count.
  ///
  /// Left open: whether a name without wild cards comes back as it was spelled or as its directory
  /// spells it, and which of several matches is the first. A name that leads nowhere finds nothing;
  /// one that is no name at all may raise bad file name (52).
  [[nodiscard]] virtual Text ListName(const Text& name) = 0;

  /// A small non-zero number that no open file holds. The number stays free until a file is opened
  /// under it. Raises too many files (67) when none is left.
  [[nodiscard]] virtual std::int16_t FreeFileNumber() = 0;

  /// Opens the file for reading under the number, 1 to 511. Others may read it, but not write to
  /// it, while it is open.
  ///
  /// Raises bad file name or number (52) for any other number and for what is no file's name, file
  /// already open (55) for a number in use, file not found (53), path not found (76) when the
  /// directory is missing, permission denied (70) while somebody has it open for writing, and
  /// access error (75) for a directory or for lack of rights.
  virtual void OpenForReading(const Text& name, std::int16_t number) = 0;

  /// The length of an open file in bytes: the low 32 bits of it, so a file of 2147483648 bytes or
  /// more may show a negative one. Raises bad file name or number (52) when nothing is open under
  /// the number.
  [[nodiscard]] virtual std::int32_t Length(std::int16_t number) = 0;

  /// Reads as many bytes as the buffer has elements, from the file's current place, and moves on by
  /// that many. Where the file ends early the elements behind keep their bytes, and that is no
  /// failure. Raises 52 when nothing is open under the number.
  virtual void Read(std::int16_t number, ByteArray& buffer) = 0;

  /// Closes the file; a number under which nothing is open is let pass. Never fails.
  virtual void Close(std::int16_t number) = 0;
};

/// The platform's files.
[[nodiscard]] Files& files() noexcept;

}  // namespace quorvane
