#include "programs/quorvane/file_name.h"

#include "platform/posix/system_text.h"

namespace quorvane::examples {

Text FileNameOf(const std::string& word) { return FileNameFrom(word); }

}  // namespace quorvane::examples
