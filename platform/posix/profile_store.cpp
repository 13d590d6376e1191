#include "platform/posix/profile_store.h"

#include <algorithm>
#include <string>

#include "platform/posix/account.h"
#include "platform/posix/atomic_file.h"
#include "platform/posix/profile_document.h"
#include "platform/posix/system_text.h"

namespace quorvane::profile_store {
namespace {

std::string JoinNames(const std::vector<std::u16string>& names) {
  std::string list;
  for (const std::u16string& name : names) list += ToSystemPage(name) + '\0';
  return list;
}

// Cut where there is no room for it and a zero behind; a list that is cut has two of them there.
std::int32_t Copy(const std::string& text, bool is_list, char* buffer, std::size_t size) {
  const std::size_t zeros = is_list && text.size() >= size && size > 1 ? 2 : 1;
  const std::size_t count = std::min(text.size(), size - zeros);
  std::copy_n(text.begin(), count, buffer);
  std::fill_n(buffer + count, zeros, '\0');
  return static_cast<std::int32_t>(count);
}

// The calls that this stands in for give the default whatever the reason.
std::string BytesOrNone(const std::filesystem::path& file) {
  try {
    return ReadFile(file).value_or("");
  } catch (const StoreFailure&) {
    return "";
  }
}

}  // namespace

std::filesystem::path PlaceOf(std::u16string_view name) {
  std::filesystem::path path(SystemFileName(name));
  return path.empty() || path.has_parent_path() ? path : ConfigFolder() / path;
}

std::filesystem::path NamedProfile(const char* file) {
  return PlaceOf(file != nullptr ? FromSystemPage(file) : u"profile.ini");
}

std::int32_t Read(const std::filesystem::path& file, const char* section, const char* key,
                  const char* default_text, char* buffer, std::int32_t size) {
  if (buffer == nullptr || size <= 0) return 0;
  const auto room = static_cast<std::size_t>(size);
  ProfileDocument document(BytesOrNone(file));
  if (section == nullptr) return Copy(JoinNames(document.SectionNames()), true, buffer, room);
  const std::u16string section_name = FromSystemPage(section);
  if (key == nullptr) return Copy(JoinNames(document.KeyNames(section_name)), true, buffer, room);
  const auto value = document.Value(section_name, FromSystemPage(key));
  const char* const instead = default_text != nullptr ? default_text : "";
  return Copy(value ? ToSystemPage(*value) : instead, false, buffer, room);
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
    const auto after = document.Bytes();
    if (!after) throw StoreFailure("bytes that are no text would be lost");
    return *after;
  };
  try {
    ChangeFile(file, 0666, change);
    return true;
  } catch (const StoreFailure&) {
    return false;
  }
}

}  // namespace quorvane::profile_store
