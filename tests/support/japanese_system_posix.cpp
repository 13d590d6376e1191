// Makes Japanese (932) the system's code page before the tests of a program run.

#include <cstdlib>

#include "platform/posix/system_text.h"

namespace {

[[maybe_unused]] const bool is_japanese = [] {
  if (!quorvane::SetSystemCodePage(932)) std::abort();
  return true;
}();

}  // namespace
