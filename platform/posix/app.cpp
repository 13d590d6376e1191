#include "platform/app.h"

#include <dlfcn.h>
#include <link.h>

#include <filesystem>

#include "platform/posix/system_text.h"

namespace quorvane {
namespace {

// The file of the program or shared object that this very code was linked into.
std::filesystem::path ModuleFile() {
  Dl_info info{};
  link_map* object = nullptr;
  static const int kOwnAddress = 0;
  if (::dladdr1(&kOwnAddress, &info, reinterpret_cast<void**>(&object), RTLD_DL_LINKMAP) == 0) {
    return {};
  }
  std::error_code ignored;
  // The program itself has no name here, and the one it was started by may be anything.
  if (*object->l_name == '\0') return std::filesystem::read_symlink("/proc/self/exe", ignored);
  return std::filesystem::absolute(object->l_name, ignored).lexically_normal();
}

// Taken when the module is loaded, before the program can go to another folder.
const std::filesystem::path module_file = ModuleFile();  // NOLINT(cert-err58-cpp): ends the load

class PosixApp final : public App {
 public:
  Text Path() override { return FileNameFrom(module_file.parent_path().native()); }
  Text EXEName() override { return FileNameFrom(module_file.stem().native()); }
};

}  // namespace

App& app() noexcept {
  static PosixApp instance;
  return instance;
}

}  // namespace quorvane
