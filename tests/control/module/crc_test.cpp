// Proves GetCRCValue of the running module: read afresh from disk, by path and name and ".ocx",
// with errors that tell what failed.

#include <algorithm>
#include <cstring>
#include <vector>

#include "tests/support/component/module_under_test.h"
// Behind windows.h:
#include <psapi.h>

namespace quorvane::component::crc_test {
namespace {

using testing::ReplacedImport;

std::vector<unsigned char> Bytes(const std::wstring& file) {
  const HANDLE handle = ::CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(handle, INVALID_HANDLE_VALUE);
  std::vector<unsigned char> bytes(::GetFileSize(handle, nullptr));
  DWORD count = 0;
  EXPECT_TRUE(::ReadFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &count, nullptr));
  EXPECT_EQ(count, bytes.size());
  ::CloseHandle(handle);
  return bytes;
}

// Bit by bit, straight from the definition.
LONG Crc32(const std::vector<unsigned char>& bytes) {
  std::uint32_t value = 0xFFFFFFFF;
  for (const unsigned char byte : bytes) {
    value ^= byte;
    for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
  }
  return static_cast<LONG>(~value);
}

LONG CrcValue(const Com<ISecurityCtrl>& control) {
  LONG value = 0;
  EXPECT_EQ(control->GetCRCValue(&value), S_OK);
  return value;
}

struct ComError {
  HRESULT result = S_OK;
  std::wstring source;
  std::wstring description;
  GUID interface_id{};
};

ComError ErrorOfCrcValue(const Com<ISecurityCtrl>& control) {
  ComError error;
  LONG value = 77;
  error.result = control->GetCRCValue(&value);
  EXPECT_EQ(value, 0) << "the out value is cleared";
  Com<IErrorInfo> info;
  if (::GetErrorInfo(0, info.Out()) != S_OK) return error;
  Bstr source;
  Bstr description;
  info->GetSource(source.Out());
  info->GetDescription(description.Out());
  info->GetGUID(&error.interface_id);
  error.source = source.Text();
  error.description = description.Text();
  return error;
}

TEST(GetCRCValue, IsTheCrc32OfTheModulesFile) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    const LONG expected = Crc32(Bytes(QUORVANE_MODULE_FILE));
    EXPECT_EQ(CrcValue(control), expected);
    EXPECT_EQ(CrcValue(control), expected) << "the same file, the same value";
  });
}

TEST(GetCRCValue, ReadsTheFileAfreshAtEachCall) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"copy.ocx");
    const std::wstring parked = folder.File(L"parked.bin");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const auto control = module.CreateSecurityCtrl();
    const LONG before = CrcValue(control);
    ASSERT_TRUE(::MoveFileW(copy.c_str(), parked.c_str()));
    const HANDLE file =
        ::CreateFileW(copy.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    DWORD count = 0;
    ::WriteFile(file, "123456789", 9, &count, nullptr);
    ::CloseHandle(file);
    EXPECT_EQ(CrcValue(control), -873187034);
    EXPECT_NE(before, -873187034);
  });
}

// The names under which the module opens files, as it passes them on.
std::vector<std::wstring> opened_names;
HANDLE WINAPI OpenAndNote(LPCWSTR name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* rights,
                          DWORD how, DWORD flags, HANDLE like) {
  opened_names.emplace_back(name);
  return ::CreateFileW(name, access, share, rights, how, flags, like);
}

TEST(GetCRCValue, OfAModuleInTheRootOfADriveAsksForTwoBackslashes) {
  OnApartmentThread([] {
    const std::wstring name = L"quorvane-" + std::to_wstring(::GetCurrentProcessId()) + L".ocx";
    const std::wstring copy = L"C:\\" + name;
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    {
      const Module module(copy);
      const ReplacedImport noted(module.Handle(), "CreateFileW", OpenAndNote);
      ASSERT_TRUE(noted.Took());
      opened_names.clear();
      EXPECT_EQ(CrcValue(module.CreateSecurityCtrl()), Crc32(Bytes(copy)));
      EXPECT_EQ(opened_names, (std::vector<std::wstring>{L"C:\\\\" + name}));
    }
    EXPECT_TRUE(::DeleteFileW(copy.c_str()));
  });
}

