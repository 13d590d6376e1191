#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

#include "runtime/code_page.h"
#include "runtime/text.h"

namespace quorvane {

/// The temporary 8-bit copy that an operating-system call receives for one text.
///
/// Pointer() is what the call is given: null for an absent text, else the bytes followed by a zero
/// of their own. The call may write into them and over that zero, never behind it. Where the code
/// page makes fewer bytes than the text has characters, zeros fill the copy up, so that a size
/// counted in characters stays inside. CopyBack() converts every byte, not only those before a
/// zero, back into the text that was passed; the copy's own last zero and the filling are left out.
class AnsiCopy {
 public:
  /// Makes the copy. Both arguments must outlive it.
  AnsiCopy(Text& original, const CodePage& code_page);
  AnsiCopy(const AnsiCopy&) = delete;
  AnsiCopy& operator=(const AnsiCopy&) = delete;
  ~AnsiCopy() = default;

  /// What the call is given; null for an absent text.
  [[nodiscard]] char* Pointer() { return original_.IsAbsent() ? nullptr : bytes_; }
  /// Replaces the text that was passed by what the copy holds now; an absent one stays absent.
  void CopyBack() const;

 private:
  // Room for `size` bytes: most texts need no memory of their own for a call.
  [[nodiscard]] char* Room(std::size_t size);

  Text& original_;
  const CodePage& code_page_;
  std::size_t count_;
  std::array<char, 264> short_;
  std::string long_;
  char* bytes_;
};

/// The one rule for texts around an 8-bit call: each is converted just before the call, handed over
/// by pointer, in order, and replaced right after the call by what the copy then holds, also where
/// the call only reads it. So a character that the code page cannot hold comes back changed in the
/// caller's text. A call that raises a run-time error replaces nothing.
///
///   auto result = CallWithAnsi(page, [&](char* section, char* key) { return os.Call(section, key);
///   }, section, key);
template <class Call, class... Texts>
auto CallWithAnsi(const CodePage& code_page, Call&& call, Texts&... texts) {
  return [&call](auto&&... copies) {
    if constexpr (std::is_void_v<decltype(std::forward<Call>(call)(copies.Pointer()...))>) {
      std::forward<Call>(call)(copies.Pointer()...);
      (copies.CopyBack(), ...);
    } else {
      auto result = std::forward<Call>(call)(copies.Pointer()...);
      (copies.CopyBack(), ...);
      return result;
    }
  }(AnsiCopy(texts, code_page)...);
}

}  // namespace quorvane
