// Proves that the interface definition in docs/ is the one that the build writes, so that readers
// see the interface as it is. That it says what the type library says, the package tests see.
#include "control/resources/interface_texts.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace quorvane::resources {
namespace {

TEST(InterfaceDefinition, IsTheOneInTheDocuments) {
  std::ifstream file(QUORVANE_SOURCE_DIR "/docs/QuorvaneSecurity.idl");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(text, InterfaceDefinition())
      << "copy it anew: cp build/windows/control/module/resources/QuorvaneSecurity.idl docs/";
}

}  // namespace
}  // namespace quorvane::resources
