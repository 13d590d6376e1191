#include "platform/posix/desktop_places.h"

#include <cstdlib>

#include "platform/posix/account.h"

namespace quorvane {
namespace {

// Nothing but an absolute path counts.
std::filesystem::path Absolute(const char* place) {
  std::filesystem::path path(place != nullptr ? place : "");
  return path.is_absolute() ? path : std::filesystem::path();
}

std::filesystem::path Home() {
  if (auto home = Absolute(std::getenv("HOME")); !home.empty()) return home;
  const auto user = CurrentUser();
  auto home = Absolute(user ? user->home.c_str() : "");
  return home.empty() ? "/" : home;
}

std::filesystem::path FolderFor(const char* variable, const char* usual_place) {
  auto base = Absolute(std::getenv(variable));
  if (base.empty()) base = Home() / usual_place;
  return base / "quorvane";
}

}  // namespace

std::filesystem::path DataFolder() { return FolderFor("XDG_DATA_HOME", ".local/share"); }

std::filesystem::path ConfigFolder() { return FolderFor("XDG_CONFIG_HOME", ".config"); }

}  // namespace quorvane
