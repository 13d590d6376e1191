#include "programs/form_host/windows/interactive/calls_view.h"

#include "programs/form_host/windows/interactive/commands.h"
#include "programs/form_host/windows/interactive/parts.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr int kMost = 2'000'000;  // characters

constexpr DWORD kStyle = WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY |
                         ES_AUTOVSCROLL | ES_AUTOHSCROLL | ES_NOHIDESEL;

struct Selection {
  DWORD first = 0;
  DWORD last = 0;
};

Selection SelectionOf(HWND edit) {
  Selection selection;
  ::SendMessageW(edit, EM_GETSEL, reinterpret_cast<WPARAM>(&selection.first),
                 reinterpret_cast<LPARAM>(&selection.last));
  return selection;
}

void Select(HWND edit, const Selection& selection) {
  ::SendMessageW(edit, EM_SETSEL, selection.first, static_cast<LPARAM>(selection.last));
}

void Replace(HWND edit, const wchar_t* text) {
  ::SendMessageW(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text));
}

}  // namespace

CallsView::CallsView(HWND window)
    : handle_(MakePart(window, L"EDIT", u"", kStyle, ID_CALLS, WS_EX_CLIENTEDGE)) {
  ::SendMessageW(handle_, EM_LIMITTEXT, 0, 0);
}

void CallsView::Add(std::string_view piece, CallLog::Kind kind) {
  if (kind == CallLog::Kind::kCount && !shows_counts_) return;
  if (added_.empty()) ::PostMessageW(::GetParent(handle_), kUpdate, 0, 0);
  for (const char c : piece) {
    if (c == '\n') added_ += '\r';
    added_ += c;
  }
}

void CallsView::Update() {
  const Text text = FromUtf8(std::exchange(added_, {}));
  if (text.IsEmpty()) return;
  const Selection before = SelectionOf(handle_);
  const int length = ::GetWindowTextLengthW(handle_);
  const auto end = static_cast<DWORD>(length);
  Select(handle_, {end, end});
  Replace(handle_, Wide(text));
  if (length > kMost) {
    Select(handle_, {0, end / 2});
    Replace(handle_, L"");
  } else if (before.first != before.last) {
    Select(handle_, before);
    return;
  }
  ::SendMessageW(handle_, WM_VSCROLL, SB_BOTTOM, 0);
}

void CallsView::Clear() {
  added_.clear();
  ::SetWindowTextW(handle_, L"");
}

void CallsView::SelectAll() const {
  ::SetFocus(handle_);
  ::SendMessageW(handle_, EM_SETSEL, 0, -1);
}

}  // namespace quorvane::programs
