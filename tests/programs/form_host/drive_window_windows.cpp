// drive_window: works the form host's window for people as a person does, by messages and keys from
// another program. Reads orders from standard input, a line each, and answers each by one line,
// UTF-8, in which line ends are written \n. An order that cannot be carried out within 30 seconds
// is answered by "! why".
//
//   find                waits for the window; its title
//   title, close        the title; the window's own cross
//   text ID, place ID   a part's text; its place in the window: left top width height
//   corner              where the parts' places start on the screen
//   form, control       the places of the form and of the control's window, or "none"
//   focus               the number of the part that has the keyboard
//   keys CODE...        presses the virtual keys together, as a keyboard does
//   type TEXT           types the text into the part that has the keyboard
//   set ID TEXT         puts a text into a field, as changed by its user
//   fill ID COUNT       the same with that many letters
//   order NUMBER        an order of the menu
//   checked NUMBER      whether that line of the menu is ticked
//   drag X Y X Y        drags with the mouse on the form
//   box                 waits for a box; what it says
//   press ID            presses a button of the box; waits until it is gone
//   name FILE           gives a box for files that name
//   viewer              waits for a help viewer; its title
//   selection ID        the first and the last position selected in a field
//   size W H            sizes the window
//   font HEIGHT         sets the system's font for messages to that height and tells the window
//   sleep MS

#include <windows.h>

#include <cstdio>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr DWORD kStep = 20;  // milliseconds
constexpr int kSteps = 1500;

HWND window = nullptr;

std::string Utf8(const std::wstring& text) {
  std::string bytes(3 * text.size() + 1, '\0');
  const int size =
      ::WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                            static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  std::string line;
  for (const char c : bytes) {
    if (c == '\n') line += "\\n";
    if (c != '\n' && c != '\r') line += c;
  }
  return line;
}

std::wstring FromUtf8(const std::string& bytes) {
  std::wstring text(bytes.size() + 1, L'\0');
  text.resize(static_cast<std::size_t>(
      ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()), text.data(),
                            static_cast<int>(text.size()))));
  return text;
}

std::wstring TextOf(HWND part) {
  std::wstring text(static_cast<std::size_t>(::SendMessageW(part, WM_GETTEXTLENGTH, 0, 0)) + 1,
                    L'\0');
  text.resize(static_cast<std::size_t>(
      ::SendMessageW(part, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

std::wstring ClassOf(HWND part) {
  wchar_t name[64] = L"";
  ::GetClassNameW(part, name, 64);
  return name;
}

template <class Ask>
auto Wait(const char* what, Ask ask) {
  for (int i = 0; i < kSteps; ++i, ::Sleep(kStep))
    if (const auto found = ask()) return found;
  throw std::string(what);
}

HWND Find() {
  return Wait("no window", [] {
    const HWND found = ::FindWindowW(L"QuorvaneFormHostWindow", nullptr);
    return found != nullptr && ::IsWindowVisible(found) != 0 ? found : nullptr;
  });
}

HWND Part(int id) {
  const HWND part = ::GetDlgItem(window, id);
  if (part == nullptr) throw std::string("no such part");
  return part;
}

BOOL CALLBACK LookForBox(HWND candidate, LPARAM found) {
  if (ClassOf(candidate) != L"#32770" || ::IsWindowVisible(candidate) == 0) return TRUE;
  *reinterpret_cast<HWND*>(found) = candidate;
  return FALSE;
}

HWND BoxNow() {
  HWND box = nullptr;
  ::EnumThreadWindows(::GetWindowThreadProcessId(window, nullptr), LookForBox,
                      reinterpret_cast<LPARAM>(&box));
  return box;
}

HWND Box() { return Wait("no box", BoxNow); }

BOOL CALLBACK CollectStatics(HWND part, LPARAM text) {
  const std::wstring own = TextOf(part);
  if (ClassOf(part) == L"Static" && !own.empty()) *reinterpret_cast<std::wstring*>(text) += own;
  return TRUE;
}

std::string WhatTheBoxSays() {
  return Wait("the box says nothing",
              [] {
                std::wstring text;
                ::EnumChildWindows(Box(), CollectStatics, reinterpret_cast<LPARAM>(&text));
                return text.empty() ? std::optional<std::string>() : Utf8(text);
              })
      .value();
}

void Press(int id) {
  const HWND box = Box();
  if (id == IDOK || ::GetDlgItem(box, id) != nullptr) {
    ::PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(id), 0);
  } else {
    throw std::string("no such button");
  }
  Wait("the box stays", [&] { return ::IsWindow(box) == 0 || ::IsWindowVisible(box) == 0; });
}

// The field for the name has one of two numbers, by the look of the box.
void Name(const std::wstring& file) {
  const HWND box = Box();
  const HWND field = Wait("no field for a name", [&] {
    const HWND edit = ::GetDlgItem(box, 0x480);
    return edit != nullptr ? edit : ::GetDlgItem(box, 0x47C);
  });
  ::SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(file.c_str()));
}

std::string PlaceOf(HWND part) {
  if (part == nullptr) return "none";
  RECT place{};
  ::GetWindowRect(part, &place);
  ::MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&place), 2);
  std::ostringstream out;
  out << place.left << ' ' << place.top << ' ' << place.right - place.left << ' '
      << place.bottom - place.top;
  return out.str();
}

