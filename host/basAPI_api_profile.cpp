#include "host/basAPI_api.h"
#include "runtime/ansi_text.h"
#include "runtime/fixed_buffer.h"
#include "runtime/integers.h"
#include "runtime/text_parts.h"

namespace quorvane::basAPI_api {
namespace {

constexpr std::int32_t kValueSize = 256;

// Kept: the cut counts the system's bytes but falls in 16-bit characters, and no zero is looked
// for. So a list of names keeps its zeros, and a value of ten double-byte characters has ten zeros
// behind it; a caller can split such a list at its zeros. Pinned by
// ReadProfileValue.KeepsZerosInsideTheCount, ReadProfileValue.CountsBytesUnderAMultiByteCodePage
// and JapaneseProfile.HasAZeroForEachByteBeyondTheCharacters.
Text CutToCount(std::u16string_view buffer, std::int32_t count) {
  return FirstCharacters(buffer, NarrowTo16(count));
}

}  // namespace

Text ReadProfileValue(Text& section, Text& key, Kernel32& kernel, const CodePage& code_page) {
  FixedBuffer<kValueSize> buffer('\0');
  const std::int32_t count = CallWithAnsi(
      code_page,
      [&](char* section_copy, char* key_copy) {
        return kernel.GetProfileStringA(section_copy, key_copy, "", buffer.Bytes(), kValueSize);
      },
      section, key);
  return CutToCount(buffer.CopyBack(code_page), count);
}

Boolean16 WriteProfileValue(Text& section, Text& key, Text& value, Kernel32& kernel,
                            const CodePage& code_page) {
  const std::int32_t result = CallWithAnsi(
      code_page,
      [&](char* section_copy, char* key_copy, char* value_copy) {
        return kernel.WriteProfileStringA(section_copy, key_copy, value_copy);
      },
      section, key, value);
  // Kept: only the low 16 bits count, unlike the write to a named file: a result whose low bits
  // are 0 counts as failed. Pinned by WriteProfileValue.LooksAtTheLowSixteenBitsOnly.
  return ToBoolean16((result & 0xFFFF) != 0);
}

Text ReadPrivateProfileValue(Text& section, Text& key, Text& file_name, Kernel32& kernel,
                             const CodePage& code_page) {
  FixedBuffer<kValueSize> buffer('\0');
  const std::int32_t count = CallWithAnsi(
      code_page,
      [&](char* section_copy, char* key_copy, char* file_copy) {
        return kernel.GetPrivateProfileStringA(section_copy, key_copy, "", buffer.Bytes(),
                                               kValueSize, file_copy);
      },
      section, key, file_name);
  return CutToCount(buffer.CopyBack(code_page), count);
}

Boolean16 WritePrivateProfileValue(Text& section, Text& key, Text& value, Text& file_name,
                                   Kernel32& kernel, const CodePage& code_page) {
  const std::int32_t result = CallWithAnsi(
      code_page,
      [&](char* section_copy, char* key_copy, char* value_copy, char* file_copy) {
        return kernel.WritePrivateProfileStringA(section_copy, key_copy, value_copy, file_copy);
      },
      section, key, value, file_name);
  // Kept: the whole result is narrowed first, so one beyond 16 bits raises overflow, unlike the
  // write to the system's own profile. Pinned by
  // WritePrivateProfileValue.RaisesOverflowForAResultBeyondSixteenBits.
  return ToBoolean16(NarrowTo16(result) != 0);
}

}  // namespace quorvane::basAPI_api
