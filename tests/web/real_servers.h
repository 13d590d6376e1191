#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "control/basGlobals.h"
#include "runtime/utf8.h"
#include "tests/support/fresh_thread.h"
#include "tests/support/raises.h"
#include "web/form_post.h"

namespace quorvane::testing {

inline const Text kFailureText = u"Error : Unable to connect to the Internet";

/// The port of a server that real_servers.py has started, by the name in its environment.
inline std::int16_t PortOf(const char* name) {
  const char* const value = std::getenv((std::string("QUORVANE_TEST_") + name).c_str());
  if (value == nullptr) {
    ADD_FAILURE() << "no server " << name << ": start this program through real_servers.py";
    return 0;
  }
  return static_cast<std::int16_t>(std::atoi(value));
}

/// A server's address as proxies are named.
inline Text AddressOf(const char* name) {
  return FromUtf8("127.0.0.1:" + std::to_string(static_cast<std::uint16_t>(PortOf(name))));
}

/// The bytes that the servers' pages repeat, see scripted_peer.py, as text.
inline Text Pattern(std::size_t size) {
  std::u16string characters(size, u' ');
  for (std::size_t i = 0; i < size; ++i) characters[i] = static_cast<char16_t>(u'!' + i % 89);
  return Text(std::move(characters));
}

/// What one post over the real platform gives on a thread of its own.
struct RealPost {
  Text result;
  bool internet_failed = false;

  RealPost(std::int16_t port, const Text& object_name, const Text& body = u"a=b",
           const basGlobals::ConnectionSettings& settings = {}, const Text& server = u"127.0.0.1") {
    OnFreshThread([&] {
      basGlobals::connectionSettings() = settings;
      result = PostFormRequest(server, object_name, body, port);
      internet_failed = basGlobals::internetFailed().IsTrue();
    });
  }
};

/// Passes when the post gave that reply and did not set the flag.
inline void ExpectReply(const RealPost& post, const Text& reply) {
  EXPECT_EQ(post.result, reply);
  EXPECT_FALSE(post.internet_failed);
}

/// Passes when the post gave the failure text and set the flag.
inline void ExpectFailure(const RealPost& post) {
  EXPECT_EQ(post.result, kFailureText);
  EXPECT_TRUE(post.internet_failed);
}

/// The bytes that a reply of the peer's scene `raw` spells in hexadecimal digits.
inline std::string BytesOf(const Text& digits) {
  const std::string spelled = ToUtf8(digits);
  if (spelled.find_first_not_of("0123456789abcdef") != std::string::npos) return spelled;
  std::string bytes;
  for (std::size_t i = 0; i + 1 < spelled.size(); i += 2)
    bytes += static_cast<char>(std::stoi(spelled.substr(i, 2), nullptr, 16));
  return bytes;
}

/// Settings that lead through a proxy.
inline basGlobals::ConnectionSettings Through(const Text& proxy, const Text& user_name = u"",
                                              const Text& password = u"") {
  basGlobals::ConnectionSettings settings;
  settings.UseProxy = kTrue;
  settings.ProxyServer = proxy;
  settings.UserName = user_name;
  settings.Password = password;
  return settings;
}

/// As long as it lives, the system is configured to use that proxy.
class ConfiguredProxy {
 public:
  explicit ConfiguredProxy(const Text& proxy);
  ConfiguredProxy(const ConfiguredProxy&) = delete;
  ConfiguredProxy& operator=(const ConfiguredProxy&) = delete;
  ~ConfiguredProxy();
};

}  // namespace quorvane::testing
