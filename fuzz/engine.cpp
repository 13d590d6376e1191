// The door that the fuzzing engine comes in by: a program has one target.

#include "fuzz/target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quorvane::fuzz::Targets().front().run(quorvane::fuzz::Input({data, size}));
  return 0;
}
