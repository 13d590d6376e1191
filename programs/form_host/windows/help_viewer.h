#pragma once

#include <string>

#include "programs/form_host/windows/com.h"

namespace quorvane::programs {

/// The folder of the module that an object's code lies in, with its last backslash.
[[nodiscard]] std::wstring FolderOfCode(IUnknown* object);
/// The name, without a folder, of the help file that the library of a type names.
[[nodiscard]] std::wstring HelpFileName(const ComPtr<ITypeInfo>& type);

/// The system's help viewer, open on a control's help file.
class HelpViewer {
 public:
  HelpViewer() = default;
  HelpViewer(const HelpViewer&) = delete;
  HelpViewer& operator=(const HelpViewer&) = delete;
  /// Closes what was opened.
  ~HelpViewer();

  /// Opens the page of that help context, or the first one for 0, in a window of its own, whose
  /// messages come on this thread. Raises file not found (53) without the help file, and error in
  /// loading a library (48) without a viewer.
  void Open(const std::wstring& file, DWORD context, HWND owner);

 private:
  using HtmlHelp = HWND(WINAPI*)(HWND owner, LPCWSTR file, UINT command, DWORD_PTR data);

  HtmlHelp html_help_ = nullptr;  // looked up at the first Open()
};

}  // namespace quorvane::programs
