#include <cstdlib>

#include "tests/web/real_servers.h"

namespace quorvane::testing {

ConfiguredProxy::ConfiguredProxy(const Text& proxy) {
  ::setenv("http_proxy", ToUtf8(proxy).c_str(), 1);
}

ConfiguredProxy::~ConfiguredProxy() { ::unsetenv("http_proxy"); }

}  // namespace quorvane::testing
