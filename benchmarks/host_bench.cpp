// What the wrappers of the host services add to the system's calls: each operation beside the bare
// calls that it makes, in the same order, with the texts already in 8 bits. On Linux the calls are
// the stand-ins'.

#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "host/basAPI_api.h"
#include "runtime/ignored_result.h"
#include "runtime/utf8.h"
#include "tests/host/private_stores.h"

namespace quorvane::benchmarks {
namespace {

constexpr RegistryHandle kCurrentUser = -2147483647;
constexpr std::int32_t kReadAccess = 131097;
constexpr std::int32_t kWriteAccess = 63;

// Runs the body once a round.
template <class Body>
void Rounds(benchmark::State& state, Body body) {
  for ([[maybe_unused]] auto round : state) {
    benchmark::DoNotOptimize(body());
    benchmark::ClobberMemory();
  }
}

// --- platform and system directory

void BareVersion(benchmark::State& state) {
  Rounds(state, [] {
    OsVersionInformation information{};
    information.dwOSVersionInfoSize = sizeof information;
    IgnoreResult(kernel32().GetVersionExA(&information));
    return information.dwPlatformId;
  });
}

void PlatformName(benchmark::State& state) {
  Rounds(state, [] { return basAPI_api::GetOSPlatformName(); });
}

void BareDirectory(benchmark::State& state) {
  Rounds(state, [] {
    std::array<char, 255> buffer;
    return kernel32().GetSystemDirectoryA(buffer.data(), 255);
  });
}

// What an 8-bit call for a 16-bit buffer costs by the system's own conversions, there and back,
// with nothing done to the text.
void DirectoryWithConversions(benchmark::State& state) {
  Rounds(state, [] {
    std::string bytes = systemCodePage().ToBytes(std::u16string(255, u' '));
    IgnoreResult(kernel32().GetSystemDirectoryA(bytes.data(), 255));
    return systemCodePage().FromBytes(bytes);
  });
}

void SystemDirectory(benchmark::State& state) {
  Rounds(state, [] { return basAPI_api::GetSystemDirectoryPath(); });
}

// --- the registry

struct RegistrySample {
  Text path = testing::FreshKeyPath();
  Text name = u"name";
  std::string path_bytes = ToUtf8(path);

  void Store(TaggedValue value, std::int32_t type) {
    IgnoreResult(basAPI_api::WriteRegistryValue(kCurrentUser, path, name, value, type));
  }
};

void BareRead(benchmark::State& state, const TaggedValue& value, std::int32_t type) {
  RegistrySample sample;
  sample.Store(value, type);
  std::array<char, 300> data;
  Rounds(state, [&] {
    RegistryHandle key = 0;
    std::int32_t stored_type = 0;
    std::int32_t size = 0;
    std::int32_t result =
        advapi32().RegOpenKeyExA(kCurrentUser, sample.path_bytes.c_str(), 0, kReadAccess, &key);
    result |= advapi32().RegQueryValueExA(key, "name", nullptr, &stored_type, nullptr, &size);
    result |= advapi32().RegQueryValueExA(key, "name", nullptr, &stored_type, data.data(), &size);
    return result | advapi32().RegCloseKey(key);
  });
}

void Read(benchmark::State& state, const TaggedValue& value, std::int32_t type) {
  RegistrySample sample;
  sample.Store(value, type);
  Rounds(state,
         [&] { return basAPI_api::ReadRegistryValue(kCurrentUser, sample.path, sample.name); });
}

void BareWrite(benchmark::State& state, const std::string& data, std::int32_t type) {
  const RegistrySample sample;
  Rounds(state, [&] {
    RegistryHandle key = 0;
    std::int32_t disposition = 0;
    std::int32_t result =
        advapi32().RegCreateKeyExA(kCurrentUser, sample.path_bytes.c_str(), 0, nullptr, 0,
                                   kWriteAccess, nullptr, &key, &disposition);
    result |= advapi32().RegSetValueExA(key, "name", 0, type, data.c_str(),
                                        static_cast<std::int32_t>(data.size()));
    return result | advapi32().RegCloseKey(key);
  });
}

void Write(benchmark::State& state, TaggedValue value, std::int32_t type) {
  RegistrySample sample;
  Rounds(state, [&] {
    return basAPI_api::WriteRegistryValue(kCurrentUser, sample.path, sample.name, value, type);
  });
}

// --- profiles

struct ProfileSample {
  Text file = testing::FreshProfileName();
  Text section = u"Section";
  Text key = u"key";
  Text value = u"a value of some length";
  std::string file_bytes = ToUtf8(file);
  std::string value_bytes = ToUtf8(value);

