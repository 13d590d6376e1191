#pragma once

#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// The system's help viewer, open on a control's help file: the one that its type library names, in
/// the folder of the module that the control's code lies in.
class HelpViewer {
 public:
  HelpViewer() = default;
  HelpViewer(const HelpViewer&) = delete;
  HelpViewer& operator=(const HelpViewer&) = delete;
  /// Closes what was opened.
  ~HelpViewer();

  /// Opens the first page in a window of its own, whose messages come on this thread. Raises file
  /// not found (53) without the help file, and error in loading a library (48) without a viewer.
  void Open(const ComPtr<IDispatch>& control, HWND owner);

 private:
  using HtmlHelp = HWND(WINAPI*)(HWND owner, LPCWSTR file, UINT command, DWORD_PTR data);

  HtmlHelp html_help_ = nullptr;  // looked up at the first Open()
};

}  // namespace quorvane::programs
