#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace quorvane::testing {

/// Makes a file of `size` bytes, an 'x' and zeros: a hole where the file system knows holes, so
/// that gigabytes cost no disk. Not with std::filesystem::resize_file: for Windows that refuses
/// whatever is larger than the room that is free on the disk.
inline void MakeHollowFile(const std::filesystem::path& path, std::uintmax_t size) {
  std::ofstream file(path, std::ios::binary);
  file.put('x');
  file.seekp(static_cast<std::streamoff>(size) - 1);
  file.put('\0');
  ASSERT_TRUE(file.flush().good()) << "cannot write the test's file";
  ASSERT_EQ(std::filesystem::file_size(path), size);
}

}  // namespace quorvane::testing
