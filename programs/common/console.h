#pragma once

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "programs/common/standard_streams.h"

namespace quorvane::programs {

/// Output that did not reach its reader, or input that could not be read. what() is the reason.
class StreamError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A program's three streams, UTF-8 everywhere and never translated: a line ends with a single
/// newline, and bytes that are no text pass unharmed.
///
/// Output is collected and written in large pieces, at once only to a terminal. Whoever owns the
/// console calls Flush() before the program ends; the destructor writes nothing, so that a failure
/// cannot be lost there.
class Console {
 public:
  explicit Console(std::string program_name) : program_name_(std::move(program_name)) {}
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console() = default;

  /// The name that opens each message, "quorvane".
  [[nodiscard]] const std::string& ProgramName() const { return program_name_; }

  /// Writes to standard output. Raises StreamError when the output cannot be written.
  void Out(std::string_view bytes);
  /// Writes what Out() has collected. Raises StreamError.
  void Flush();

  /// Writes one line to standard error, "<program>: <message>", behind all output so far. That the
  /// line cannot be written is let pass: there is nowhere left to say so.
  void Complain(const std::string& message);
  /// Writes to standard error as it is; failures are let pass.
  void Err(std::string_view bytes);
  [[nodiscard]] bool OutputIsTerminal() const { return IsTerminal(StandardStream::kOutput); }
  [[nodiscard]] bool ErrorIsTerminal() const { return IsTerminal(StandardStream::kError); }

  // Reading says on standard error that it waits when standard input is a terminal, and writes out
  // first what Out() has collected, so that a partner who waits for an answer gets it. Each raises
  // StreamError.

  /// Fills `buffer`; fewer bytes than asked for mean that the input ended.
  [[nodiscard]] std::size_t Read(char* buffer, std::size_t size);
  /// All of the input; nothing once it has more than `most` bytes, of which no more are read.
  [[nodiscard]] std::optional<std::string> ReadAll(std::size_t most);
  /// The next line without its end (a line feed, or carriage return and line feed) as soon as it
  /// has arrived; nothing at the end of the input.
  [[nodiscard]] std::optional<std::string> ReadLine();

 private:
  [[nodiscard]] std::size_t ReadSome(char* buffer, std::size_t size);

  std::string program_name_;
  std::string collected_;
  std::string arrived_;         // what ReadLine() has read beyond its lines,
  std::size_t line_start_ = 0;  // from here on
  bool said_that_it_waits_ = false;
};

}  // namespace quorvane::programs
