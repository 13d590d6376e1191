#pragma once

#include <concepts>
#include <cstdio>
#include <string>
#include <string_view>

namespace quorvane::testing {

/// An argument as a call log shows it: a text in quotation marks, null as `null`; bytes outside
/// printable ASCII as \xNN; a run of more than eight equal bytes as `x*count`.
inline std::string Shown(std::string_view bytes) {
  if (bytes.data() == nullptr) return "null";
  std::string shown = "\"";
  for (std::size_t at = 0; at < bytes.size();) {
    std::size_t run = at;
    while (run < bytes.size() && bytes[run] == bytes[at]) ++run;
    std::string one(1, bytes[at]);
    if (bytes[at] < ' ' || bytes[at] > '~') {
      char escaped[5];
      std::snprintf(escaped, sizeof escaped, "\\x%02X",
                    static_cast<unsigned>(static_cast<unsigned char>(bytes[at])));
      one = escaped;
    }
    const bool long_run = run - at > 8;
    shown += one;
    if (long_run) shown += "*" + std::to_string(run - at);
    at = long_run ? run : at + 1;
  }
  return shown + "\"";
}

inline std::string Shown(const char* text) {
  return Shown(text == nullptr ? std::string_view() : std::string_view(text));
}

template <std::integral Number>
std::string Shown(Number number) {
  return std::to_string(number);
}

/// `Name(argument, argument)`.
template <class... Arguments>
std::string CallText(std::string name, const Arguments&... arguments) {
  std::string list;
  ((list += (list.empty() ? "" : ", ") + Shown(arguments)), ...);
  return name + "(" + list + ")";
}

}  // namespace quorvane::testing
