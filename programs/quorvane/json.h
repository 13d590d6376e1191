#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace quorvane::programs {

// JSON (RFC 8259) on one line; what goes in as a value is JSON already.

/// A text. What is no UTF-8 becomes U+FFFD.
[[nodiscard]] std::string JsonText(std::string_view utf8);
[[nodiscard]] std::string JsonBoolean(bool value);
[[nodiscard]] std::string JsonList(std::span<const std::string> values);
[[nodiscard]] std::string JsonRecord(
    std::initializer_list<std::pair<const char*, std::string>> members);

}  // namespace quorvane::programs
