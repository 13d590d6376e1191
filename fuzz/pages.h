#pragma once

#include <array>
#include <memory>

#include "platform/posix/system_text.h"

namespace quorvane::fuzz {

/// One of the pages that the targets go through: of one byte for each character, or of one or two.
[[nodiscard]] inline const CodePage& PageOf(std::uint8_t choice) {
  static const std::array kNumbers{1252, 932, 936, 949, 950, 874, 1251, 1255};
  static std::array<std::unique_ptr<CodePage>, kNumbers.size()> pages;
  auto& page = pages[choice % pages.size()];
  if (!page) page = MakeCodePage(kNumbers[choice % kNumbers.size()]);
  return *page;
}

}  // namespace quorvane::fuzz
