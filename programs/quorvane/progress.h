#pragma once

#include <cstdint>

#include "programs/common/console.h"

namespace quorvane::programs {

/// A bar on standard error while a large file is read; it wipes itself away in the end. Nothing is
/// shown for a file below 16 MB, nor when standard error is no terminal. It is drawn once for each
/// percent, so that it costs nothing beside the reading.
class Progress {
 public:
  /// The console must outlive the bar.
  explicit Progress(Console& console) : console_(console) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// How many bytes are to come; the bar stays away until this is known.
  void Expect(std::int64_t length);
  /// So many bytes more have passed.
  void Advance(std::int64_t count);

 private:
  void Draw() const;

  Console& console_;
  std::int64_t length_ = 0;
  std::int64_t passed_ = 0;
  std::int64_t next_draw_ = INT64_MAX;
};

}  // namespace quorvane::programs
