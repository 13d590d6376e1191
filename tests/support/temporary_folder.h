#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "runtime/text.h"

namespace quorvane::testing {

/// A folder of a test's own, under the system's for temporary files; goes with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    const auto* const test = ::testing::UnitTest::GetInstance()->current_test_info();
    const std::string name = std::string("quorvane_") + test->test_suite_name() + "_" +
                             test->name() + "_" + std::to_string(std::random_device{}());
    path_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] std::filesystem::path Path(std::u16string_view name) const {
    return path_ / std::filesystem::path(name);
  }
  /// The same as the module's own code names a file: folder, backslash, name.
  [[nodiscard]] Text Name(std::u16string_view name) const {
    return Text(path_.u16string()) + u"\\" + Text(name);
  }

  /// Writes a file of these bytes; its name for the module's code.
  Text WriteFile(std::u16string_view name, std::span<const std::uint8_t> bytes) const {
    std::ofstream file(Path(name), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    EXPECT_TRUE(file.flush().good()) << "cannot write the test's file";
    return Name(name);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace quorvane::testing
