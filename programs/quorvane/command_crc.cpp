// quorvane crc: the CRC-32 of files, as the module computes its own.

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <optional>
#include <vector>

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "programs/common/customs.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/file_name.h"
#include "programs/quorvane/input.h"
#include "programs/quorvane/json.h"
#include "programs/quorvane/progress.h"
#include "runtime/byte_array.h"
#include "runtime/integers.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace crc_family {
namespace {

constexpr const char* kDetails =
    R"(Prints for each FILE its CRC-32 (IEEE 802.3) as a signed decimal number, a tab
and the name. FILE may be - for standard input. A file that is open for writing
elsewhere is refused, and hidden files and directories are not found. After a
file that fails the others are still done, and the exit code is 1. A file may
have 2147475455 bytes, standard input any number.

A name with a line end is written with \n, \r and \\, and the line starts with a
backslash. On Windows * and ? stand for the names that match.)";

constexpr std::array kOptions{
    Option{"--unsigned", nullptr, "prints unsigned numbers", 'u'},
    Option{"--hex", nullptr, "prints hexadecimal numbers, 0x and eight digits"},
    Option{"--json", nullptr,
           R"(prints a list of {"file", "crc", "hex"}, with "error" in the place of a crc that is )"
           "not there",
           'j'},
    Option{"--check", "LIST",
           "reads the lines of an earlier output from LIST, - for standard "
           "input, and says OK or FAILED for each of its files; the exit "
           "code is 1 unless all are OK",
           'c', false, true},
    Option{"--quiet", nullptr, "with --check: says nothing of the files that are OK", 'q'},
};

// The stream's own limit: position and block together must fit 32 bits.
constexpr std::uintmax_t kLargestFile = 2147475455;

// A file whose bytes are counted as they pass, for the progress bar.
class WatchedFileStream final : public cBinaryFileStream {
 public:
  explicit WatchedFileStream(Progress& progress) : progress_(progress) {}

  std::int32_t Read(ByteArray& buffer, std::int32_t size) override {
    const std::int32_t count = cBinaryFileStream::Read(buffer, size);
    progress_.Advance(count);
    return count;
  }

 private:
  Progress& progress_;
};

// Standard input in the place of a file: of any length, since nobody asks for it beforehand.
class InputStream final : public cBinaryFileStream {
 public:
  explicit InputStream(Console& console) : console_(console) {}

  std::int32_t Read(ByteArray& buffer, std::int32_t /*size*/) override {
    if (ended_) return 0;
    const std::span<std::uint8_t> block = buffer.Elements();
    const std::size_t count = console_.Read(reinterpret_cast<char*>(block.data()), block.size());
    ended_ = count < block.size();
    return NarrowTo32(count);
  }

 private:
  Console& console_;
  bool ended_ = false;
};

std::int32_t CrcOfInput(Console& console) {
  InputStream stream(console);
  return cCRC32().GetFileCrc32(stream);
}

// Before a byte is read: the stream would tell only behind the last one, and its 32-bit length
// tells nothing of such a file.
void RefuseTooLarge(const std::string& name) {
  std::error_code unknown;
  const std::uintmax_t size = std::filesystem::file_size(PathOf(name), unknown);
  if (unknown || size <= kLargestFile) return;
  const std::string reason = "Overflow: the file has " + std::to_string(size) +
                             " bytes, and the limit is " + std::to_string(kLargestFile);
  throw RuntimeError{ErrorNumber::kOverflow, {}, FromUtf8(reason)};
}

std::int32_t CrcOfFile(const std::string& name, Console& console) {
  Progress progress(console);
  WatchedFileStream stream(progress);
  stream.PutFile(FileNameOf(name));
  RefuseTooLarge(name);
  progress.Expect(stream.Length());
  return cCRC32().GetFileCrc32(stream);
}

struct Result {
  std::string name;
  std::optional<std::int32_t> crc;
  std::string error;  // where there is no crc
};

Result ResultOf(const std::string& name, Console& console) {
  try {
    return {name, name == "-" ? CrcOfInput(console) : CrcOfFile(name, console), ""};
  } catch (const RuntimeError& error) {
    return {name, std::nullopt, DescribeError(error)};
  }
}

std::string Hexadecimal(std::int32_t crc) {
  std::array<char, 8> digits{};
  const auto value = static_cast<std::uint32_t>(crc);
  for (std::size_t i = 0; i < digits.size(); ++i)
    digits[i] = "0123456789ABCDEF"[(value >> (28 - 4 * i)) & 15];
  return "0x" + std::string(digits.data(), digits.size());
}

std::string Shown(std::int32_t crc, const Arguments& arguments) {
  if (arguments.Has("--hex")) return Hexadecimal(crc);
  if (arguments.Has("--unsigned")) return std::to_string(static_cast<std::uint32_t>(crc));
  return std::to_string(crc);
}

// --- lists: a number, a tab, a name; a backslash before the number where the name is escaped

bool NeedsEscapes(const std::string& name) {
  return name.find_first_of("\r\n") != std::string::npos;
}

std::string EscapedName(const std::string& name) {
  std::string escaped;
  for (const char c : name) {
    if (c == '\n') {
      escaped += "\\n";
    } else if (c == '\r') {
      escaped += "\\r";
    } else {
      escaped.append(c == '\\' ? 2 : 1, c);
    }
  }
  return escaped;
}

