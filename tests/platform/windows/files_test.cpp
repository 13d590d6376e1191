// What the files promise on Windows alone: hidden and system files, the quick test for a plain name
// against a real listing, writers shut out by the system, and the numbers of its error codes.

#include <gtest/gtest.h>

#include <array>

#include "platform/files.h"
#include "platform/windows/file_errors.h"
#include "platform/windows/os_headers.h"
#include "tests/platform/wild_cards.h"
#include "tests/support/raises.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/wine_windows.h"

namespace quorvane {
namespace {

using testing::ErrorNumberOf;
using testing::SampleBytes;

const wchar_t* Wide(const Text& name) {
  return reinterpret_cast<const wchar_t*>(name.Characters().c_str());
}

class WindowsFiles : public ::testing::Test {
 protected:
  ~WindowsFiles() override { files().Close(1); }

  const testing::TemporaryFolder folder_;
  const Text name_ = folder_.WriteFile(u"a.bin", SampleBytes(100));
};

TEST_F(WindowsFiles, HiddenAndSystemFilesAreNotListed) {
  for (const DWORD attribute :
       std::to_array<DWORD>({FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM})) {
    ASSERT_TRUE(::SetFileAttributesW(Wide(name_), attribute));
    // Some file systems under Wine keep no such attributes; then there is nothing to hide.
    ASSERT_EQ(::GetFileAttributesW(Wide(name_)) & attribute, attribute);
    EXPECT_TRUE(files().ListName(name_).IsEmpty()) << attribute;
    EXPECT_TRUE(files().ListName(folder_.Name(u"*.bin")).IsEmpty()) << attribute;
  }
}

TEST_F(WindowsFiles, ReadOnlyAndArchivedFilesAreListed) {
  ASSERT_TRUE(::SetFileAttributesW(Wide(name_), FILE_ATTRIBUTE_READONLY));
  EXPECT_FALSE(files().ListName(name_).IsEmpty());
  EXPECT_FALSE(files().ListName(folder_.Name(u"*.bin")).IsEmpty());
  ASSERT_TRUE(::SetFileAttributesW(Wide(name_), FILE_ATTRIBUTE_ARCHIVE));
  EXPECT_FALSE(files().ListName(name_).IsEmpty());
}

TEST_F(WindowsFiles, DoNotTellUpperFromLowerCase) {
  EXPECT_FALSE(files().ListName(folder_.Name(u"A.BIN")).IsEmpty());
  EXPECT_FALSE(files().ListName(folder_.Name(u"*.BIN")).IsEmpty());
  EXPECT_EQ(ErrorNumberOf([&] { files().OpenForReading(folder_.Name(u"A.BIN"), 1); }), 0);
}

// The first normal file by the system's own listing, and nothing else.
bool IsListedBySystem(const Text& name) {
  WIN32_FIND_DATAW entry;
  const HANDLE listing = ::FindFirstFileW(Wide(name), &entry);
  if (listing == INVALID_HANDLE_VALUE) return false;
  bool found = false;
  do {
    found = (entry.dwFileAttributes &
             (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_DIRECTORY)) == 0;
  } while (!found && ::FindNextFileW(listing, &entry));
  ::FindClose(listing);
  return found;
}

TEST_F(WindowsFiles, ThePlainTestAgreesWithTheListing) {
  std::filesystem::create_directory(folder_.Path(u"sub"));
  folder_.WriteFile(u"long name with blanks.extension", SampleBytes(1));
  folder_.WriteFile(u"noextension", SampleBytes(1));
  for (const auto* const tail : {u"a.bin",
                                 u"A.BIN",
                                 u"missing.bin",
                                 u"sub",
                                 u"sub\\",
                                 u"sub\\.",
                                 u"sub\\..",
                                 u".",
                                 u"..",
                                 u"",
                                 u"a.bin\\",
                                 u"a.bin/",
                                 u"a.bin\\b",
                                 u"a.bin.",
                                 u"a.bin ",
                                 u"noextension",
                                 u"noextension.",
                                 u"a.bin:",
                                 u"a.bin:x",
                                 u"a.bin::$DATA",
                                 u"sub\\..\\a.bin",
                                 u"sub/../a.bin",
                                 u"LONGNA~1.EXT",
                                 u"a<",
                                 u"a>bin",
                                 u"a\"bin",
                                 u"a|b",
                                 u"*",
                                 u"*.",
                                 u"?.bin",
                                 u"long name with blanks.extension"}) {
    const Text name = folder_.Name(tail);
    std::int32_t error = 0;
    bool listed = false;
    error = ErrorNumberOf([&] { listed = !files().ListName(name).IsEmpty(); });
    EXPECT_EQ(listed, IsListedBySystem(name)) << ToUtf8(name) << ", error " << error;
  }
  for (const auto* const name : {u"NUL", u"C:", u"C:\\", u"C:\\windows", u"C:\\windows\\*.ini",
                                 u"C:\\windows\\system32\\kernel32.dll", u"\\", u"\\windows"}) {
    bool listed = false;
    static_cast<void>(ErrorNumberOf([&] { listed = !files().ListName(name).IsEmpty(); }));
    EXPECT_EQ(listed, IsListedBySystem(name)) << ToUtf8(name);
  }
}

TEST(WindowsWildCards, FollowTheRuleOfWindowsButInWine8) {
  for (const auto& row : testing::kWildCards) {
    const Text expected = testing::IsWine8() ? row.finds_in_wine_8 : row.finds;
    EXPECT_EQ(testing::FoundByWildCard(row.pattern), expected) << ToUtf8(row.pattern);
  }
}

TEST_F(WindowsFiles, APlainNameComesBackAsItWasSpelledAndAWildCardAsTheFolderSpellsIt) {
  EXPECT_EQ(files().ListName(folder_.Name(u"A.bin")), Text(u"A.bin"));
  EXPECT_EQ(files().ListName(folder_.Name(u"A.b*")), Text(u"a.bin"));
}

TEST_F(WindowsFiles, AnOpenFileShutsWritersOutAndLetsReadersIn) {
  files().OpenForReading(name_, 1);
  const HANDLE writer =
      ::CreateFileW(Wide(name_), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
  EXPECT_EQ(writer, INVALID_HANDLE_VALUE);
  EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));
  const HANDLE reader =
      ::CreateFileW(Wide(name_), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(reader, INVALID_HANDLE_VALUE);
  ::CloseHandle(reader);
  EXPECT_FALSE(::DeleteFileW(Wide(name_)));
  files().Close(1);
  EXPECT_TRUE(::DeleteFileW(Wide(name_)));
}

TEST_F(WindowsFiles, LeaveNoHandleBehind) {
  const auto count_handles = [] {
    DWORD count = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &count);
    return count;
  };
  static_cast<void>(files().ListName(name_));
  const DWORD before = count_handles();
  for (int round = 0; round < 50; ++round) {
    static_cast<void>(files().ListName(folder_.Name(u"*.bin")));
    static_cast<void>(files().ListName(folder_.Name(u"missing.*")));
    files().OpenForReading(name_, 1);
    EXPECT_EQ(ErrorNumberOf([&] { files().OpenForReading(name_, 1); }), 55);
    files().Close(1);
    EXPECT_EQ(ErrorNumberOf([&] { files().OpenForReading(folder_.Name(u"missing"), 1); }), 53);
  }
  EXPECT_EQ(count_handles(), before);
}

TEST(WindowsFileErrors, HaveTheRunTimeNumbers) {
  const struct {
    DWORD system_code;
    std::int32_t number;
  } kCases[] = {{ERROR_FILE_NOT_FOUND, 53},
                {ERROR_PATH_NOT_FOUND, 76},
                {ERROR_DIRECTORY, 76},
                {ERROR_TOO_MANY_OPEN_FILES, 67},
                {ERROR_NO_SYSTEM_RESOURCES, 67},
                {ERROR_ACCESS_DENIED, 75},
                {ERROR_SHARING_VIOLATION, 70},
                {ERROR_LOCK_VIOLATION, 70},
                {ERROR_WRITE_PROTECT, 70},
                {ERROR_NOT_ENOUGH_MEMORY, 7},
                {ERROR_OUTOFMEMORY, 7},
                {ERROR_INVALID_HANDLE, 52},
                {ERROR_INVALID_NAME, 52},
                {ERROR_BAD_PATHNAME, 52},
                {ERROR_BAD_NETPATH, 52},
                {ERROR_BAD_NET_NAME, 52},
                {ERROR_BUFFER_OVERFLOW, 52},
                {ERROR_FILENAME_EXCED_RANGE, 52},
                {ERROR_CRC, 57},
                {ERROR_SEEK, 57},
                {ERROR_SECTOR_NOT_FOUND, 57},
                {ERROR_READ_FAULT, 57},
                {ERROR_GEN_FAILURE, 57},
                {ERROR_IO_DEVICE, 57},
                {ERROR_FILE_EXISTS, 58},
                {ERROR_ALREADY_EXISTS, 58},
                {ERROR_DISK_FULL, 61},
                {ERROR_HANDLE_DISK_FULL, 61},
                {ERROR_HANDLE_EOF, 62},
                {ERROR_INVALID_DRIVE, 68},
                {ERROR_BAD_UNIT, 68},
                {ERROR_DEV_NOT_EXIST, 68},
                {ERROR_NOT_READY, 71},
                {ERROR_INVALID_FUNCTION, 75}};
  for (const auto& error : kCases) {
    EXPECT_EQ(FileErrorNumber(error.system_code), error.number) << error.system_code;
    ::SetLastError(error.system_code);
    EXPECT_EQ(ErrorNumberOf([] { RaiseLastFileError(); }), error.number);
  }
}

}  // namespace
}  // namespace quorvane
