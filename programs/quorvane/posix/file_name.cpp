#include "programs/quorvane/file_name.h"

#include "platform/posix/file_names.h"

namespace quorvane::examples {

Text FileNameOf(const std::string& word) { return FileNameFrom(word); }

}  // namespace quorvane::examples