HWND Viewer() {
  const HWND viewer = ::FindWindowW(L"HH Parent", nullptr);
  return viewer != nullptr && ::IsWindowVisible(viewer) != 0 ? viewer : nullptr;
}

HWND Form() { return ::FindWindowExW(window, nullptr, L"QuorvaneFormHost", nullptr); }

HWND Focus() {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  ::GetGUIThreadInfo(::GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

void PressKeys(std::istream& words) {
  std::vector<BYTE> keys;
  for (int key = 0; words >> key;) keys.push_back(static_cast<BYTE>(key));
  for (const BYTE key : keys) ::keybd_event(key, 0, 0, 0);
  for (auto key = keys.rbegin(); key != keys.rend(); ++key)
    ::keybd_event(*key, 0, KEYEVENTF_KEYUP, 0);
}

void Type(const std::wstring& text) {
  for (const wchar_t c : text) ::PostMessageW(Focus(), WM_CHAR, c, 1);
}

// As EM_REPLACESEL with undo, which leaves the mark of a change.
void Set(int id, const std::wstring& text) {
  const HWND field = Part(id);
  ::SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
  ::SendMessageW(field, EM_SETMODIFY, TRUE, 0);
}

void Drag(std::istream& words) {
  int from_x = 0;
  int from_y = 0;
  int to_x = 0;
  int to_y = 0;
  words >> from_x >> from_y >> to_x >> to_y;
  ::PostMessageW(Form(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from_x, from_y));
  ::PostMessageW(Form(), WM_MOUSEMOVE, MK_LBUTTON,
                 MAKELPARAM((from_x + to_x) / 2, (from_y + to_y) / 2));
  ::PostMessageW(Form(), WM_LBUTTONUP, 0, MAKELPARAM(to_x, to_y));
}

void SetMessageFont(LONG height) {
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  metrics.lfMessageFont.lfHeight = height;
  ::SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof metrics, &metrics, SPIF_UPDATEINIFILE);
  ::SendMessageW(window, WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
}

std::string Do(const std::string& order, std::istream& words) {
  int id = 0;
  const auto number = [&] { return words >> id, id; };
  const auto rest = [&] {
    std::string text;
    std::getline(words >> std::ws, text);
    return FromUtf8(text);
  };
  if (order == "find") window = Find();
  if (order == "find" || order == "title") return Utf8(TextOf(window));
  if (order == "close") return ::PostMessageW(window, WM_CLOSE, 0, 0), "ok";
  if (order == "text") return Utf8(TextOf(Part(number())));
  if (order == "place") return PlaceOf(Part(number()));
  if (order == "corner") {
    POINT corner{};
    ::ClientToScreen(window, &corner);
    return std::to_string(corner.x) + " " + std::to_string(corner.y);
  }
  if (order == "form") return PlaceOf(Form());
  if (order == "control")
    return PlaceOf(::FindWindowExW(Form(), nullptr, L"QuorvaneSecurity.SecurityCtrl", nullptr));
  if (order == "focus") return std::to_string(::GetDlgCtrlID(Focus()));
  if (order == "keys") return PressKeys(words), "ok";
  if (order == "type") return Type(rest()), "ok";
  if (order == "set") return number(), Set(id, rest()), "ok";
  if (order == "fill") {
    int count = 0;
    words >> id >> count;
    return Set(id, std::wstring(static_cast<std::size_t>(count), L'x')), "ok";
  }
  if (order == "order")
    return ::PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(number()), 0), "ok";
  if (order == "checked")
    return (::GetMenuState(::GetMenu(window), static_cast<UINT>(number()), MF_BYCOMMAND) &
            MF_CHECKED) != 0
               ? "yes"
               : "no";
  if (order == "drag") return Drag(words), "ok";
  if (order == "box") return WhatTheBoxSays();
  if (order == "press") return Press(number()), "ok";
  if (order == "name") return Name(rest()), "ok";
  if (order == "viewer") return Utf8(TextOf(Wait("no viewer", Viewer)));
  if (order == "selection") {
    const auto selection = static_cast<DWORD>(::SendMessageW(Part(number()), EM_GETSEL, 0, 0));
    return std::to_string(LOWORD(selection)) + " " + std::to_string(HIWORD(selection));
  }
  if (order == "size") {
    int height = 0;
    words >> id >> height;
    ::SetWindowPos(window, nullptr, 0, 0, id, height, SWP_NOMOVE | SWP_NOZORDER);
    return "ok";
  }
  if (order == "font") return SetMessageFont(number()), "ok";
  if (order == "sleep") return ::Sleep(static_cast<DWORD>(number())), "ok";
  throw std::string("no such order");
}

// Else the system would tell places as if the screen had 96 dots per inch.
void SeePixelsAsTheyAre() {
  const FARPROC call = ::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "SetProcessDPIAware");
  if (call != nullptr) reinterpret_cast<BOOL(WINAPI*)()>(reinterpret_cast<void*>(call))();
}

}  // namespace

int main() {
  SeePixelsAsTheyAre();
  std::ios::sync_with_stdio(false);
  for (std::string line; std::getline(std::cin, line);) {
    if (line.ends_with('\r')) line.pop_back();
    std::istringstream words(line);
    std::string order;
    words >> order;
    try {
      std::cout << Do(order, words) << std::endl;
    } catch (const std::string& why) {
      std::cout << "! " << why << std::endl;
    }
  }
}