std::string UnescapedName(const std::string& escaped) {
  std::string name;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    const bool is_escape = escaped[i] == '\\' && i + 1 < escaped.size();
    const char c = is_escape ? escaped[++i] : escaped[i];
    name += is_escape && c == 'n' ? '\n' : is_escape && c == 'r' ? '\r' : c;
  }
  return name;
}

std::string ListLine(const Result& result, const Arguments& arguments) {
  const bool escaped = NeedsEscapes(result.name);
  return (escaped ? "\\" : "") + Shown(*result.crc, arguments) + "\t" +
         (escaped ? EscapedName(result.name) : result.name) + "\n";
}

// A number as any of the outputs has it.
std::optional<std::int32_t> ParseCrc(std::string_view word) {
  const bool is_hexadecimal = word.starts_with("0x");
  if (is_hexadecimal) word.remove_prefix(2);
  std::int64_t value = 0;
  const auto [end, error] =
      std::from_chars(word.data(), word.data() + word.size(), value, is_hexadecimal ? 16 : 10);
  const bool in_range = value >= (is_hexadecimal ? 0 : INT32_MIN) && value <= UINT32_MAX;
  if (error != std::errc() || end != word.data() + word.size() || !in_range) return std::nullopt;
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

std::optional<Result> ParseListLine(std::string line) {
  const bool escaped = line.starts_with('\\');
  if (escaped) line.erase(0, 1);
  const std::size_t tab = line.find('\t');
  if (tab == std::string::npos || tab + 1 == line.size()) return std::nullopt;
  const std::string name = line.substr(tab + 1);
  const auto crc = ParseCrc(line.substr(0, tab));
  if (!crc) return std::nullopt;
  return Result{escaped ? UnescapedName(name) : name, crc, ""};
}

// --- the two ways

bool CheckLine(const Result& expected, bool is_quiet, Console& console) {
  const Result found = ResultOf(expected.name, console);
  const bool is_right = found.crc == expected.crc;
  if (!found.crc) console.Complain(found.error + ": " + expected.name);
  if (is_right && is_quiet) return true;
  const std::string verdict = is_right ? ": OK\n" : found.crc ? ": FAILED\n" : ": FAILED to read\n";
  console.Out((NeedsEscapes(expected.name) ? "\\" + EscapedName(expected.name) : expected.name) +
              verdict);
  return is_right;
}

int Check(const std::string& list, bool is_quiet, Console& console) {
  std::size_t right = 0;
  std::size_t wrong = 0;
  std::size_t number = 0;
  int exit_code = ExitCode::kSuccess;
  for (const std::string& line : LinesOf(list, console)) {
    ++number;
    if (const auto expected = ParseListLine(line)) {
      ++(CheckLine(*expected, is_quiet, console) ? right : wrong);
    } else {
      console.Complain(list + ":" + std::to_string(number) + ": no number, tab and name");
      exit_code = ExitCode::kFailure;
    }
  }
  if (wrong > 0) {
    console.Complain(std::to_string(wrong) + " of " + std::to_string(right + wrong) +
                     " files FAILED");
  }
  if (right + wrong == 0) console.Complain(list + " lists no file");
  return wrong > 0 || right == 0 ? ExitCode::kFailure : exit_code;
}

std::string Json(const Result& result) {
  const auto file = std::pair("file", JsonText(result.name));
  if (!result.crc) return JsonRecord({file, {"error", JsonText(result.error)}});
  return JsonRecord(
      {file, {"crc", std::to_string(*result.crc)}, {"hex", JsonText(Hexadecimal(*result.crc))}});
}

int Print(const std::vector<std::string>& words, const Arguments& arguments, Console& console) {
  int exit_code = ExitCode::kSuccess;
  std::vector<std::string> list;
  for (const std::string& word : words) {
    for (const std::string& name : ExpandName(word)) {
      const Result result = ResultOf(name, console);
      if (arguments.Has("--json")) {
        list.push_back(Json(result));
      } else if (result.crc) {
        console.Out(ListLine(result, arguments));
      }
      if (result.crc) continue;
      console.Complain(result.error + ": " + name);
      exit_code = ExitCode::kFailure;
    }
  }
  if (arguments.Has("--json")) console.Out(JsonList(list) + "\n");
  return exit_code;
}

int Crc(const Arguments& arguments, Console& console) {
  const auto list = arguments.Value("--check");
  const int forms = static_cast<int>(arguments.Has("--hex")) +
                    static_cast<int>(arguments.Has("--unsigned")) +
                    static_cast<int>(arguments.Has("--json")) + static_cast<int>(list.has_value());
  if (forms > 1) throw UsageError("only one of --hex, --unsigned, --json and --check makes sense");
  const bool is_quiet = arguments.Has("--quiet");
  if (is_quiet && !list) throw UsageError("--quiet goes with --check");
  return list ? Check(*list, is_quiet, console) : Print(arguments.Operands(), arguments, console);
}

constexpr std::array kCommands{
    Command{"crc", "FILE...", "CRC-32 of files, as signed decimal numbers", kDetails, kOptions,
            Crc},
};

}  // namespace
}  // namespace crc_family

std::span<const Command> CrcCommands() { return crc_family::kCommands; }

}  // namespace quorvane::programs
