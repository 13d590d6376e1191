// The form in a real container, as the flow of the form host asks for it.

#include "programs/form_host/hosted_form.h"

#include "programs/form_host/windows/container_form.h"

namespace quorvane::programs {
namespace {

// A single-threaded apartment, as a control of the apartment model wants it, with what containers
// and the system's boxes for files ask of it besides.
struct Apartment {
  Apartment() { Check(::OleInitialize(nullptr), u"OleInitialize"); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
  ~Apartment() { ::OleUninitialize(); }
};

struct Work {
  const std::function<void()>& body;
  std::exception_ptr failure;
};

DWORD WINAPI RunWork(void* parameter) {
  auto& work = *static_cast<Work*>(parameter);
  try {
    const Apartment apartment;
    work.body();
  } catch (...) {
    work.failure = std::current_exception();
  }
  return 0;
}

}  // namespace

std::unique_ptr<HostedForm> MakeForm(ChangeListener listener, CallLog* log) {
  return std::make_unique<ContainerForm>(std::move(listener), log);
}

void OnFreshThread(const std::function<void()>& body) {
  Work work{body, nullptr};
  const HANDLE thread = ::CreateThread(nullptr, 0, RunWork, &work, 0, nullptr);
  if (thread == nullptr) RaiseResult(HRESULT_FROM_WIN32(::GetLastError()), u"CreateThread");
  ::WaitForSingleObject(thread, INFINITE);
  ::CloseHandle(thread);
  if (work.failure) std::rethrow_exception(work.failure);
}

}  // namespace quorvane::programs
