#pragma once

#include <string>
#include <string_view>
#include <vector>

/// What people expect of a program on one system and not on the other. Answered once in posix/ and
/// once in windows/; the build list picks. Texts are UTF-8 on this side.
namespace quorvane::programs {

/// Whether a word among the options asks for the help: --help, -h, and on Windows /?.
[[nodiscard]] bool IsHelpWord(std::string_view word);

/// The names of files that a word stands for, in order: on Windows, where no shell does it, those
/// that match its * and ? in the last part of its path. The word itself where nothing matches, and
/// always on Linux.
[[nodiscard]] std::vector<std::string> ExpandName(const std::string& word);

/// The keys that end an input from the terminal: "Ctrl-D".
[[nodiscard]] std::string_view EndOfInputKeys();

/// Hides a word of the command line, or the end of one, where others could read it: in the system's
/// list of processes. What happened before the call is out of reach.
void HideFromProcessList(std::string_view secret);

/// From now on an interrupt from the keyboard (Ctrl-C) ends the program with exit code 130, and
/// standard error, where it is a terminal, on an empty line. A program that was started with
/// interrupts ignored, such as one in the background, goes on ignoring them.
void EndOnInterrupt();

/// What an interrupt writes to that terminal before all else: by default a line end, which stands
/// behind the ^C that the terminal itself shows. The text must live for ever; null for the default.
void SetFarewell(const char* text);

}  // namespace quorvane::programs
