#pragma once

#include <cstdint>

#include "platform/screen.h"
#include "platform/system_code_page.h"
#include "platform/wininet.h"
#include "runtime/text.h"

namespace quorvane {

/// Sends one form body to a web server by HTTP POST (HTTP/1.0, RFC 1945) and gives the body of the
/// server's answer as text. Blocks the calling thread for the whole exchange; the web client
/// library's own time-outs are the only limit. The mouse pointer is an hourglass meanwhile.
///
/// `Server` is the host without scheme or port, `ObjectName` the path of the form handler, `Body`
/// is already encoded, see FormEncode(). All of them go on as they stand: no default port, no
/// leading "/", nothing escaped, nothing refused. As many bytes of the body are sent as it has
/// characters.
///
/// Reads the calling thread's connectionSettings(): with UseProxy set the way leads through
/// ProxyServer and the connection carries UserName and Password; otherwise it is the one that the
/// system is configured for, which may be a proxy, too, and both have no effect. The settings and
/// the arguments stay as they were.
///
/// Never raises. It returns
///   - the answer as text, whatever the HTTP status, as far as it arrived;
///   - "Error : Unable to connect to the Internet", with internetFailed() set, when there is no
///     connection, no request, no answer, or an answer with an empty body;
///   - the empty text when the session cannot be opened or anything else fails on the way, such as
///     exhausted memory or a system without the web client library; internetFailed() is then as it
///     was, the pointer stays an hourglass and what was opened stays open.
/// internetFailed() tells the failure text from an answer of the same words; nothing ever clears
/// it.
///
/// Left open on purpose: the three handles of a request that could not be sent.
[[nodiscard]] Text PostFormRequest(const Text& Server, const Text& ObjectName, const Text& Body,
                                   std::int16_t Port, WinInet& web = wininet(),
                                   Screen& pointer_owner = screen(),
                                   const CodePage& code_page = systemCodePage());

}  // namespace quorvane
