// quorvane encode, quorvane post: a form body made fit for sending, and sent.

#include <array>
#include <charconv>
#include <chrono>
#include <optional>
#include <string>

#include "control/basGlobals.h"
#include "programs/common/customs.h"
#include "programs/common/program.h"
#include "programs/quorvane/code_page_choice.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/input.h"
#include "programs/quorvane/web_watch.h"
#include "runtime/utf8.h"
#include "text/form_encoding.h"
#include "web/form_post.h"

namespace quorvane::programs {
namespace form_family {
namespace {

constexpr const char* kEncodeDetails =
    R"(Encodes TEXT, or standard input as it stands, as a form body: blanks become
plus signs, most other signs %XX by their code in the system's 8-bit code page;
"&" and "=" stay. At most 32766 characters; more are an error.)";

constexpr const char* kPostDetails =
    R"(Sends BODY (- is standard input, as it stands, of at most 64 MB) by HTTP POST
to OBJECT, a path on SERVER, and writes the body of the answer to standard
output as it came. The last line of standard error is InternetFailed=0, or
InternetFailed=1 when the text is not the server's; the line before it then
says what failed. The exit code is 1 when there was no answer.)";

constexpr std::array kEncodeOptions{
    Option{"--code-page", "N",
           "uses this code page in place of 1252 (932, for example); Linux "
           "only",
           'c'},
};
constexpr std::array kPostOptions{
    Option{"--encode", nullptr, "encodes BODY first, as 'quorvane encode' does", 'e'},
    Option{"--proxy", "PROXY",
           "goes through PROXY (host:port), and not as the system is "
           "configured",
           'p'},
    Option{"--user", "NAME", "for a server that asks, and only with --proxy", 'u'},
    Option{"--timeout", "SECONDS",
           "gives up when SECONDS, 1 to 86400, have passed without a "
           "step forward: until the server lets in, takes, or sends",
           't'},
    Option{"--password-file", "FILE",
           "the first line of FILE, - for standard input, is the "
           "password that goes with NAME"},
    Option{"--password", "WORD",
           "the password itself; others may see it in the list of "
           "processes for the moment before the program hides it there"},
};

constexpr std::size_t kMostCharacters = 32766;
// A character of 16 bits has at most three bytes in UTF-8.
constexpr std::size_t kMostEncodableBytes = 3 * kMostCharacters;
constexpr std::size_t kMostBodyBytes = std::size_t{64} * 1024 * 1024;

int RefuseToEncode(Console& console) {
  console.Complain("the text cannot be encoded: it has more than 32766 characters");
  return ExitCode::kFailure;
}

// Nothing when the text is too long, which the operation tells by the empty text.
std::optional<Text> Encoded(const Text& text) {
  Text encoded = FormEncode(text);
  if (!encoded.IsEmpty() || text.IsEmpty()) return encoded;
  return std::nullopt;
}

int Encode(const Arguments& arguments, Console& console) {
  if (const auto number = arguments.Value("--code-page")) ChooseCodePage(*number);
  const auto& words = arguments.Operands();
  const auto given = words.empty() ? console.ReadAll(kMostEncodableBytes) : words.front();
  const auto encoded = given ? Encoded(FromUtf8(*given)) : std::nullopt;
  if (!encoded) return RefuseToEncode(console);
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

std::string PasswordOf(const Arguments& arguments, Console& console) {
  const auto file = arguments.Value("--password-file");
  const auto word = arguments.Value("--password");
  if (file && word) throw UsageError("--password and --password-file exclude each other");
  if (word) HideFromProcessList(*word);
  if (!file) return word.value_or("");
  if (file == "-" && arguments.Operands()[3] == "-")
    throw UsageError("standard input cannot be both the BODY and the password");
  const auto lines = LinesOf(*file, console);
  return lines.empty() ? "" : lines.front();
}

void UseProxy(const Arguments& arguments, Console& console) {
  for (const char* const option : {"--user", "--password", "--password-file"}) {
    if (arguments.Has(option) && !arguments.Has("--proxy"))
      throw UsageError(std::string(option) + " has an effect with --proxy only");
  }
  if (!arguments.Has("--user") && (arguments.Has("--password") || arguments.Has("--password-file")))
    throw UsageError("a password has an effect with --user only");
  auto& settings = basGlobals::connectionSettings();
  settings.UseProxy = ToBoolean16(arguments.Has("--proxy"));
  settings.ProxyServer = FromUtf8(arguments.Value("--proxy").value_or(""));
  settings.UserName = FromUtf8(arguments.Value("--user").value_or(""));
  settings.Password = FromUtf8(PasswordOf(arguments, console));
}

std::optional<std::chrono::seconds> TimeOutOf(const Arguments& arguments) {
  const auto word = arguments.Value("--timeout");
  if (!word) return std::nullopt;
  return std::chrono::seconds(ParseInteger(*word, "SECONDS", 1, 86400));
}

std::string WhyNot(const std::string& server, const WebWatch& web) {
  const std::size_t scheme = server.find("://");
  if (scheme == std::string::npos) return web.Reason();
  return "SERVER is a host's name, without " + server.substr(0, scheme + 3);
}

int Post(const Arguments& arguments, Console& console) {
  const auto& words = arguments.Operands();
  const std::int16_t port = PortOf(words[1]);
  const bool encodes = arguments.Has("--encode");
  WebWatch web(TimeOutOf(arguments));
  UseProxy(arguments, console);
  const auto given =
      words[3] == "-" ? console.ReadAll(encodes ? kMostEncodableBytes : kMostBodyBytes) : words[3];
  if (!given && !encodes) throw StreamError("the body has more than 64 MB");
  std::optional<Text> body;
  if (given) body = encodes ? Encoded(FromUtf8(*given)) : FromUtf8(*given);
  if (!body) return RefuseToEncode(console);
  const Text reply = PostFormRequest(FromUtf8(words[0]), FromUtf8(words[2]), *body, port, web);
  const bool failed = basGlobals::internetFailed().IsTrue();
  console.Out(ToUtf8(reply));
  if (failed && console.OutputIsTerminal()) console.Out("\n");
  if (failed || reply.IsEmpty()) console.Complain("no answer: " + WhyNot(words[0], web));
  console.Flush();
  console.Err(failed ? "InternetFailed=1\n" : "InternetFailed=0\n");
  return failed || reply.IsEmpty() ? ExitCode::kFailure : ExitCode::kSuccess;
}

constexpr std::array kCommands{
    Command{"encode", "[TEXT]", "a form body, made fit for sending", kEncodeDetails, kEncodeOptions,
            Encode},
    Command{"post", "SERVER PORT OBJECT BODY", "a form, sent to a web server, and the reply",
            kPostDetails, kPostOptions, Post},
};

}  // namespace
}  // namespace form_family

std::span<const Command> FormCommands() { return form_family::kCommands; }

}  // namespace quorvane::programs
