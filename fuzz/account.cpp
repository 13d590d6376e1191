// What the system tells of accounts: names in a fixed buffer, a lookup's identifier and domain of
// any size, identifiers of any bytes.
//
// Oracle: each answer worked out from the script by the promises of host/basAPI_api.h; an
// identifier's text by printf().

#include <cstdio>
#include <cstring>
#include <optional>

#include "fuzz/pages.h"
#include "fuzz/target.h"
#include "host/basAPI_api.h"
#include "runtime/runtime_error.h"
#include "tests/support/fake_advapi32_base.h"

namespace quorvane::fuzz::account {

constexpr std::size_t kDomainSize = 512;

// What one pass of the lookup answers, whatever it was asked.
struct Pass {
  std::int32_t result;
  std::int32_t last_error;
  std::int32_t sid_size;
  std::int32_t domain_size;
  std::string sid;
  std::string domain;
};

class ScriptedAccounts final : public testing::FakeAdvapi32Base {
 public:
  std::int32_t GetUserNameA(char* buffer, std::int32_t* size) override {
    Require(*size == 25, "the size of a name");
    std::memcpy(buffer, name.data(), name.size());
    return 1;
  }
  // Writes no more than there is room for, as it is told.
  std::int32_t LookupAccountNameA(const char* system, const char* /*account*/, void* sid,
                                  std::int32_t* sid_size, char* domain, std::int32_t* domain_size,
                                  std::int32_t* /*account_type*/) override {
    Require(system == nullptr, "a system's name");
    pass = made < passes.size() ? passes[made] : Pass{};
    ++made;
    const auto room = [](std::int32_t size) { return static_cast<std::size_t>(std::max(size, 0)); };
    pass.sid.resize(std::min(pass.sid.size(), room(*sid_size)));
    pass.domain.resize(std::min(pass.domain.size(), room(*domain_size)));
    std::copy(pass.sid.begin(), pass.sid.end(), static_cast<char*>(sid));
    std::ranges::copy(pass.domain, domain);
    taken.push_back(pass);
    rooms.push_back(*domain_size);
    *sid_size = pass.sid_size;
    *domain_size = pass.domain_size;
    return pass.result;
  }
  std::int32_t LastError() override { return pass.last_error; }

