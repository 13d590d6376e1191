#include "programs/quorvane/file_name.h"

#include "platform/posix/system_text.h"

namespace quorvane::programs {

Text FileNameOf(const std::string& word) { return FileNameFrom(word); }

}  // namespace quorvane::programs
