#pragma once

#include "platform/system_code_page.h"
#include "runtime/text.h"

namespace quorvane {

/// Makes a whole form body, already joined as name=value pairs with "&" between them, fit for a web
/// form request (application/x-www-form-urlencoded).
///
/// Digits, the letters A to Z and a to z and the fourteen signs : / . ? = _ - $ ( ) { } ~ & stay as
/// they are, a blank becomes "+", and every other character the percent sign with the two
/// hexadecimal digits (capitals) of its code in the code page. Each 16-bit character is taken
/// alone, the halves of a surrogate pair as well. One that the page lacks, or holds in more than
/// two bytes, counts as a question mark and gives %3F; a real question mark passes.
///
/// Never fails: an input of more than 32766 characters gives the empty text, as does any other
/// failure on the way. The output may be up to five times as long as the input.
///
/// Left open on purpose: "&" and "=" inside a value are not told from the separators.
[[nodiscard]] Text FormEncode(const Text& text, const CodePage& code_page = systemCodePage());

}  // namespace quorvane
