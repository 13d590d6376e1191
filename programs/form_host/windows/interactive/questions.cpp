#include "programs/form_host/windows/interactive/questions.h"

#include <commdlg.h>

#include "programs/common/program.h"
#include "programs/form_host/form_file.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr const wchar_t* kTitle = L"Form host";
constexpr std::size_t kLongestName = 1024;

template <class Dialog>
std::optional<std::string> AskName(HWND window, const std::string& present, DWORD flags,
                                   Dialog dialog) {
  std::wstring name = Wide(FromUtf8(present));
  name.resize(kLongestName);
  OPENFILENAMEW question{};
  question.lStructSize = sizeof question;
  question.hwndOwner = window;
  question.lpstrFilter = L"Forms (*.form)\0*.form\0All files (*.*)\0*.*\0";
  question.lpstrDefExt = L"form";
  question.lpstrFile = name.data();
  question.nMaxFile = static_cast<DWORD>(name.size());
  question.Flags = flags | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
  if (dialog(&question) == FALSE) return std::nullopt;
  return ToUtf8(FromWide(name.c_str()));
}

}  // namespace

std::optional<std::string> AskFormToOpen(HWND window) {
  return AskName(window, "", OFN_FILEMUSTEXIST, ::GetOpenFileNameW);
}

std::optional<std::string> AskFormToSave(HWND window, const std::string& present) {
  return AskName(window, present, OFN_OVERWRITEPROMPT | OFN_NOREADONLYRETURN, ::GetSaveFileNameW);
}

Answer AskWhetherToSave(HWND window, const std::string& form) {
  const Text question = FromUtf8("Save the changes to " + form + "?");
  switch (::MessageBoxW(window, Wide(question), kTitle, MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
      return Answer::kYes;
    case IDNO:
      return Answer::kNo;
    default:
      return Answer::kCancel;
  }
}

void Tell(HWND window, const std::string& message) {
  ::MessageBoxW(window, Wide(FromUtf8(message)), kTitle, MB_OK | MB_ICONWARNING);
}

std::string DescribeFailure() {
  try {
    throw;
  } catch (const FormFileError& error) {
    return error.what();
  } catch (...) {
    return DescribeError(CurrentRuntimeError());
  }
}

}  // namespace quorvane::programs
