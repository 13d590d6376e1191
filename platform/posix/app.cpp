#include "platform/app.h"

#include <dlfcn.h>

#include <climits>
#include <cstdlib>
#include <filesystem>

#include "runtime/utf8.h"

namespace quorvane {
namespace {

// The file of the program or shared object that this very code was linked into.
std::filesystem::path ModuleFile() {
  Dl_info info{};
  static const int kOwnAddress = 0;
  if (dladdr(&kOwnAddress, &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code ignored;
  // A program started through PATH shows only its name here.
  const std::filesystem::path shown = info.dli_fname;
  if (shown.has_parent_path()) return std::filesystem::absolute(shown, ignored).lexically_normal();
  return std::filesystem::read_symlink("/proc/self/exe", ignored);
}

class PosixApp final : public App {
 public:
  Text Path() override { return FromUtf8(ModuleFile().parent_path().native()); }
  Text EXEName() override { return FromUtf8(ModuleFile().stem().native()); }
};

}  // namespace

App& app() {
  static PosixApp instance;
  return instance;
}

}  // namespace quorvane
