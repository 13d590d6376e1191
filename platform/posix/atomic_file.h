#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace quorvane {

/// Makes the folder and its missing parents, for the user alone. A failure shows at its first use.
void CreatePrivateFolder(const std::filesystem::path& folder);

/// Reads a regular file whole. Gives 0, or the system's code, and then `bytes` is nothing: ENOENT
/// or ENOTDIR where there is none, EINVAL for what is no regular file. Makes and locks nothing.
[[nodiscard]] int ReadFile(const std::filesystem::path& file, std::optional<std::string>& bytes);

/// Makes the new bytes of a file from its old ones, which are nothing where there is none; nothing
/// gives the change up.
using FileChange =
    std::function<std::optional<std::string>(const std::optional<std::string>& before)>;

/// Changes a file in one step: whoever reads it sees the old or the new bytes as a whole, which are
/// on the disk before the file's name leads to them; and no change by this function, in any
/// program, is lost to another. Gives 0, or the system's code, and then the file is as it was:
/// EACCES and the like without the right to write the file or its folder, EAGAIN when others held
/// it for ten seconds, EBADMSG for a change that was given up.
///
/// A symbolic link stays, its target is changed or made; the permissions stay, and the owner as far
/// as the system lets it be given away. A new file has the permissions `mode` less the umask.
/// The change is laid down beside the file as NAME.new, which is also the lock: who may not write
/// in that folder cannot hold it. One that an ended program left is cleared away by the next.
[[nodiscard]] int ChangeFile(const std::filesystem::path& file, unsigned mode,
                             const FileChange& change);

}  // namespace quorvane
