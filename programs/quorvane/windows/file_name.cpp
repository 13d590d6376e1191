#include "programs/quorvane/file_name.h"

#include "runtime/utf8.h"

namespace quorvane::programs {

Text FileNameOf(const std::string& word) { return FromUtf8(word); }

}  // namespace quorvane::programs
