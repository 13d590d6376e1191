#include "programs/form_host/windows/interactive/main_window.h"

#include <algorithm>
#include <array>

#include "programs/form_host/form_file.h"
#include "programs/form_host/windows/interactive/commands.h"
#include "programs/form_host/windows/interactive/parts.h"
#include "programs/form_host/windows/interactive/questions.h"
#include "runtime/ignored_result.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr const wchar_t* kClassName = L"QuorvaneFormHostWindow";
// A value is handed over when its field was left, after the message that tells so.
constexpr UINT kFieldLeft = WM_APP + 2;

HINSTANCE Program() { return ::GetModuleHandleW(nullptr); }

struct Button {
  int order;
  const char16_t* name;
};
constexpr std::array<Button, 7> kButtons{{{ID_NEW, u"&New"},
                                          {ID_OPEN, u"&Open..."},
                                          {ID_SAVE, u"&Save"},
                                          {ID_SAVE_AS, u"Sa&ve As..."},
                                          {ID_ACTIVATE, u"Ac&tivate"},
                                          {ID_DEACTIVATE, u"&Deactivate"},
                                          {ID_CRC, u"&GetCRCValue"}}};

const char* NameOf(SettingsList::Index setting) { return kSettings[setting].name; }

}  // namespace

TopWindow::TopWindow(WNDPROC procedure) {
  WNDCLASSW window_class{};
  window_class.lpfnWndProc = procedure;
  window_class.hInstance = Program();
  window_class.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  window_class.hbrBackground = ::GetSysColorBrush(COLOR_3DFACE);
  window_class.lpszClassName = kClassName;
  window_class.lpszMenuName = MAKEINTRESOURCEW(ID_WINDOW_MENU);
  ::RegisterClassW(&window_class);
  handle_ = ::CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, L"Form host",
                              WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT, CW_USEDEFAULT,
                              CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, Program(), nullptr);
  if (handle_ == nullptr) RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), u"CreateWindowEx");
}

TopWindow::~TopWindow() { ::DestroyWindow(handle_); }

