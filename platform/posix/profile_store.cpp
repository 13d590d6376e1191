#include "platform/posix/profile_store.h"

#include <algorithm>
#include <string>

#include "platform/posix/atomic_file.h"
#include "platform/posix/desktop_places.h"
#include "platform/posix/profile_document.h"
#include "platform/posix/system_text.h"

namespace quorvane::profile_store {
namespace {

std::string JoinNames(const std::vector<std::u16string>& names) {
  std::string list;
  for (const std::u16string& name : names) list += ToSystemPage(name) + '\0';
  return list;
}

std::int32_t CopyValue(const std::string& value, char* buffer, std::size_t size) {
  const std::size_t count = std::min(value.size(), size - 1);
  std::copy_n(value.begin(), count, buffer);
  buffer[count] = '\0';
  return static_cast<std::int32_t>(count);
}

// A list has one more zero at its end; a list that is cut has two there, which do not count.
std::int32_t CopyList(const std::string& list, char* buffer, std::size_t size) {
  if (list.empty() || size < 2) return CopyValue("", buffer, size);
  if (list.size() < size) return CopyValue(list, buffer, size);
  std::copy_n(list.begin(), size - 2, buffer);
  buffer[size - 2] = buffer[size - 1] = '\0';
  return static_cast<std::int32_t>(size - 2);
}

}  // namespace

std::filesystem::path SystemProfile() { return ConfigFolder() / "profile.ini"; }

std::filesystem::path NamedProfile(const char* file) {
  if (file == nullptr) return SystemProfile();
  std::filesystem::path path(SystemFileName(FromSystemPage(file)));
  return path.empty() || path.has_parent_path() ? path : ConfigFolder() / path;
}

std::int32_t Read(const std::filesystem::path& file, const char* section, const char* key,
                  const char* default_text, char* buffer, std::int32_t size) {
  if (buffer == nullptr || size <= 0) return 0;
  const auto room = static_cast<std::size_t>(size);
  std::optional<std::string> bytes;
  // The calls that this stands in for give the default whatever the reason.
  static_cast<void>(ReadFile(file, bytes));
  ProfileDocument document(bytes.value_or(""));
  if (section == nullptr) return CopyList(JoinNames(document.SectionNames()), buffer, room);
  const std::u16string section_name = FromSystemPage(section);
  if (key == nullptr) return CopyList(JoinNames(document.KeyNames(section_name)), buffer, room);
  if (const auto value = document.Value(section_name, FromSystemPage(key))) {
    return CopyValue(ToSystemPage(*value), buffer, room);
  }
  return CopyValue(default_text != nullptr ? default_text : "", buffer, room);
}

bool Write(const std::filesystem::path& file, const char* section, const char* key,
           const char* value) {
  if (section == nullptr || file.empty()) return false;
  if (file.parent_path() == ConfigFolder()) CreatePrivateFolder(file.parent_path());
  const auto change = [&](const std::optional<std::string>& before) {
    ProfileDocument document(before.value_or(""));
    const std::u16string section_name = FromSystemPage(section);
    if (key == nullptr) {
      document.RemoveSection(section_name);
    } else if (value == nullptr) {
      document.RemoveKey(section_name, FromSystemPage(key));
    } else {
      document.SetValue(section_name, FromSystemPage(key), FromSystemPage(value));
    }
    return document.Bytes();
  };
  return ChangeFile(file, 0666, change) == 0;
}

}  // namespace quorvane::profile_store
