#include "programs/quorvane/progress.h"

#include <string>

namespace quorvane::examples {
namespace {

constexpr std::int64_t kLargeFile = 16LL * 1024 * 1024;
constexpr std::size_t kBarWidth = 40;
constexpr std::size_t kLineWidth = kBarWidth + 8;  // "[...] 100 %"

}  // namespace

Progress::~Progress() {
  // Blanks, as not every console understands the sequence that clears a line.
  if (next_draw_ != INT64_MAX) console_.Err("\r" + std::string(kLineWidth, ' ') + "\r");
}

void Progress::Expect(std::int64_t length) {
  if (length < kLargeFile || !console_.ErrorIsTerminal()) return;
  length_ = length;
  next_draw_ = 0;
}

void Progress::Advance(std::int64_t count) {
  passed_ += count;
  if (passed_ < next_draw_) return;
  Draw();
  next_draw_ = passed_ + length_ / 100;
}

void Progress::Draw() const {
  const auto percent = static_cast<std::size_t>(passed_ * 100 / length_);
  std::string bar(percent * kBarWidth / 100, '#');
  bar.resize(kBarWidth, '.');
  console_.Err("\r[" + bar + "] " + std::to_string(percent) + " %");
}

}  // namespace quorvane::examples
