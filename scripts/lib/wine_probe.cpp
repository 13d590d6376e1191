// The program that scripts/test-wine runs: says how it was started, then does what its first
// argument asks.
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

void SayArguments(int count, char** arguments) {
  for (int i = 2; i < count; ++i) std::printf("[%s]\n", arguments[i]);
}

void CopyInput() {
  int byte;
  while ((byte = std::getchar()) != EOF) std::putchar(byte);
}

// Whether a window comes up and its pixels can be painted, which takes a display.
void ShowWindowAndPaint() {
  HWND window = CreateWindowA("STATIC", "quorvane probe", WS_POPUP | WS_BORDER, 10, 10, 100, 100,
                              nullptr, nullptr, nullptr, nullptr);
  ShowWindow(window, SW_SHOWNOACTIVATE);
  UpdateWindow(window);
  HDC target = GetDC(window);
  SetPixel(target, 5, 5, RGB(255, 0, 0));
  std::printf("window %s, pixel %06lx\n", window ? "yes" : "no", GetPixel(target, 5, 5));
}

}  // namespace

int main(int count, char** arguments) {
  _setmode(0, _O_BINARY);
  _setmode(1, _O_BINARY);
  const std::string_view task = count > 1 ? arguments[1] : "";
  if (task == "arguments") SayArguments(count, arguments);
  if (task == "copy") CopyInput();
  if (task == "exit") return std::atoi(arguments[2]);
  if (task == "variable")
    std::printf("%s", std::getenv(arguments[2]) ? std::getenv(arguments[2]) : "(unset)");
  if (task == "window") ShowWindowAndPaint();
  if (task == "sleep") Sleep(static_cast<DWORD>(std::atoi(arguments[2])));
  return 0;
}
