#include "programs/form_host/windows/help_viewer.h"

#include "runtime/runtime_error.h"

namespace quorvane::programs {
namespace {

// Commands of the viewer, under their names in its documentation.
constexpr UINT HH_DISPLAY_TOPIC = 0;
constexpr UINT HH_HELP_CONTEXT = 0xF;
constexpr UINT HH_CLOSE_ALL = 0x12;

std::wstring BehindLast(wchar_t mark, const std::wstring& text) {
  return text.substr(text.find_last_of(mark) + 1);
}

}  // namespace

// Systems give the name alone, or with the folder that is registered for it.
std::wstring HelpFileName(const ComPtr<ITypeInfo>& type) {
  ComPtr<ITypeLib> library;
  UINT index = 0;
  Check(type->GetContainingTypeLib(library.Receive(), &index), u"ITypeInfo.GetContainingTypeLib");
  BSTR name = nullptr;
  Check(library->GetDocumentation(-1, nullptr, nullptr, nullptr, &name),
        u"ITypeLib.GetDocumentation");
  const Text text = FromBstr(name);
  ::SysFreeString(name);
  return BehindLast(L'\\', Wide(text));
}

std::wstring FolderOfCode(IUnknown* object) {
  const void* const code = *reinterpret_cast<const void* const*>(object);
  HMODULE module = nullptr;
  wchar_t path[MAX_PATH];  // NOLINT(*-avoid-c-arrays)
  if (::GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          static_cast<LPCWSTR>(code), &module) == 0 ||
      ::GetModuleFileNameW(module, path, MAX_PATH) == MAX_PATH) {
    Raise(ErrorNumber::kPathNotFound, u"HelpViewer");
  }
  const std::wstring file = path;
  return file.substr(0, file.size() - BehindLast(L'\\', file).size());
}

HelpViewer::~HelpViewer() {
  if (html_help_ != nullptr) html_help_(nullptr, nullptr, HH_CLOSE_ALL, 0);
}

void HelpViewer::Open(const std::wstring& file, DWORD context, HWND owner) {
  if (::GetFileAttributesW(file.c_str()) == INVALID_FILE_ATTRIBUTES)
    Raise(ErrorNumber::kFileNotFound, FromWide(file.c_str()));
  if (html_help_ == nullptr) {
    const HMODULE viewer = ::LoadLibraryW(L"hhctrl.ocx");
    const FARPROC call = viewer != nullptr ? ::GetProcAddress(viewer, "HtmlHelpW") : nullptr;
    if (call == nullptr) Raise(ErrorNumber::kLibraryNotFound, u"hhctrl.ocx");
    html_help_ = reinterpret_cast<HtmlHelp>(reinterpret_cast<void*>(call));
  }
  const UINT command = context != 0 ? HH_HELP_CONTEXT : HH_DISPLAY_TOPIC;
  if (html_help_(owner, file.c_str(), command, context) == nullptr)
    Raise(ErrorNumber::kPathFileAccess, FromWide(file.c_str()));
}

}  // namespace quorvane::programs
