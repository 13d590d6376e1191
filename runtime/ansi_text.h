#pragma once

#include <string>
#include <utility>

#include "runtime/code_page.h"
#include "runtime/text.h"

namespace quorvane {

/// The temporary 8-bit copy that an operating-system call receives for one text.
///
/// Pointer() is what the call is given: null for an absent text, else the bytes followed by a zero
/// of their own. The call may write into them, never behind that zero. CopyBack() converts every
/// byte, not only those before a zero, back into the text that was passed.
class AnsiCopy {
 public:
  AnsiCopy(Text& original, const CodePage& code_page);

  [[nodiscard]] char* Pointer() { return original_.IsAbsent() ? nullptr : bytes_.data(); }
  void CopyBack() const;

 private:
  Text& original_;
  const CodePage& code_page_;
  std::string bytes_;
};

/// The one rule for texts around an 8-bit call: each is converted just before the call, handed over
/// by pointer, in order, and replaced right after the call by what the copy then holds, also where
/// the call only reads it. So a character that the code page cannot hold comes back changed in the
/// caller's text.
///
///   auto result = CallWithAnsi(page, [&](char* section, char* key) { return os.Call(section, key);
///   }, section, key);
template <class Call, class... Texts>
auto CallWithAnsi(const CodePage& code_page, Call&& call, Texts&... texts) {
  return [&call](auto... copies) {
    auto result = std::forward<Call>(call)(copies.Pointer()...);
    (copies.CopyBack(), ...);
    return result;
  }(AnsiCopy(texts, code_page)...);
}

}  // namespace quorvane
