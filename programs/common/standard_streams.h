#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What a program asks of the system about its own process. Answered once in posix/ and once in
/// windows/; the build list picks. Texts are UTF-8 on this side; on Windows a console receives
/// them as 16-bit characters, while files and pipes receive the bytes as they are.
namespace quorvane::programs {

enum class StandardStream { kInput, kOutput, kError };

/// Writes everything (never to kInput), or gives the system's reason (a full disk, a reader that
/// went away, a closed stream). Part of the bytes may have been written then.
[[nodiscard]] std::optional<std::string> WriteStream(StandardStream stream, std::string_view bytes);

/// Whether the stream leads to a terminal (a console) and not to a file or a pipe.
[[nodiscard]] bool IsTerminal(StandardStream stream);

/// Waits until something has arrived on standard input and gives the count of bytes that are put
/// into the buffer: 0 at the end of the input, nothing when reading failed.
[[nodiscard]] std::optional<std::size_t> ReadStandardInput(char* buffer, std::size_t size);

}  // namespace quorvane::programs
