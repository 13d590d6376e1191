// What the system's registry, profile and directory calls hand back: any results, types, sizes and
// bytes.
//
// Oracle: each answer worked out from the script by the promises of host/basAPI_api.h.

#include <cstring>
#include <optional>

#include "fuzz/pages.h"
#include "fuzz/target.h"
#include "host/basAPI_api.h"
#include "runtime/runtime_error.h"
#include "tests/support/fake_advapi32_base.h"
#include "tests/support/fake_kernel32_base.h"

namespace quorvane::fuzz::host_values {

class ScriptedRegistry final : public testing::FakeAdvapi32Base {
 public:
  std::int32_t RegOpenKeyExA(RegistryHandle /*hive*/, const char* /*path*/,
                             std::int32_t /*options*/, std::int32_t /*access*/,
                             RegistryHandle* key) override {
    *key = 7;
    is_open = open_result == 0;
    return open_result;
  }
  std::int32_t RegQueryValueExA(RegistryHandle key, const char* /*name*/,
                                std::int32_t* /*reserved*/, std::int32_t* type, void* data,
                                std::int32_t* size) override {
    Require(key == 7 && is_open, "the key");
    if (data == nullptr) {
      *type = first_type;
      *size = first_size;
      return first_result;
    }
    Require(*size == first_size && first_size >= 0, "the size of the data");
    written = bytes.substr(0, static_cast<std::size_t>(*size));
    std::memcpy(data, written.data(), written.size());
    *size = second_size;
    return second_result;
  }
  std::int32_t RegCloseKey(RegistryHandle /*key*/) override {
    is_open = false;
    return 0;
  }

  bool is_open = false;
  std::int32_t open_result = 0, first_result = 0, second_result = 0;
  std::int32_t first_type = 0, first_size = 0, second_size = 0;
  std::string bytes;
  std::string written;
};

class ScriptedKernel final : public testing::FakeKernel32Base {
 public:
  std::int32_t GetProfileStringA(const char* /*section*/, const char* /*key*/,
                                 const char* /*default_text*/, char* buffer,
                                 std::int32_t size) override {
    return Write(buffer, size);
  }
  std::int32_t GetSystemDirectoryA(char* buffer, std::int32_t size) override {
    return Write(buffer, size);
  }

  std::string bytes;
  std::int32_t count = 0;

 private:
  std::int32_t Write(char* buffer, std::int32_t size) {
    bytes.resize(std::min(bytes.size(), static_cast<std::size_t>(size)));
    std::ranges::copy(bytes, buffer);
    return count;
  }
};

// The value, and whether the key stays open.
struct Answer {
  basAPI_api::RegistryValue value;
  bool is_open = false;
};

Answer ExpectedValue(const ScriptedRegistry& system, const CodePage& page) {
  if (system.open_result != 0) return {};
  const bool is_text = system.first_type == 1;
  const bool is_integer = system.first_type == 3 || system.first_type == 4;
  if (system.first_result != 0 || (!is_text && !is_integer)) return {};
  const Answer error{Text(u""), true};
  if (system.first_size < (is_text ? 1 : 0)) return error;
  if (system.second_result != 0) return {};
  std::string bytes = system.written;
  if (is_integer) {
    bytes.resize(std::max<std::size_t>(bytes.size(), 4));
    std::uint32_t bits = 0;
    for (std::size_t i = 4; i > 0; --i)
      bits = bits * 256 + static_cast<unsigned char>(bytes[i - 1]);
    return {static_cast<std::int32_t>(bits)};
  }
  if (system.second_size < 0) return error;
  bytes.resize(static_cast<std::size_t>(system.first_size - 1));
  const std::u16string text = page.FromBytes(bytes);
  return {Text(text.substr(0, static_cast<std::size_t>(system.second_size)))};
}

void CheckRegistry(Input& input, const CodePage& page) {
  ScriptedRegistry system;
  system.open_result = input.Byte(15) == 15 ? 2 : 0;
  system.first_result = input.Byte(15) == 15 ? 234 : 0;
  system.second_result = input.Byte(7) == 7 ? 234 : 0;
  const std::uint8_t type = input.Byte();
  constexpr std::int32_t kTypes[] = {1, 3, 4, 7};
  system.first_type = type < 250 ? kTypes[type % 4] : input.Number32();
  const std::uint8_t size = input.Byte();
  system.first_size = size < 250 ? size % 64 : size == 255 ? INT32_MIN : size - 253;
  system.second_size = input.Byte() < 250 ? system.first_size : input.Byte() - 5;
  system.bytes = input.Rest();
  Text path = u"Software";
  Text name = u"Value";
  const auto value = basAPI_api::ReadRegistryValue(1, path, name, system, page);
  const Answer expected = ExpectedValue(system, page);
  Require(value == expected.value, "ReadRegistryValue()");
  Require(system.is_open == expected.is_open, "whether the key stays open");
}

void CheckProfile(Input& input, const CodePage& page) {
  ScriptedKernel system;
  const std::uint8_t count = input.Byte();
  system.count = count < 250 ? count : input.Number32();
  system.bytes = input.Rest();
  std::string bytes = system.bytes;
  bytes.resize(256);
  std::u16string buffer = page.FromBytes(bytes);
  buffer.resize(256, u' ');
  std::int32_t error = 0;
  if (system.count < 0) error = 5;
  if (system.count < -32768 || system.count > 32767) error = 6;
  Text section = u"s";
  Text key = u"k";
  try {
    const Text value = basAPI_api::ReadProfileValue(section, key, system, page);
    Require(error == 0, "an error is passed over");
    Require(value.Characters() == buffer.substr(0, static_cast<std::size_t>(system.count)),
            "ReadProfileValue()");
  } catch (const RuntimeError& raised) {
    Require(raised.number == error, "ReadProfileValue() raises");
  }
}

void CheckDirectory(Input& input, const CodePage& page) {
  ScriptedKernel system;
  system.count = input.Byte();
  system.bytes = input.Rest();
  std::string bytes = system.bytes;
  bytes.resize(255, ' ');
  std::u16string expected = page.FromBytes(bytes);
  expected.resize(255, u' ');
  std::erase(expected, u'\0');
  const std::size_t first = expected.find_first_not_of(u' ');
  const std::size_t end = expected.find_last_not_of(u' ') + 1;
  expected = first == std::u16string::npos ? u"" : expected.substr(first, end - first);
  Require(basAPI_api::GetSystemDirectoryPath(system, page).Characters() == expected,
          "GetSystemDirectoryPath()");
}

void Run(Input input) {
  const std::uint8_t choice = input.Byte(3);
  const CodePage& page = PageOf(input.Byte());
  if (choice == 0) return CheckDirectory(input, page);
  if (choice == 1) return CheckProfile(input, page);
  CheckRegistry(input, page);
}

const Registered kTarget("host_values", Run);

}  // namespace quorvane::fuzz::host_values
