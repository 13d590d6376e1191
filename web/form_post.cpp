#include "web/form_post.h"

#include <array>
#include <string>
#include <string_view>

#include "control/basGlobals.h"
#include "runtime/ansi_text.h"
#include "runtime/ascii.h"
#include "runtime/ignored_result.h"
#include "web/reply_text.h"

// The fixed texts are ASCII, which is the same bytes in every code page, so they go to the calls
// without a copy.

namespace quorvane {
namespace {

using basGlobals::connectionSettings;

constexpr auto kAgent = "Validate";
constexpr auto kVersion = "HTTP/1.0";
constexpr std::string_view kHeader = "Content-Type: application/x-www-form-urlencoded\r\n";
static_assert(kHeader.size() == 49);
constexpr auto kFailureText = u"Error : Unable to connect to the Internet";
constexpr std::size_t kReadSize = 2048;

using Block = std::array<char, kReadSize>;

// One call of the operation: its members are the steps, its data what they share.
class FormPost {
 public:
  FormPost(WinInet& web, Screen& pointer_owner, const CodePage& code_page, Text& result)
      : web_(web), screen_(pointer_owner), code_page_(code_page), result_(result) {}

  // Kept: a session that cannot be opened gives the empty text and no flag, unlike every later
  // failure; by that a caller tells it from a connection that failed. Pinned by
  // PostFormRequest.GivesTheEmptyTextWithoutASession.
  void Run(Text server, Text object_name, Text body, std::int16_t port) {
    screen_.SetMousePointer(Screen::kHourglass);
    if (OpenSession() != 0 && Exchange(server, object_name, body, port)) {
      CloseAll();
      Settle();
    }
    screen_.SetMousePointer(Screen::kDefaultPointer);
  }

 private:
  // Kept: the texts of the settings are handed over as copies, so that what the code page cannot
  // hold does not come back changed into a record that is saved with the form. Pinned by
  // PostFormRequest.LeavesArgumentsAndSettingsAsTheyWere.
  InternetHandle OpenSession() {
    if (!connectionSettings().UseProxy.IsTrue()) {
      return session_ =
                 web_.InternetOpenA(kAgent, WinInet::kOpenTypePreconfig, nullptr, nullptr, 0);
    }
    Text proxy = connectionSettings().ProxyServer;
    return session_ = CallWithAnsi(
               code_page_,
               [this](const char* proxy_bytes) {
                 return web_.InternetOpenA(kAgent, WinInet::kOpenTypeProxy, proxy_bytes, nullptr,
                                           0);
               },
               proxy);
  }

  // Kept: without a proxy the HTTP version stands in the password's place, beside no user name.
  // A program that watches the library's calls sees it. Pinned by
  // PostFormRequest.PutsTheHttpVersionInThePasswordsPlaceWithoutAProxy.
  InternetHandle Connect(Text& server, std::int16_t port) {
    if (!connectionSettings().UseProxy.IsTrue()) {
      return connection_ = CallWithAnsi(
                 code_page_,
                 [this, port](const char* server_bytes) {
                   return web_.InternetConnectA(session_, server_bytes, port, nullptr, kVersion,
                                                WinInet::kServiceHttp, 0, 0);
                 },
                 server);
    }
    Text user_name = connectionSettings().UserName;
    Text password = connectionSettings().Password;
    return connection_ = CallWithAnsi(
               code_page_,
               [this, port](const char* server_bytes, const char* user, const char* secret) {
                 return web_.InternetConnectA(session_, server_bytes, port, user, secret,
                                              WinInet::kServiceHttp, 0, 0);
               },
               server, user_name, password);
  }

  InternetHandle OpenRequest(Text& object_name) {
    return request_ = CallWithAnsi(
               code_page_,
               [this](const char* path) {
                 return web_.HttpOpenRequestA(connection_, "POST", path, kVersion, nullptr, nullptr,
                                              WinInet::kFlagReload, 0);
               },
               object_name);
  }

