// What a post gives when memory runs out at any point in it, the first use of the web client
// library included: a server without a name is refused before anything goes out.

#include <gtest/gtest.h>

#include "control/basGlobals.h"
#include "tests/support/failing_memory.h"
#include "tests/support/raises.h"
#include "web/form_post.h"

namespace quorvane::testing {
namespace {

TEST(ExhaustedMemory, GivesTheEmptyTextOrWhatWasStoredFromAPost) {
  const Text failure = u"Error : Unable to connect to the Internet";
  const Text path = u"/a/path/longer/than/short/texts";
  const Text body = u"a=b&and=so+on";
  const int failures = FailEachAllocation([&](auto arm, auto disarm) {
    arm();
    const Text reply = PostFormRequest(Text(), path, body, 80);
    const bool failed = disarm();
    EXPECT_TRUE(reply == failure || (failed && reply.IsEmpty()));
  });
  EXPECT_GE(failures, 2);
  EXPECT_TRUE(basGlobals::internetFailed().IsTrue());
}

}  // namespace
}  // namespace quorvane::testing
