// quorvane encode, quorvane post: a form body made fit for sending, and sent.

#include <array>
#include <charconv>
#include <optional>
#include <string>

#include "control/basGlobals.h"
#include "programs/common/program.h"
#include "programs/quorvane/code_page_choice.h"
#include "programs/quorvane/commands.h"
#include "runtime/utf8.h"
#include "text/form_encoding.h"
#include "web/form_post.h"

namespace quorvane::examples {
namespace {

constexpr const char* kEncodeHelp =
    "usage: quorvane encode [--code-page N] [TEXT]\n"
    "\n"
    "Encodes TEXT, or standard input as it stands, as a form body: blanks become plus signs, most\n"
    "other signs %XX by their code in the system's 8-bit code page; \"&\" and \"=\" stay.\n"
    "At most 32766 characters; more are an error.\n"
    "\n"
    "  --code-page N   use this code page in place of 1252 (932, for example); Linux only\n";

constexpr const char* kPostHelp =
    "usage: quorvane post SERVER PORT OBJECT BODY [--encode]\n"
    "                     [--proxy PROXY] [--user NAME] [--password WORD]\n"
    "\n"
    "Sends BODY (- is standard input, as it stands) by HTTP POST to OBJECT, a path on SERVER, and\n"
    "writes the body of the answer to standard output as it came. The last line of standard error\n"
    "is InternetFailed=0, or InternetFailed=1 when the text is not the server's.\n"
    "The exit code is 1 when there was no answer.\n"
    "\n"
    "  --encode          encode BODY first, as `quorvane encode` does\n"
    "  --proxy PROXY     go through PROXY (host:port), and not as the system is configured\n"
    "  --user NAME       for a server that asks, and only with --proxy\n"
    "  --password WORD   likewise\n";

constexpr std::array kEncodeOptions{Option{"--code-page"}};
constexpr std::array kPostOptions{Option{"--encode", false}, Option{"--proxy"}, Option{"--user"},
                                  Option{"--password"}};

// Nothing when the text is too long, which the operation tells by the empty text.
std::optional<Text> Encoded(const Text& text, Console& console) {
  Text encoded = FormEncode(text);
  if (!encoded.IsEmpty() || text.IsEmpty()) return encoded;
  console.Complain("the text cannot be encoded: it has more than 32766 characters");
  return std::nullopt;
}

int Encode(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(0, 1, "[TEXT]");
  if (const auto number = arguments.Value("--code-page")) ChooseCodePage(*number);
  const bool given = !arguments.Operands().empty();
  const auto encoded =
      Encoded(FromUtf8(given ? arguments.Operands().front() : console.ReadAll()), console);
  if (!encoded) return ExitCode::kFailure;
  console.Out(ToUtf8(*encoded) + "\n");
  return ExitCode::kSuccess;
}

// 0 to 65535; the settings hold the same 16 bits as a signed number.
std::int16_t PortOf(const std::string& word) {
  std::uint16_t port = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, port);
  if (error != std::errc() || rest != end) throw UsageError("'" + word + "' is no port");
  return static_cast<std::int16_t>(port);
}

void UseProxy(const Arguments& arguments) {
  auto& settings = basGlobals::connectionSettings();
  const auto text_of = [&arguments](std::string_view option) {
    return FromUtf8(arguments.Value(option).value_or(""));
  };
  settings.UseProxy = ToBoolean16(arguments.Has("--proxy"));
  settings.ProxyServer = text_of("--proxy");
  settings.UserName = text_of("--user");
  settings.Password = text_of("--password");
}

int Post(const Arguments& arguments, Console& console) {
  arguments.RequireOperands(4, 4, "SERVER PORT OBJECT BODY");
  const auto& words = arguments.Operands();
  const std::int16_t port = PortOf(words[1]);
  Text body = FromUtf8(words[3] == "-" ? console.ReadAll() : words[3]);
  if (arguments.Has("--encode")) {
    const auto encoded = Encoded(body, console);
    if (!encoded) return ExitCode::kFailure;
    body = *encoded;
  }
  UseProxy(arguments);
  const Text reply = PostFormRequest(FromUtf8(words[0]), FromUtf8(words[2]), body, port);
  const bool failed = basGlobals::internetFailed().IsTrue();
  console.Out(ToUtf8(reply));
  console.Flush();
  console.Err(failed ? "InternetFailed=1\n" : "InternetFailed=0\n");
  return failed || reply.IsEmpty() ? ExitCode::kFailure : ExitCode::kSuccess;
}

constexpr std::array kCommands{
    Command{"encode", "a form body, made fit for sending", kEncodeHelp, kEncodeOptions, Encode},
    Command{"post", "a form, sent to a web server, and the reply", kPostHelp, kPostOptions, Post},
};

}  // namespace

std::span<const Command> FormCommands() { return kCommands; }

}  // namespace quorvane::examples
