// press_f1: presses F1 in the form host's window, as the keyboard does, and tells which window that
// opened:
//   viewer TITLE     a help viewer of the same program
//   message TEXT     a message box, which it closes
// Exit code 1 without a form, 2 when nothing came of the key within 30 seconds.

#include <windows.h>

#include <cstdio>
#include <string>

namespace {

constexpr DWORD kStep = 100;  // milliseconds
constexpr int kSteps = 300;

struct Search {
  DWORD process = 0;
  HWND viewer = nullptr;
  HWND message = nullptr;
};

std::string ClassOf(HWND window) {
  char name[64] = "";
  ::GetClassNameA(window, name, sizeof name);
  return name;
}

std::string TextOf(HWND window) {
  char text[400] = "";
  ::GetWindowTextA(window, text, sizeof text);
  return text;
}

BOOL CALLBACK Look(HWND window, LPARAM parameter) {
  auto& search = *reinterpret_cast<Search*>(parameter);
  DWORD process = 0;
  ::GetWindowThreadProcessId(window, &process);
  if (process != search.process || ::IsWindowVisible(window) == 0) return TRUE;
  if (ClassOf(window) == "HH Parent") search.viewer = window;
  if (ClassOf(window) == "#32770") search.message = window;
  return TRUE;
}

BOOL CALLBACK TellText(HWND window, LPARAM /*parameter*/) {
  if (ClassOf(window) == "Static" && !TextOf(window).empty())
    std::printf("message %s\n", TextOf(window).c_str());
  return TRUE;
}

HWND WaitForForm() {
  for (int i = 0; i < kSteps; ++i, ::Sleep(kStep)) {
    const HWND form = ::FindWindowA("QuorvaneFormHost", nullptr);
    if (form != nullptr && ::IsWindowVisible(form) != 0) return form;
  }
  return nullptr;
}

// The form takes no focus of its own.
void PressF1(HWND form) {
  const DWORD own = ::GetCurrentThreadId();
  const DWORD other = ::GetWindowThreadProcessId(form, nullptr);
  ::AttachThreadInput(own, other, TRUE);
  ::SetForegroundWindow(form);
  ::SetFocus(form);
  ::AttachThreadInput(own, other, FALSE);
  ::keybd_event(VK_F1, 0, 0, 0);
  ::keybd_event(VK_F1, 0, KEYEVENTF_KEYUP, 0);
}

}  // namespace

int main() {
  const HWND form = WaitForForm();
  if (form == nullptr) return 1;
  Search search;
  ::GetWindowThreadProcessId(form, &search.process);
  PressF1(form);
  for (int i = 0; i < kSteps; ++i, ::Sleep(kStep)) {
    ::EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    if (search.viewer != nullptr) {
      std::printf("viewer %s\n", TextOf(search.viewer).c_str());
      return 0;
    }
    if (search.message != nullptr) {
      ::EnumChildWindows(search.message, TellText, 0);
      ::PostMessageA(search.message, WM_CLOSE, 0, 0);
      return 0;
    }
  }
  return 2;
}
