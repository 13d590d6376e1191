#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "runtime/utf8.h"
#include "tests/host/private_stores.h"

namespace quorvane::testing {
namespace {

void DeleteKeyAndAllBelow(HKEY parent, const std::string& name) {
  HKEY key = nullptr;
  if (::RegOpenKeyExA(parent, name.c_str(), 0, KEY_ALL_ACCESS, &key) != 0) return;
  char child[256];
  DWORD size = sizeof child;
  while (::RegEnumKeyExA(key, 0, child, &size, nullptr, nullptr, nullptr, nullptr) == 0) {
    DeleteKeyAndAllBelow(key, child);
    size = sizeof child;
  }
  ::RegCloseKey(key);
  ::RegDeleteKeyA(parent, name.c_str());
}

// A key and a folder of this run, gone at its end.
class PrivatePlaces {
 public:
  PrivatePlaces()
      : name_("QuorvaneTests" + std::to_string(::GetCurrentProcessId())),
        folder_(std::filesystem::temp_directory_path() / name_) {
    std::filesystem::create_directories(folder_);
    DeleteKeyAndAllBelow(HKEY_CURRENT_USER, KeyPath());
  }
  PrivatePlaces(const PrivatePlaces&) = delete;
  PrivatePlaces& operator=(const PrivatePlaces&) = delete;
  ~PrivatePlaces() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    DeleteKeyAndAllBelow(HKEY_CURRENT_USER, KeyPath());
  }
  [[nodiscard]] std::string KeyPath() const { return "Software\\" + name_; }
  [[nodiscard]] const std::filesystem::path& Folder() const { return folder_; }

 private:
  std::string name_;
  std::filesystem::path folder_;
};

const PrivatePlaces places;

int fresh_count = 0;

}  // namespace

Text FreshKeyPath() { return FromUtf8(places.KeyPath() + "\\" + std::to_string(++fresh_count)); }

Text FreshProfileName() {
  return Text((places.Folder() / ("p" + std::to_string(++fresh_count) + ".ini")).u16string());
}

std::string BytesOf(const Text& profile_name) {
  std::ifstream file(std::filesystem::path(profile_name.Characters()), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const Text& profile_name, const std::string& bytes) {
  std::ofstream(std::filesystem::path(profile_name.Characters()), std::ios::binary) << bytes;
}

}  // namespace quorvane::testing
