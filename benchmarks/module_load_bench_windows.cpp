// What a host pays for the module: load, class object, create, release, unload, beside the same for
// a module that imports the base library and the C library only, as the compiler builds it and
// without the compiler's start-up code. The host has OLE and its automation library loaded, as
// every container has.

#include <benchmark/benchmark.h>

#include "control/interface/identities.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// Behind windows.h:
#include <ole2.h>

namespace quorvane::benchmarks {
namespace {

using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);

bool OneRound(const wchar_t* file, const char* export_name) {
  const HMODULE module = ::LoadLibraryW(file);
  if (module == nullptr) return false;
  const auto get_class_object = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(::GetProcAddress(module, export_name)));
  IClassFactory* factory = nullptr;
  IUnknown* object = nullptr;
  const auto& class_id = reinterpret_cast<const CLSID&>(identities::kClassId);
  const bool is_made =
      get_class_object != nullptr &&
      SUCCEEDED(
          get_class_object(class_id, IID_IClassFactory, reinterpret_cast<void**>(&factory))) &&
      SUCCEEDED(factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(&object)));
  if (object != nullptr) object->Release();
  if (factory != nullptr) factory->Release();
  ::FreeLibrary(module);
  return is_made;
}

void LoadCreateRelease(benchmark::State& state, const wchar_t* file, const char* export_name) {
  ::OleInitialize(nullptr);
  // A container talks in variants and texts of automation. This program does not: without this,
  // each round would load that library anew.
  const HMODULE automation = ::LoadLibraryW(L"oleaut32.dll");
  for ([[maybe_unused]] auto round : state) {
    if (!OneRound(file, export_name)) {
      state.SkipWithError("the module cannot be loaded: build preset windows first");
      break;
    }
  }
  ::FreeLibrary(automation);
  ::OleUninitialize();
}

// A stdcall export of a plain build bears its decoration.
BENCHMARK_CAPTURE(LoadCreateRelease, , QUORVANE_PLAIN_MODULE, "DllGetClassObject@12")
    ->Name("Load/base_kernel32_and_msvcrt");
BENCHMARK_CAPTURE(LoadCreateRelease, , QUORVANE_BARE_MODULE, "DllGetClassObject@12")
    ->Name("Load/without_start_up_code");
BENCHMARK_CAPTURE(LoadCreateRelease, , QUORVANE_MODULE_FILE, "DllGetClassObject")
    ->Name("Load/QuorvaneSecurity");

}  // namespace
}  // namespace quorvane::benchmarks