// How often memory that the process allocated holds the bytes; the caller's stack is left aside.
int CopiesInMemory(const BYTE* bytes, std::size_t size) {
  int copies = 0;
  MEMORY_BASIC_INFORMATION stack{};
  ::VirtualQuery(&stack, &stack, sizeof stack);
  MEMORY_BASIC_INFORMATION part{};
  for (const BYTE* start = nullptr; ::VirtualQuery(start, &part, sizeof part) != 0;
       start += part.RegionSize) {
    if (part.State != MEM_COMMIT || part.Type != MEM_PRIVATE || part.Protect != PAGE_READWRITE ||
        part.AllocationBase == stack.AllocationBase)
      continue;
    const BYTE* const end = start + part.RegionSize;
    for (const BYTE* at = start; (at = std::search(at, end, bytes, bytes + size)) != end; ++at)
      ++copies;
  }
  return copies;
}

// The table of a cCRC32 is the object's own, and that is made for one call: nothing of it stands in
// the module's image or in memory that outlives the call. (Stacks of threads that ended may hold
// some of an earlier one.)
TEST(GetCRCValue, LeavesNoTableBehind) {
  OnApartmentThread([] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    const std::uint32_t entries[] = {0x77073096, 0xEE0E612C, 0x990951BA, 0x076DC419};
    const auto* const bytes = reinterpret_cast<const BYTE*>(entries);
    const int before = CopiesInMemory(bytes, sizeof entries);
    CrcValue(control);
    const int behind = CopiesInMemory(bytes, sizeof entries);
    EXPECT_LE(behind, before);
    const auto* const image = reinterpret_cast<const BYTE*>(module.Handle());
    MODULEINFO whole{};
    ASSERT_TRUE(
        ::GetModuleInformation(::GetCurrentProcess(), module.Handle(), &whole, sizeof whole));
    ASSERT_GT(whole.SizeOfImage, 0x10000U);
    const auto* const end = image + whole.SizeOfImage;
    EXPECT_EQ(std::search(image, end, bytes, bytes + sizeof entries), end);
    void* const page = ::VirtualAlloc(nullptr, sizeof entries, MEM_COMMIT, PAGE_READWRITE);
    ASSERT_NE(page, nullptr);
    std::memcpy(page, bytes, sizeof entries);
    EXPECT_GT(CopiesInMemory(bytes, sizeof entries), behind) << "were it there, it would be seen";
    ::VirtualFree(page, 0, MEM_RELEASE);
  });
}

TEST(GetCRCValue, FailsWith53UnderAnotherExtension) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"Renamed.dll");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const ComError error = ErrorOfCrcValue(module.CreateSecurityCtrl());
    EXPECT_EQ(error.result, static_cast<HRESULT>(0x800A0035));
    EXPECT_EQ(error.source, L"Renamed.File");
    EXPECT_EQ(error.description, L"File not found");
    EXPECT_TRUE(IsEqualGUID(error.interface_id, kSecurityCtrlId));
  });
}

HRESULT WINAPI NoErrorObject(ICreateErrorInfo**) { return E_OUTOFMEMORY; }

TEST(GetCRCValue, FailsWithItsNumberWhereNoErrorObjectCanBeMade) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"Renamed.dll");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const ReplacedImport refused(module.Handle(), "CreateErrorInfo", NoErrorObject);
    ASSERT_TRUE(refused.Took());
    const ComError error = ErrorOfCrcValue(module.CreateSecurityCtrl());
    EXPECT_EQ(error.result, static_cast<HRESULT>(0x800A0035));
    EXPECT_EQ(error.source, L"");
  });
}

TEST(GetCRCValue, TakesTheFileOfItsNameWithOcxWhateverWasLoaded) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"Renamed.dll");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const HANDLE file = ::CreateFileW(folder.File(L"Renamed.ocx").c_str(), GENERIC_WRITE, 0,
                                      nullptr, CREATE_NEW, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    ::CloseHandle(file);
    const Module module(copy);
    EXPECT_EQ(CrcValue(module.CreateSecurityCtrl()), 0) << "the empty file beside it";
  });
}

TEST(GetCRCValue, FailsWhenTheFileIsGone) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"gone.ocx");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const auto control = module.CreateSecurityCtrl();
    ASSERT_TRUE(::MoveFileW(copy.c_str(), folder.File(L"parked.bin").c_str()));
    EXPECT_EQ(ErrorOfCrcValue(control).result, static_cast<HRESULT>(0x800A0035));
  });
}

