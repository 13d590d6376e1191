#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "host/basAPI_api.h"
#include "runtime/ansi_text.h"
#include "runtime/fixed_buffer.h"
#include "runtime/ignored_result.h"
#include "runtime/runtime_error.h"
#include "runtime/text_parts.h"

namespace quorvane::basAPI_api {
namespace {

constexpr std::int32_t kNameSize = 25;
constexpr std::int32_t kDomainSize = 512;
constexpr std::int32_t kInsufficientBuffer = 122;
constexpr std::size_t kLongestSid = 68;

// One lookup: what goes in and what comes out of each pass.
struct Lookup {
  Text& system_name;
  Text& account_name;
  Text& domain;
  Advapi32& advapi;
  const CodePage& code_page;
  ByteArray sid{1, 1};
  std::int32_t sid_size = 0;
  std::int32_t domain_size = kDomainSize;

  [[nodiscard]] std::int32_t Pass();
};

// The size of the domain goes in as the last pass left it. Should the system want more than the
// buffer has, it gets room of its own for the call, and the buffer the part that it can hold.
std::int32_t Lookup::Pass() {
  const std::int32_t buffer_size = domain.Length();
  std::string room;
  if (domain_size > buffer_size) room.resize(static_cast<std::size_t>(domain_size));
  std::int32_t unread_account_type = 0;
  Text no_system_name;
  return CallWithAnsi(
      code_page,
      [&](char* system, char* account, char* domain_copy) {
        const std::int32_t result = advapi.LookupAccountNameA(
            system, account, &sid.At(1), &sid_size, room.empty() ? domain_copy : room.data(),
            &domain_size, &unread_account_type);
        if (!room.empty()) std::copy_n(room.begin(), buffer_size, domain_copy);
        return result;
      },
      system_name.Length() > 0 ? system_name : no_system_name, account_name, domain);
}

}  // namespace

Text GetCurrentAccountSidText(Advapi32& advapi, Kernel32& kernel, const CodePage& code_page) {
  Text name = GetCurrentUserName(advapi, code_page);
  Text unread_domain;
  // Kept: no guard against an empty name, the lookup decides, so a system that knows an account
  // by the empty name gives its identifier. Pinned by
  // GetCurrentAccountSidText.LooksUpAnEmptyNameToo.
  return SidBytesToText(LookupAccountSidBytes(name, unread_domain, {}, advapi, code_page), advapi,
                        kernel, code_page);
}

Text GetCurrentUserName(Advapi32& advapi, const CodePage& code_page) {
  FixedBuffer<kNameSize> buffer('\0');
  std::int32_t size = kNameSize;
  // A call that fails leaves the zeros, and the text before the first one is empty.
  IgnoreResult(advapi.GetUserNameA(buffer.Bytes(), &size));
  const std::u16string_view name = buffer.CopyBack(code_page);
  // Kept: a buffer without a zero has no text before it, which raises 5: the caller sees
  // an error rather than half a name. Pinned by GetCurrentUserName.RaisesWhenNoZeroComesBack.
  const std::size_t zero = name.find(u'\0');
  if (zero == std::u16string_view::npos) Raise(ErrorNumber::kInvalidProcedureCall);
  return name.substr(0, zero);
}

ByteArray LookupAccountSidBytes(Text& account_name, Text& domain, Text system_name,
                                Advapi32& advapi, const CodePage& code_page) {
  domain = RepeatedCharacter(kDomainSize, u'\0');
  Lookup lookup{system_name, account_name, domain, advapi, code_page};
  std::int32_t result = lookup.Pass();
  // Kept: the code and the size alone decide, not the result, so a call that succeeds but leaves
  // 122 behind is made once more. Pinned by LookupAccountSidBytes.RepeatsASuccessThatLeaves122.
  while (advapi.LastError() == kInsufficientBuffer && lookup.sid_size >= 1) {
    lookup.sid = ByteArray(1, lookup.sid_size);
    result = lookup.Pass();
  }
  if (result <= 0 || lookup.sid_size <= 0) {
    domain = Text(u"");
    return ByteArray(0, 0);
  }
  domain =
      lookup.domain_size > 0 ? FirstCharacters(std::move(domain), lookup.domain_size) : Text(u"");
  return std::move(lookup.sid);
}

Text SidBytesToText(const ByteArray& sid, Advapi32& advapi, Kernel32& kernel,
                    const CodePage& code_page) {
  IgnoreResult(sid.At(sid.LowerBound()));  // raises where there is no first element
  // An identifier may say that it is longer than the array. So that the system reads no foreign
  // memory then, it is given a copy with zeros behind.
  std::array<std::uint8_t, kLongestSid> bytes{};
  std::memcpy(bytes.data(), sid.Elements().data(), std::min(sid.Elements().size(), bytes.size()));
  Text text(std::u16string{});
  Address32 address = kNoAddress;
  if (advapi.ConvertSidToStringSidA(bytes.data(), &address) != 0) {
    const std::int32_t length = kernel.lstrlenA(address);
    text = RepeatedCharacter(length, u' ');
    CallWithAnsi(
        code_page,
        [&](char* copy) {
          kernel.RtlMoveMemory(copy, address, static_cast<std::uint32_t>(length));
        },
        text);
    IgnoreResult(kernel.LocalFree(address));  // nothing could be done about a refusal
  }
  // Kept: the signs between the parts go; a host that keeps the text to compare it with would
  // notice any other form. Pinned by SidBytesToText.RemovesDashesAndSpaces.
  std::erase_if(text.Edit(), [](char16_t c) { return c == u' ' || c == u'-'; });
  return text;
}

}  // namespace quorvane::basAPI_api
