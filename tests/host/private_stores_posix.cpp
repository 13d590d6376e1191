#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "runtime/utf8.h"
#include "tests/host/private_stores.h"

namespace quorvane::testing {
namespace {

// All stores of the stand-ins lie in a folder of this program from before main() to its end.
class PrivateHome {
 public:
  PrivateHome() {
    std::string name = (std::filesystem::temp_directory_path() / "quorvane_host_XXXXXX").native();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
    ::setenv("XDG_DATA_HOME", (path_ / "data").c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (path_ / "config").c_str(), 1);
  }
  PrivateHome(const PrivateHome&) = delete;
  PrivateHome& operator=(const PrivateHome&) = delete;
  ~PrivateHome() {
    std::error_code ignored;
    if (owner_ == ::getpid()) std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

 private:
  pid_t owner_ = ::getpid();
  std::filesystem::path path_;
};

const PrivateHome private_home;  // NOLINT(cert-err58-cpp): a test that has no home cannot go on

int fresh_count = 0;

}  // namespace

Text FreshKeyPath() { return FromUtf8("Software\\Tests\\" + std::to_string(++fresh_count)); }

Text FreshProfileName() {
  return FromUtf8((private_home.Path() / ("p" + std::to_string(++fresh_count) + ".ini")).native());
}

std::string BytesOf(const Text& profile_name) {
  std::ifstream file(ToUtf8(profile_name), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const Text& profile_name, const std::string& bytes) {
  std::ofstream(ToUtf8(profile_name), std::ios::binary) << bytes;
}

}  // namespace quorvane::testing
