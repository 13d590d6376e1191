// The module that ships, built for size, tells the CRC of its own file, beside the plain way and
// the reads of that file alone, both built for speed.

#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

#include "platform/windows/os_headers.h"
// Behind that:
#include "benchmarks/file_samples.h"
#include "examples/cpp/security_ctrl.h"
#include "runtime/ignored_result.h"

namespace quorvane::benchmarks {
namespace {

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

Text ModuleFile() { return Text(reinterpret_cast<const char16_t*>(QUORVANE_MODULE_FILE)); }

// The control of the loaded module, or null.
ISecurityCtrl* MakeControl(HMODULE module) {
  const auto get_class_object = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(::GetProcAddress(module, "DllGetClassObject")));
  IClassFactory* factory = nullptr;
  void* control = nullptr;
  if (get_class_object == nullptr || FAILED(get_class_object(CLSID_SecurityCtrl, IID_IClassFactory,
                                                             reinterpret_cast<void**>(&factory))))
    return nullptr;
  IgnoreResult(factory->CreateInstance(nullptr, IID_ISecurityCtrl, &control));
  factory->Release();
  return static_cast<ISecurityCtrl*>(control);
}

void AsWritten(benchmark::State& state) { MeasureAsWritten(state, ModuleFile()); }
void ReadsAlone(benchmark::State& state) { MeasureReadsAlone(state, ModuleFile()); }

void GetCRCValue(benchmark::State& state) {
  ::OleInitialize(nullptr);
  const HMODULE module = ::LoadLibraryW(QUORVANE_MODULE_FILE);
  ISecurityCtrl* const control = MakeControl(module);
  for ([[maybe_unused]] auto round : state) {
    long crc = 0;
    if (control == nullptr || FAILED(control->GetCRCValue(&crc))) {
      state.SkipWithError("the module does not tell its CRC: build preset windows first");
      break;
    }
    benchmark::DoNotOptimize(crc);
  }
  if (control != nullptr) control->Release();
  if (module != nullptr) ::FreeLibrary(module);
  ::OleUninitialize();
}

BENCHMARK(AsWritten)->Name("Shipped/base_as_written");
BENCHMARK(GetCRCValue)->Name("Shipped/GetCRCValue");
BENCHMARK(ReadsAlone)->Name("Shipped/reads_alone");

}  // namespace
}  // namespace quorvane::benchmarks
