#pragma once

#include <cstdint>

#include "runtime/boolean16.h"
#include "runtime/text.h"

/// The data that exists once per thread: all controls on a thread share it, and a thread sees no
/// other's. It starts anew with each thread and outlives every control on it.
namespace quorvane::basGlobals {

/// The seven connection settings. Nothing checks them: whoever reads one takes it as it stands.
struct ConnectionSettings {
  Text ServerAddress;           ///< the web server's name or address, with an optional ":port"
  std::int16_t ServerPort = 0;  ///< its TCP port; every 16-bit value is accepted, negative ones too
  Text ServerFile;              ///< the path of the server-side script that receives the form
  Boolean16 UseProxy;           ///< whether the way leads through ProxyServer; tested for zero only
  Text ProxyServer;             ///< the proxy, as the system's web client takes it
  Text UserName;                ///< goes with the connection when UseProxy is on
  Text Password;                ///< plain text, likewise
};

/// The calling thread's settings. The reference is good for the life of the thread.
[[nodiscard]] ConnectionSettings& connectionSettings();

/// The flag InternetFailed of the calling thread, sticky: set by a failure, cleared by nothing.
[[nodiscard]] Boolean16& internetFailed();

}  // namespace quorvane::basGlobals
