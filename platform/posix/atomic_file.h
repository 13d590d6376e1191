#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace quorvane {

/// A store could not be read or written; the text names its file and says why.
struct StoreFailure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Makes the folder and its missing parents, for the user alone. A failure shows at its first use.
void CreatePrivateFolder(const std::filesystem::path& folder);

/// Reads a regular file whole; nothing where there is none. Makes and locks nothing. Throws
/// StoreFailure, also for what is no regular file.
[[nodiscard]] std::optional<std::string> ReadFile(const std::filesystem::path& file);

/// Makes the new bytes of a file from its old ones, which are nothing where there is none.
using FileChange = std::function<std::string(const std::optional<std::string>& before)>;

/// Changes a file in one step: whoever reads it sees the old or the new bytes as a whole, which are
/// on the disk before the file's name leads to them; and no change by this function, in any
/// program, is lost to another. Throws StoreFailure, as what `change` throws, and then the file is
/// as it was: without the right to write the file or its folder, when others held it for ten
/// seconds, and so on.
///
/// A symbolic link stays, its target is changed or made; the permissions stay, and the owner as far
/// as the system lets it be given away. A new file has the permissions `mode` less the umask.
/// The change is laid down beside the file as NAME.new, which is also the lock: who may not write
/// in that folder cannot hold it. One that an ended program left is cleared away by the next.
void ChangeFile(const std::filesystem::path& file, unsigned mode, const FileChange& change);

}  // namespace quorvane