TEST(GetCRCValue, FailsWithThePlatformsErrorWhileAWriterHasTheFile) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"locked.ocx");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const auto control = module.CreateSecurityCtrl();
    ASSERT_TRUE(::MoveFileW(copy.c_str(), folder.File(L"parked.bin").c_str()));
    const HANDLE writer = ::CreateFileW(copy.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                        CREATE_NEW, 0, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    const ComError error = ErrorOfCrcValue(control);
    ::CloseHandle(writer);
    EXPECT_EQ(error.result, static_cast<HRESULT>(0x800A0046)) << "permission denied (70)";
    EXPECT_EQ(error.description, L"Permission denied");
    EXPECT_EQ(CrcValue(control), 0) << "and works again once the writer has gone";
  });
}

TEST(GetCRCValue, TellsLateBoundCallersByExcepInfo) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"Late.dll");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const auto control = module.CreateControl().As<IDispatch>();
    EXCEPINFO info{};
    DISPPARAMS none{};
    Variant result;
    EXPECT_EQ(control->Invoke(0x6003005E, IID_NULL, 0, DISPATCH_METHOD, &none, result.Get(), &info,
                              nullptr),
              DISP_E_EXCEPTION);
    if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
    EXPECT_EQ(info.scode, static_cast<HRESULT>(0x800A0035));
    EXPECT_EQ(info.wCode, 0);
    EXPECT_STREQ(info.bstrSource, L"Late.File");
    EXPECT_STREQ(info.bstrDescription, L"File not found");
    ::SysFreeString(info.bstrSource);
    ::SysFreeString(info.bstrDescription);
    ::SysFreeString(info.bstrHelpFile);
    EXPECT_EQ(control->Invoke(0x6003005E, IID_NULL, 0, DISPATCH_METHOD, &none, result.Get(),
                              nullptr, nullptr),
              DISP_E_EXCEPTION)
        << "EXCEPINFO may be null";
  });
}

constexpr DISPID kCrcMember = 0x6003005E;
constexpr DISPID kPortMember = 0x68030053;

// A running module's file cannot be deleted, but moved away.
TEST(GetCRCValue, FailsWith53ForLateBoundCallersWhenTheFileIsGone) {
  for (const bool was_called_before : {true, false}) {
    OnApartmentThread([was_called_before] {
      const TemporaryFolder folder;
      const std::wstring copy = folder.File(L"gone.ocx");
      ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
      const Module module(copy);
      const auto control = module.CreateControl().As<IDispatch>();
      DISPPARAMS none{};
      Variant result;
      if (was_called_before) {
        EXPECT_EQ(control->Invoke(kCrcMember, IID_NULL, 0, DISPATCH_METHOD, &none, result.Get(),
                                  nullptr, nullptr),
                  S_OK);
      }
      ASSERT_TRUE(::MoveFileW(copy.c_str(), folder.File(L"parked.bin").c_str()));
      EXCEPINFO info{};
      EXPECT_EQ(control->Invoke(kCrcMember, IID_NULL, 0, DISPATCH_METHOD, &none, result.Get(),
                                &info, nullptr),
                DISP_E_EXCEPTION)
          << was_called_before;
      EXPECT_EQ(info.scode, static_cast<HRESULT>(0x800A0035));
      ::SysFreeString(info.bstrSource);
      ::SysFreeString(info.bstrDescription);
      ::SysFreeString(info.bstrHelpFile);
      EXPECT_EQ(control->Invoke(kPortMember, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, result.Get(),
                                nullptr, nullptr),
                S_OK);
      EXPECT_EQ(result->vt, VT_I2);
    });
  }
}

TEST(GetCRCValue, LeavesNoFileOpen) {
  OnApartmentThread([] {
    const TemporaryFolder folder;
    const std::wstring copy = folder.File(L"closed.ocx");
    ASSERT_TRUE(::CopyFileW(QUORVANE_MODULE_FILE, copy.c_str(), TRUE));
    const Module module(copy);
    const auto control = module.CreateSecurityCtrl();
    CrcValue(control);
    const ULONG_PTR before = HandlePlace();
    for (int i = 0; i < 50; ++i) CrcValue(control);
    EXPECT_LE(HandlePlace(), before + 2);
  });
}

}  // namespace
}  // namespace quorvane::component::crc_test