  ProfileSample() {
    IgnoreResult(basAPI_api::WritePrivateProfileValue(section, key, value, file));
    IgnoreResult(basAPI_api::WriteProfileValue(section, key, value));
  }
};

void BareProfileRead(benchmark::State& state) {
  const ProfileSample sample;
  std::array<char, 256> buffer;
  Rounds(state,
         [&] { return kernel32().GetProfileStringA("Section", "key", "", buffer.data(), 256); });
}

void ProfileRead(benchmark::State& state) {
  ProfileSample sample;
  Rounds(state, [&] { return basAPI_api::ReadProfileValue(sample.section, sample.key); });
}

void BarePrivateRead(benchmark::State& state) {
  const ProfileSample sample;
  std::array<char, 256> buffer;
  Rounds(state, [&] {
    return kernel32().GetPrivateProfileStringA("Section", "key", "", buffer.data(), 256,
                                               sample.file_bytes.c_str());
  });
}

void PrivateRead(benchmark::State& state) {
  ProfileSample sample;
  Rounds(state, [&] {
    return basAPI_api::ReadPrivateProfileValue(sample.section, sample.key, sample.file);
  });
}

// Two values in turn, so that every round changes the file.
void BareProfileWrite(benchmark::State& state) {
  const ProfileSample sample;
  bool odd = false;
  Rounds(state, [&] {
    odd = !odd;
    return kernel32().WriteProfileStringA("Section", "key", odd ? "odd" : "even");
  });
}

void ProfileWrite(benchmark::State& state) {
  ProfileSample sample;
  std::array<Text, 2> values{u"even", u"odd"};
  std::size_t odd = 0;
  Rounds(state, [&] {
    odd = 1 - odd;
    return basAPI_api::WriteProfileValue(sample.section, sample.key, values[odd]);
  });
}

void BarePrivateWrite(benchmark::State& state) {
  const ProfileSample sample;
  bool odd = false;
  Rounds(state, [&] {
    odd = !odd;
    return kernel32().WritePrivateProfileStringA("Section", "key", odd ? "odd" : "even",
                                                 sample.file_bytes.c_str());
  });
}

void PrivateWrite(benchmark::State& state) {
  ProfileSample sample;
  std::array<Text, 2> values{u"even", u"odd"};
  std::size_t odd = 0;
  Rounds(state, [&] {
    odd = 1 - odd;
    return basAPI_api::WritePrivateProfileValue(sample.section, sample.key, values[odd],
                                                sample.file);
  });
}

// --- the account

std::int32_t BareUserName(std::array<char, 25>& name) {
  std::int32_t size = 25;
  return advapi32().GetUserNameA(name.data(), &size);
}

std::int32_t BareLookup(const char* name, std::array<char, 68>& sid) {
  std::array<char, 512> domain;
  std::int32_t sid_size = 0;
  std::int32_t domain_size = 512;
  std::int32_t type = 0;
  const auto pass = [&] {
    return advapi32().LookupAccountNameA(nullptr, name, sid.data(), &sid_size, domain.data(),
                                         &domain_size, &type);
  };
  IgnoreResult(pass());
  return pass();
}

std::int32_t BareSidText(const std::array<char, 68>& sid) {
  std::array<char, 200> text;
  Address32 address = kNoAddress;
  IgnoreResult(advapi32().ConvertSidToStringSidA(sid.data(), &address));
  const std::int32_t length = kernel32().lstrlenA(address);
  kernel32().RtlMoveMemory(text.data(), address, static_cast<std::uint32_t>(length));
  IgnoreResult(kernel32().LocalFree(address));
  return length;
}

void BareUser(benchmark::State& state) {
  std::array<char, 25> name{};
  Rounds(state, [&] { return BareUserName(name); });
}

void User(benchmark::State& state) {
  Rounds(state, [] { return basAPI_api::GetCurrentUserName(); });
}

void BareAccountLookup(benchmark::State& state) {
  std::array<char, 25> name{};
  std::array<char, 68> sid{};
  BareUserName(name);
  Rounds(state, [&] { return BareLookup(name.data(), sid); });
}

void AccountLookup(benchmark::State& state) {
  Text name = basAPI_api::GetCurrentUserName();
  Text domain;
  Rounds(state, [&] { return basAPI_api::LookupAccountSidBytes(name, domain); });
}

void BareText(benchmark::State& state) {
  std::array<char, 25> name{};
  std::array<char, 68> sid{};
  BareUserName(name);
  BareLookup(name.data(), sid);
  Rounds(state, [&] { return BareSidText(sid); });
}

void SidText(benchmark::State& state) {
  Text name = basAPI_api::GetCurrentUserName();
  Text domain;
  const ByteArray sid = basAPI_api::LookupAccountSidBytes(name, domain);
  Rounds(state, [&] { return basAPI_api::SidBytesToText(sid); });
}

void BareChain(benchmark::State& state) {
  std::array<char, 25> name{};
  std::array<char, 68> sid{};
  Rounds(state,
         [&] { return BareUserName(name) + BareLookup(name.data(), sid) + BareSidText(sid); });
}

void Chain(benchmark::State& state) {
  Rounds(state, [] { return basAPI_api::GetCurrentAccountSidText(); });
}

// --- adapters

void BareAdapters(benchmark::State& state) {
  Rounds(state, [] {
    std::int32_t size = 0;
    IgnoreResult(iphlpapi().GetAdaptersInfo(nullptr, &size));
    std::vector<char> block(static_cast<std::size_t>(size));
    return iphlpapi().GetAdaptersInfo(block.data(), &size);
  });
}

void Adapters(benchmark::State& state) {
  Rounds(state, [] { return basAPI_api::GetAdapterAddresses(); });
}

const TaggedValue kText = Text(u"a value of some length");
const TaggedValue kInteger = std::int32_t{305419896};

BENCHMARK(BareVersion)->Name("Platform/base_call");
BENCHMARK(PlatformName)->Name("Platform/GetOSPlatformName");
BENCHMARK(BareDirectory)->Name("Directory/base_call");
BENCHMARK(DirectoryWithConversions)->Name("Directory/call_with_conversions");
BENCHMARK(SystemDirectory)->Name("Directory/GetSystemDirectoryPath");
BENCHMARK_CAPTURE(BareRead, , kText, 1)->Name("ReadText/base_calls");
BENCHMARK_CAPTURE(Read, , kText, 1)->Name("ReadText/ReadRegistryValue");
BENCHMARK_CAPTURE(BareRead, , kInteger, 4)->Name("ReadInteger/base_calls");
BENCHMARK_CAPTURE(Read, , kInteger, 4)->Name("ReadInteger/ReadRegistryValue");
BENCHMARK_CAPTURE(BareWrite, , "a value of some length", 1)->Name("WriteText/base_calls");
BENCHMARK_CAPTURE(Write, , kText, 1)->Name("WriteText/WriteRegistryValue");
BENCHMARK_CAPTURE(BareWrite, , "1234", 4)->Name("WriteInteger/base_calls");
BENCHMARK_CAPTURE(Write, , kInteger, 4)->Name("WriteInteger/WriteRegistryValue");
BENCHMARK(BareProfileRead)->Name("ReadOwn/base_call");
BENCHMARK(ProfileRead)->Name("ReadOwn/ReadProfileValue");
BENCHMARK(BarePrivateRead)->Name("ReadFile/base_call");
BENCHMARK(PrivateRead)->Name("ReadFile/ReadPrivateProfileValue");
BENCHMARK(BareProfileWrite)->Name("WriteOwn/base_call");
BENCHMARK(ProfileWrite)->Name("WriteOwn/WriteProfileValue");
BENCHMARK(BarePrivateWrite)->Name("WriteFile/base_call");
BENCHMARK(PrivateWrite)->Name("WriteFile/WritePrivateProfileValue");
BENCHMARK(BareUser)->Name("User/base_call");
BENCHMARK(User)->Name("User/GetCurrentUserName");
BENCHMARK(BareAccountLookup)->Name("Lookup/base_calls");
BENCHMARK(AccountLookup)->Name("Lookup/LookupAccountSidBytes");
BENCHMARK(BareText)->Name("SidText/base_calls");
BENCHMARK(SidText)->Name("SidText/SidBytesToText");
BENCHMARK(BareChain)->Name("Account/base_calls");
BENCHMARK(Chain)->Name("Account/GetCurrentAccountSidText");
BENCHMARK(BareAdapters)->Name("Adapters/base_calls");
BENCHMARK(Adapters)->Name("Adapters/GetAdapterAddresses");

}  // namespace
}  // namespace quorvane::benchmarks
