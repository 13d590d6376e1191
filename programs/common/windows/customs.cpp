#include "programs/common/customs.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>

#include "programs/common/program.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr const char* kLineEnd = "\n";
std::atomic<const char*> farewell = kLineEnd;

const wchar_t* Wide(const Text& text) {
  return reinterpret_cast<const wchar_t*>(text.Characters().c_str());
}

BOOL WINAPI End(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  const char* const text = farewell;
  const HANDLE error = ::GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  DWORD written = 0;
  if (::GetConsoleMode(error, &mode) != 0)
    ::WriteFile(error, text, std::strlen(text), &written, nullptr);
  // At once: the thread that works must not write behind the farewell.
  ::TerminateProcess(::GetCurrentProcess(), ExitCode::kInterrupted);
  return TRUE;
}

}  // namespace

bool IsHelpWord(std::string_view word) { return word == "--help" || word == "-h" || word == "/?"; }

std::vector<std::string> ExpandName(const std::string& word) {
  const std::string folder = word.substr(0, word.find_last_of("\\/:") + 1);
  std::vector<std::string> names;
  WIN32_FIND_DATAW found{};
  if (word.find_first_of("*?") == std::string::npos) return {word};
  const HANDLE search = ::FindFirstFileW(Wide(FromUtf8(word)), &found);
  if (search == INVALID_HANDLE_VALUE) return {word};
  do {
    const auto* const name = reinterpret_cast<const char16_t*>(&found.cFileName[0]);
    const bool is_folder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (!is_folder) names.push_back(folder + ToUtf8(Text(name)));
  } while (::FindNextFileW(search, &found) != 0);
  ::FindClose(search);
  std::ranges::sort(names);
  return names.empty() ? std::vector{word} : names;
}

std::string_view EndOfInputKeys() { return "Ctrl-Z and Enter"; }

void HideFromProcessList(std::string_view secret) {
  // The block that the system's tools read; the library's own copies were made from it before.
  wchar_t* const line = ::GetCommandLineW();
  const Text wide = FromUtf8(secret);
  const std::u16string_view all(reinterpret_cast<const char16_t*>(line));
  if (wide.IsEmpty()) return;
  for (std::size_t at = all.find(wide.Characters()); at != std::u16string_view::npos;
       at = all.find(wide.Characters(), at + 1))
    std::fill_n(line + at, wide.Characters().size(), L'*');
}

void EndOnInterrupt() { ::SetConsoleCtrlHandler(&End, TRUE); }

void SetFarewell(const char* text) { farewell = text == nullptr ? kLineEnd : text; }

}  // namespace quorvane::programs
