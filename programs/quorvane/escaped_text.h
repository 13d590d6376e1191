#pragma once

#include <stdexcept>
#include <string>

#include "runtime/text.h"

namespace quorvane::programs {

/// A backslash that starts no known escape. what() says which.
class EscapeError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A text on one line, as batch files hold it, with the escapes of C: \\ \' \" \? \a \b \f \n \r \t
/// \v, one to three octal digits (\0), \x and two hexadecimal digits, \u and four. Each stands for
/// one 16-bit character, so \uD83D is a single half of a surrogate pair. Raises EscapeError.
[[nodiscard]] Text Unescaped(const Text& line);

/// The text on one line, in UTF-8: the backslash, control characters and single halves of surrogate
/// pairs are escaped. Unescaped() gives the text back.
[[nodiscard]] std::string Escaped(const Text& text);

}  // namespace quorvane::programs
