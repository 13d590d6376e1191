#include "platform/oleaut32.h"

#include "platform/windows/floating_point_unit.h"
#include "platform/windows/os_headers.h"
// Behind the line above: it needs the types of that header.
#include <oleauto.h>

namespace quorvane {
namespace {

static_assert(Oleaut32::kNoUserOverride == LOCALE_NOUSEROVERRIDE);
static_assert(Oleaut32::kTypeMismatch == DISP_E_TYPEMISMATCH);
static_assert(Oleaut32::kOverflow == DISP_E_OVERFLOW);
static_assert(Oleaut32::kOutOfMemory == E_OUTOFMEMORY);

// The calls only read the text; some headers declare it as if they wrote it.
OLECHAR* Wide(const char16_t* text) {
  return reinterpret_cast<OLECHAR*>(const_cast<char16_t*>(text));
}

// A text of the system's, given back at the end.
class Bstr {
 public:
  Bstr() = default;
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { ::SysFreeString(text_); }
  [[nodiscard]] BSTR* Receive() { return &text_; }
  [[nodiscard]] std::u16string Characters() const {
    return {reinterpret_cast<const char16_t*>(text_), ::SysStringLen(text_)};
  }

 private:
  BSTR text_ = nullptr;
};

class WindowsOleaut32 final : public Oleaut32 {
 public:
  std::int32_t VarI2FromStr(const char16_t* text, std::uint32_t locale, std::uint32_t flags,
                            std::int16_t* value) override {
    const FloatingPointUnit unit;
    return ::VarI2FromStr(Wide(text), locale, flags, value);
  }

  std::int32_t VarI4FromStr(const char16_t* text, std::uint32_t locale, std::uint32_t flags,
                            std::int32_t* value) override {
    const FloatingPointUnit unit;
    LONG integer = *value;
    const HRESULT result = ::VarI4FromStr(Wide(text), locale, flags, &integer);
    *value = integer;
    return result;
  }

  std::int32_t VarBoolFromStr(const char16_t* text, std::uint32_t locale, std::uint32_t flags,
                              std::int16_t* value) override {
    const FloatingPointUnit unit;
    return ::VarBoolFromStr(Wide(text), locale, flags, value);
  }

  std::int32_t VarBstrFromR8(double value, std::uint32_t locale, std::uint32_t flags,
                             std::u16string* text) override {
    const FloatingPointUnit unit;
    Bstr written;
    const HRESULT result = ::VarBstrFromR8(value, locale, flags, written.Receive());
    if (SUCCEEDED(result)) *text = written.Characters();
    return result;
  }
};

}  // namespace

Oleaut32& oleaut32() noexcept {
  static WindowsOleaut32 instance;
  return instance;
}

}  // namespace quorvane
