#include "platform/app.h"

#include "platform/windows/module_file.h"

namespace quorvane {
namespace {

// C:\OCX\a.ocx lies in C:\OCX, but C:\a.ocx lies in C:\ with its separator.
std::u16string DirectoryOf(const std::u16string& file) {
  const std::size_t separator = file.rfind(u'\\');
  if (separator == std::u16string::npos) return {};
  const bool is_root = separator > 0 && file[separator - 1] == u':';
  return file.substr(0, is_root ? separator + 1 : separator);
}

std::u16string StemOf(const std::u16string& file) {
  const std::size_t start = file.rfind(u'\\') + 1;
  const std::size_t dot = file.rfind(u'.');
  const bool has_extension = dot != std::u16string::npos && dot > start;
  return file.substr(start, has_extension ? dot - start : std::u16string::npos);
}

class WindowsApp final : public App {
 public:
  Text Path() override { return Text(DirectoryOf(ModuleFileName().Characters())); }
  Text EXEName() override { return Text(StemOf(ModuleFileName().Characters())); }
};

}  // namespace

App& app() noexcept {
  static WindowsApp instance;
  return instance;
}

}  // namespace quorvane
