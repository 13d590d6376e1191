#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane {

/// Makes the folder and its missing parents, for the user alone. A failure shows at its first use.
void CreatePrivateFolder(const std::filesystem::path& folder);

/// The bytes of a regular file; nothing when it cannot be read or is no regular file.
[[nodiscard]] std::optional<std::string> ReadWholeFile(const std::filesystem::path& file);

/// Puts the bytes in the place of the file in one step, after they are on the disk: whoever opens
/// it sees the old or the new bytes as a whole. A symbolic link stays and its target is replaced;
/// the permissions stay. False on failure, and then the file is as it was.
[[nodiscard]] bool ReplaceFile(const std::filesystem::path& file, std::string_view bytes);

/// Holds off all other holders, in this process or another, for files of the same folder. It leaves
/// no file of its own behind.
class FolderLock {
 public:
  /// Waits for the lock of the folder in which `file` (or the target of the link `file`) lies.
  explicit FolderLock(const std::filesystem::path& file);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  /// False when there is no such folder.
  [[nodiscard]] bool IsHeld() const { return folder_ >= 0; }

 private:
  int folder_;
};

}  // namespace quorvane