MainWindow::MainWindow(CallLog& log)
    : log_(log),
      top_(OnMessage),
      settings_(top_.Handle()),
      calls_name_(MakePart(top_.Handle(), L"STATIC", u"Calls: > into the control, < out of it",
                           SS_LEFT, -1)),
      calls_(top_.Handle()),
      status_(MakePart(top_.Handle(), L"EDIT", u"", ES_READONLY | ES_AUTOHSCROLL, ID_STATUS)),
      document_(top_.Handle(), log, [this](const SIZE& pixels) { Resize(pixels); }),
      keys_(::LoadAcceleratorsW(Program(), MAKEINTRESOURCEW(ID_WINDOW_KEYS))) {
  log.AddReader([this](std::string_view piece, CallLog::Kind kind) { calls_.Add(piece, kind); });
  MakeButtons();
  look_.Apply(top_.Handle());
  const SIZE least = LeastSize();
  ::SetWindowPos(top_.Handle(), nullptr, 0, 0, least.cx + 16 * look_.Line(),
                 least.cy + 10 * look_.Line(), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
  ::SetWindowLongPtrW(top_.Handle(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

MainWindow::~MainWindow() {
  document_.Close();
  ::SetWindowLongPtrW(top_.Handle(), GWLP_USERDATA, 0);
  ::DestroyAcceleratorTable(keys_);
}

// In front of the settings, for the eye and for the Tab key.
void MainWindow::MakeButtons() {
  HWND before = HWND_TOP;
  for (const Button& button : kButtons) {
    buttons_.push_back(
        MakePart(top_.Handle(), L"BUTTON", button.name, WS_TABSTOP | BS_PUSHBUTTON, button.order));
    ::SetWindowPos(buttons_.back(), before, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    before = buttons_.back();
  }
}

void MainWindow::Start(const std::string& form) {
  log_.Note(form.empty() ? "New" : "Open " + form);
  if (form.empty())
    document_.New();
  else
    document_.Open(form);
  ShowForm();
}

void MainWindow::Run() {
  Layout();
  ::ShowWindow(top_.Handle(), SW_SHOWDEFAULT);
  settings_.Focus(0);
  MSG message;
  while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (IsForUs(message)) continue;
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
}

// Keys go to the active control first, then to the orders, then from field to field.
bool MainWindow::IsForUs(MSG& message) {
  const bool is_key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
  if (is_key && document_.IsOpen() && document_.Form().Translate(message)) return true;
  return ::TranslateAcceleratorW(top_.Handle(), keys_, &message) != 0 || LeavesCalls(message) ||
         ::IsDialogMessageW(top_.Handle(), &message) != 0;
}

// A field of several lines would keep the Tab key for itself, though nothing can be typed there.
bool MainWindow::LeavesCalls(const MSG& message) const {
  if (message.hwnd != calls_.Handle() || message.message != WM_KEYDOWN || message.wParam != VK_TAB)
    return false;
  MoveFocus(::GetKeyState(VK_SHIFT) < 0 ? TRUE : FALSE, false);
  return true;
}

// --- messages ------------------------------------------------------------------------------------

LRESULT CALLBACK MainWindow::OnMessage(HWND handle, UINT message, WPARAM word, LPARAM value) {
  auto* const window = reinterpret_cast<MainWindow*>(::GetWindowLongPtrW(handle, GWLP_USERDATA));
  if (window == nullptr) return ::DefWindowProcW(handle, message, word, value);
  try {
    return window->Take(message, word, value);
  } catch (...) {
    Tell(handle, DescribeFailure());
    return 0;
  }
}

LRESULT MainWindow::Take(UINT message, WPARAM word, LPARAM value) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(word), HIWORD(word));
      return 0;
    case kFieldLeft:
      if (document_.IsOpen()) IgnoreResult(HandOver(word));
      return 0;
    case CallsView::kUpdate:
      calls_.Update();
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_GETMINMAXINFO: {
      const SIZE least = LeastSize();
      reinterpret_cast<MINMAXINFO*>(value)->ptMinTrackSize = {least.cx, least.cy};
      return 0;
    }
    case WM_SETTINGCHANGE:
      OnSettingsOfSystem();
      return 0;
    case WM_NEXTDLGCTL:
      MoveFocus(word, value != 0);
      return 0;
    case WM_ACTIVATE:
      KeepFocus(LOWORD(word) != WA_INACTIVE);
      return 0;
    case WM_QUERYENDSESSION:
      return MayLeave() ? TRUE : FALSE;
    case WM_CLOSE:
      Exit();
      return 0;
    default:
      return ::DefWindowProcW(top_.Handle(), message, word, value);
  }
}

// Asked for by the system when the letter of a part was pressed: first to the name, then on to what
// it stands for.
void MainWindow::MoveFocus(WPARAM target, bool is_part) const {
  ::SetFocus(is_part
                 ? reinterpret_cast<HWND>(target)
                 : ::GetNextDlgTabItem(top_.Handle(), ::GetFocus(), target != 0 ? TRUE : FALSE));
}

void MainWindow::KeepFocus(bool is_active) {
  if (is_active && focus_ != nullptr) ::SetFocus(focus_);
  if (!is_active) focus_ = ::GetFocus();
}

void MainWindow::OnSettingsOfSystem() {
  look_.Apply(top_.Handle());
  Layout();
}

// --- orders --------------------------------------------------------------------------------------

void MainWindow::OnCommand(int id, int notice) {
  if (id >= ID_VALUES && id < ID_NAMES) {
    if (const auto left = settings_.OnCommand(id, notice))
      ::PostMessageW(top_.Handle(), kFieldLeft, *left, 0);
    return;
  }
  Order(id);
}

void MainWindow::Order(int id) {
  switch (id) {
    case IDOK:
      return OnEnter();
    case IDCANCEL:
      return OnEscape();
    case ID_NEW:
      return New();
    case ID_OPEN:
      return Open();
    case ID_SAVE:
      return IgnoreResult(Save());
    case ID_SAVE_AS:
      return IgnoreResult(SaveAs());
    case ID_EXIT:
      return Exit();
    case ID_ACTIVATE:
      IgnoreResult(Try("Activate", [&] { document_.Form().Activate(); }));
      return;
    case ID_DEACTIVATE:
      IgnoreResult(Try("Deactivate", [&] { document_.Form().Deactivate(); }));
      return;
    case ID_DOUBLE_SIZE: {
      const RECT place = document_.Form().Window().PlaceOfControl();
      return Resize({2 * (place.right - place.left), 2 * (place.bottom - place.top)});
    }
    case ID_CRC:
      return TellCrc();
    case ID_SHOW_COUNTS:
      return ToggleCounts();
    case ID_SELECT_CALLS:
      return calls_.SelectAll();
    case ID_CLEAR_CALLS:
      return calls_.Clear();
    case ID_HELP:
      return ShowHelp();
    default:
      return;
  }
}

bool MainWindow::Try(const std::string& what, const std::function<void()>& body) {
  log_.Note(what);
  try {
    body();
    return true;
  } catch (...) {
    const std::string failure = DescribeFailure();
    log_.Note(failure);
    Say(failure);
    Tell(top_.Handle(), failure);
    return false;
  }
}

void MainWindow::New() {
  if (!MayLeave()) return;
  if (Try("New", [&] { document_.New(); })) ShowForm();
}

void MainWindow::Open() {
  if (!MayLeave()) return;
  const auto file = AskFormToOpen(top_.Handle());
  if (file && Try("Open " + *file, [&] { document_.Open(*file); })) ShowForm();
}

bool MainWindow::Save() { return document_.File().empty() ? SaveAs() : SaveTo(document_.File()); }

bool MainWindow::SaveAs() {
  const auto file = AskFormToSave(top_.Handle(), document_.File());
  return file && SaveTo(*file);
}

bool MainWindow::SaveTo(const std::string& file) {
  if (!HandOverAll()) return false;
  if (!Try("Save " + file, [&] { document_.SaveTo(file); })) return false;
  ShowTitle(false);
  Say("saved to " + file);
  return true;
}

void MainWindow::Exit() {
  if (!MayLeave()) return;
  log_.Note("Exit");
  document_.Close();
  ::PostQuitMessage(0);
}

bool MainWindow::MayLeave() {
  if (!document_.IsOpen()) return true;
  if (!HandOverAll()) return false;
  if (!document_.NeedsSaving()) return true;
  switch (AskWhetherToSave(top_.Handle(), document_.Name())) {
    case Answer::kYes:
      return Save();
    case Answer::kNo:
      return true;
    default:
      return false;
  }
}

void MainWindow::Resize(const SIZE& pixels) {
  const std::string size = std::to_string(pixels.cx) + " x " + std::to_string(pixels.cy);
  if (!Try("Resize to " + size, [&] { document_.Form().Resize(pixels); })) return;
  const RECT place = document_.Form().Window().PlaceOfControl();
  Say("asked for " + size + " pixels, the control has " + std::to_string(place.right - place.left) +
      " x " + std::to_string(place.bottom - place.top));
}

void MainWindow::TellCrc() {
  Try("GetCRCValue", [&] { Say("GetCRCValue=" + std::to_string(document_.Form().GetCRCValue())); });
}

void MainWindow::ToggleCounts() {
  calls_.ShowCounts(!calls_.ShowsCounts());
  ::CheckMenuItem(::GetMenu(top_.Handle()), ID_SHOW_COUNTS,
                  calls_.ShowsCounts() ? MF_CHECKED : MF_UNCHECKED);
}

// The page of the setting that has the keyboard, if it has one.
void MainWindow::ShowHelp() {
  Try("Help", [&] {
    ContainerForm& form = document_.Form();
    const auto setting = settings_.Focused();
    const DWORD context = setting ? form.HelpContextOf(FromUtf8(NameOf(*setting))) : 0;
    log_.Note("help context " + std::to_string(context));
    form.ShowHelp(context);
  });
}

// Presses the button that has the keyboard, or hands the value over.
void MainWindow::OnEnter() {
  const auto button = std::ranges::find(buttons_, ::GetFocus());
  if (button != buttons_.end()) return Order(::GetDlgCtrlID(*button));
  const auto setting = settings_.Focused();
  if (setting && HandOver(*setting)) settings_.Focus(*setting);
}

void MainWindow::OnEscape() {
  if (const auto setting = settings_.Focused()) settings_.Restore(*setting);
}

// --- values --------------------------------------------------------------------------------------

bool MainWindow::HandOver(SettingsList::Index setting) {
  const std::string name = NameOf(setting);
  if (!settings_.IsTyped(setting)) {
    if (settings_.Focused() != setting) settings_.Restore(setting);
    return true;
  }
  std::string refusal;
  log_.Note("Set " + name);
  try {
    document_.Form().Put(FromUtf8(name), *settings_.Typed(setting));
  } catch (...) {
    refusal = DescribeFailure();
  }
  ShowSetting(setting);
  if (refusal.empty()) {
    ShowTitle(true);
    return true;
  }
  log_.Note(refusal);
  Say(name + " keeps its value: " + refusal);
  Tell(top_.Handle(), name + " keeps its value.\n" + refusal);
  settings_.Focus(setting);
  return false;
}

bool MainWindow::HandOverAll() {
  for (SettingsList::Index i = 0; i < kSettings.size(); ++i)
    if (settings_.IsTyped(i) && !HandOver(i)) return false;
  return true;
}

void MainWindow::ShowSetting(SettingsList::Index setting) {
  settings_.Show(setting, document_.Form().Get(FromUtf8(NameOf(setting))));
}

void MainWindow::ShowForm() {
  for (SettingsList::Index i = 0; i < kSettings.size(); ++i) ShowSetting(i);
  ShowTitle(false);
  Say(document_.File().empty() ? "a new form" : "opened " + document_.File());
  Layout();
}

void MainWindow::ShowTitle(bool is_changed) {
  const std::string title = "Form host - " + document_.Name() + (is_changed ? " *" : "");
  ::SetWindowTextW(top_.Handle(), Wide(FromUtf8(title)));
}

void MainWindow::Say(const std::string& line) { ::SetWindowTextW(status_, Wide(FromUtf8(line))); }

}  // namespace quorvane::programs
