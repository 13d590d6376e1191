#include "programs/quorvane/progress.h"

#include <string>

#include "programs/common/customs.h"

namespace quorvane::programs {
namespace {

constexpr std::int64_t kLargeFile = 16LL * 1024 * 1024;
constexpr std::size_t kBarWidth = 40;
// Blanks over "[...] 100 %" and a ^C behind it, as not every console understands the sequence that
// clears a line.
constexpr const char* kWipe = "\r                                                    \r";
static_assert(std::char_traits<char>::length(kWipe) == kBarWidth + 14);

}  // namespace

Progress::~Progress() {
  if (next_draw_ == INT64_MAX) return;
  console_.Err(kWipe);
  SetFarewell(nullptr);
}

void Progress::Expect(std::int64_t length) {
  if (length < kLargeFile || !console_.ErrorIsTerminal()) return;
  length_ = length;
  next_draw_ = 0;
  SetFarewell(kWipe);
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

}  // namespace quorvane::programs
