#include "platform/posix/desktop_places.h"

#include <cstdlib>

#include "platform/posix/user_database.h"

namespace quorvane {
namespace {

constexpr const char* kOwnFolder = "quorvane";

std::filesystem::path FromEnvironment(const char* variable) {
  const char* const value = std::getenv(variable);
  if (value == nullptr) return {};
  std::filesystem::path path(value);
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path Home() {
  if (auto home = FromEnvironment("HOME"); !home.empty()) return home;
  if (const auto user = CurrentUser()) return user->home;
  return "/";
}

std::filesystem::path FolderFor(const char* variable, const char* usual_place) {
  auto base = FromEnvironment(variable);
  if (base.empty()) base = Home() / usual_place;
  return base / kOwnFolder;
}

}  // namespace

std::filesystem::path DataFolder() { return FolderFor("XDG_DATA_HOME", ".local/share"); }

std::filesystem::path ConfigFolder() { return FolderFor("XDG_CONFIG_HOME", ".config"); }

}  // namespace quorvane