  // Kept: the length is that of the text in characters, so a body with characters of two bytes is
  // sent short of its last bytes. Encoded bodies are ASCII and never meet it. Pinned by
  // PostFormRequest.CountsTheBodyInCharacters.
  bool Send(Text& body) {
    const auto length = static_cast<std::uint32_t>(body.Length());
    return CallWithAnsi(
               code_page_,
               [this, length](const char* bytes) {
                 return web_.HttpSendRequestA(request_, nullptr, 0, bytes, length);
               },
               body) != 0;
  }

  // False when the operation ends here and all stays open.
  bool Exchange(Text& server, Text& object_name, Text& body, std::int16_t port) {
    if (Connect(server, port) == 0 || OpenRequest(object_name) == 0) return true;
    IgnoreResult(web_.HttpAddRequestHeadersA(request_, kHeader.data(), kHeader.size(),
                                             WinInet::kAddHeader | WinInet::kReplaceHeader));
    // Kept: a failed send closes nothing, unlike every other way out: the request, the connection
    // and the session stay open for the life of the process, which a host that counts its handles
    // sees. Pinned by PostFormRequest.LeavesThreeHandlesOpenAfterAFailedSend.
    if (!Send(body)) {
      Fail();
      return false;
    }
    ReadReply();
    return true;
  }

  // Ends at the first read that fails or gives no bytes; those of a failed read count, too.
  void ReadReply() {
    bool keep_going = true;
    while (keep_going) {
      block_.fill(' ');
      std::uint32_t count = 0;
      keep_going = web_.InternetReadFile(request_, block_.data(), kReadSize, count) != 0;
      if (count == 0) return;
      AppendToReply(count);
    }
  }

  // Kept: the whole block becomes text and then as many characters of it are taken as bytes were
  // read. In a page of two-byte characters blanks of the block follow a short read's text, and a
  // pair of bytes that two blocks share is lost; single-byte pages never meet it. Pinned by
  // PostFormRequest.CountsTheReplyInBytesUnderATwoBytePage.
  void AppendToReply(std::uint32_t count) {
    const std::string_view bytes(block_.data(), block_.size());
    if (IsAscii(bytes)) {
      reply_.AppendAscii(bytes.substr(0, count));
    } else {
      const std::u16string characters = code_page_.FromBytes(bytes);
      reply_.Append(std::u16string_view(characters).substr(0, count));
    }
  }

  void CloseAll() {
    if (request_ != 0) IgnoreResult(web_.InternetCloseHandle(request_));
    if (connection_ != 0) IgnoreResult(web_.InternetCloseHandle(connection_));
    IgnoreResult(web_.InternetCloseHandle(session_));
  }

  // Kept: an answer with an empty body counts as a failed connection; a caller cannot tell the two
  // apart. Pinned by PostFormRequest.TakesAnEmptyReplyForAFailure.
  void Settle() {
    if (reply_.IsEmpty()) return Fail();
    result_ = Text(reply_.Take());
  }

  // Kept: nothing ever clears the flag, so after a series of posts it tells of any that failed.
  // Pinned by PostFormRequest.KeepsInternetFailedSetAfterALaterSuccess.
  void Fail() {
    basGlobals::internetFailed() = kTrue;
    result_ = kFailureText;
  }

  WinInet& web_;
  Screen& screen_;
  const CodePage& code_page_;
  Text& result_;
  InternetHandle session_ = 0;
  InternetHandle connection_ = 0;
  InternetHandle request_ = 0;
  Block block_{};
  ReplyText reply_;
};

}  // namespace

Text PostFormRequest(const Text& Server, const Text& ObjectName, const Text& Body,
                     std::int16_t Port, WinInet& web, Screen& pointer_owner,
                     const CodePage& code_page) {
  Text result = u"";
  // Kept: whatever is raised on the way ends the operation at once with the result as it then
  // stands; no handle is closed and the pointer stays an hourglass. Pinned by
  // PostFormRequest.EndsAtOnceWhereACallRaises.
  try {
    FormPost(web, pointer_owner, code_page, result).Run(Server, ObjectName, Body, Port);
  } catch (...) {  // NOLINT(bugprone-empty-catch): see above
  }
  return result;
}

}  // namespace quorvane