  std::string name;
  std::vector<Pass> passes;
  std::size_t made = 0;
  Pass pass{};
  std::vector<Pass> taken;          // as far as there was room
  std::vector<std::int32_t> rooms;  // for the domain
};

void CheckName(Input& input) {
  const CodePage& page = PageOf(input.Byte());
  ScriptedAccounts system;
  system.name = input.Bytes(25);
  std::string bytes = system.name;
  bytes.resize(25);
  std::u16string expected = page.FromBytes(bytes);
  expected.resize(25, u' ');
  const std::size_t zero = expected.find(u'\0');
  try {
    const Text name = basAPI_api::GetCurrentUserName(system, page);
    Require(zero < expected.size() && name.Characters() == expected.substr(0, zero), "the name");
  } catch (const RuntimeError& error) {
    Require(error.number == 5 && zero >= expected.size(), "GetCurrentUserName() raises");
  }
}

void CheckLookup(Input& input) {
  ScriptedAccounts system;
  for (std::size_t count = input.Byte(4); count > 0; --count) {
    Pass pass{};
    pass.result = input.Byte(2) - 1;
    pass.last_error = input.Byte(3) != 0 ? 122 : 0;
    pass.sid_size = input.Number16() % 600 - 20;
    // Often about as much as there is room for.
    const std::uint16_t size = input.Number16();
    pass.domain_size = size < 0x8000 ? size % 1400 - 20 : size % 4 + 510;
    pass.sid = input.Bytes(input.Byte(40));
    pass.domain = input.Bytes(input.Byte(40));
    if (input.Byte(7) == 0) pass.domain.append(1300, 'd');
    system.passes.push_back(pass);
  }
  const CodePage& page = PageOf(0);
  Text name = u"somebody";
  Text domain = u"before";
  const ByteArray sid = basAPI_api::LookupAccountSidBytes(name, domain, {}, system, page);

  // Passes are made as long as each but the last one asks for more room.
  std::string domain_bytes(kDomainSize, '\0');
  for (std::size_t i = 0; i < system.taken.size(); ++i) {
    const Pass& pass = system.taken[i];
    const bool goes_on = pass.last_error == 122 && pass.sid_size >= 1;
    Require(goes_on == (i + 1 < system.taken.size()), "how many passes are made");
    Require(system.rooms[i] == (i == 0 ? 512 : system.taken[i - 1].domain_size), "the room");
    if (system.rooms[i] > 512) domain_bytes.assign(kDomainSize, '\0');
    for (std::size_t place = 0; place < std::min(pass.domain.size(), kDomainSize); ++place)
      domain_bytes[place] = pass.domain[place];
  }
  const Pass& last = system.taken.back();
  const bool is_found = last.result > 0 && last.sid_size > 0;
  std::u16string expected = page.FromBytes(domain_bytes);
  const auto length = static_cast<std::size_t>(std::max(last.domain_size, 0));
  expected.resize(is_found ? std::min(length, kDomainSize) : 0);
  Require(domain.Characters() == expected, "the domain");
  Require(sid.LowerBound() == (is_found ? 1 : 0), "where the identifier begins");
  // The bytes of a success are those of the room that the pass before it had asked for.
  const std::size_t room =
      system.taken.size() < 2
          ? 1
          : static_cast<std::size_t>(system.taken[system.taken.size() - 2].sid_size);
  std::string bytes = is_found ? last.sid : "";
  bytes.resize(is_found ? room : 1);
  const auto elements = sid.Elements();
  Require(std::string(elements.begin(), elements.end()) == bytes, "the identifier");
}

std::string SidTextOf(std::string sid) {
  sid.resize(std::max<std::size_t>(sid.size(), 68));
  const auto byte = [&sid](std::size_t i) {
    return std::uint64_t{static_cast<unsigned char>(sid[i])};
  };
  if (byte(0) != 1 || byte(1) > 15) return "";
  char part[24];
  std::uint64_t authority = 0;
  for (std::size_t i = 2; i < 8; ++i) authority = authority * 256 + byte(i);
  std::snprintf(part, sizeof part, "S1%llu", static_cast<unsigned long long>(authority));
  std::string text = part;
  for (std::size_t i = 8; i < 8 + 4 * byte(1); i += 4) {
    const std::uint64_t value =
        ((byte(i + 3) * 256 + byte(i + 2)) * 256 + byte(i + 1)) * 256 + byte(i);
    std::snprintf(part, sizeof part, "%llu", static_cast<unsigned long long>(value));
    text += part;
  }
  return text;
}

void CheckIdentifier(Input& input) {
  const std::int32_t lower = static_cast<std::int16_t>(input.Number16());
  const std::string bytes = input.Rest();
  const auto upper = lower + static_cast<std::int32_t>(bytes.size()) - 1;
  ByteArray sid(lower, upper);
  std::ranges::copy(bytes, reinterpret_cast<char*>(sid.Elements().data()));
  try {
    const Text text = basAPI_api::SidBytesToText(sid);
    const std::string expected = SidTextOf(bytes);
    Require(!bytes.empty() && text.Characters() == std::u16string(expected.begin(), expected.end()),
            "the identifier's text");
  } catch (const RuntimeError& error) {
    Require(bytes.empty() && error.number == 9, "SidBytesToText() raises");
  }
}

void Run(Input input) {
  const std::uint8_t choice = input.Byte(2);
  if (choice == 0) CheckName(input);
  if (choice == 1) CheckLookup(input);
  if (choice == 2) CheckIdentifier(input);
}

const Registered kTarget("account", Run);

}  // namespace quorvane::fuzz::account
