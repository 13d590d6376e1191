#include "control/basGlobals.h"

#include "platform/thread_record.h"

namespace quorvane::basGlobals {
namespace {

struct ThreadData final : ThreadRecord {
  ConnectionSettings settings;
  Boolean16 internet_failed;
};

}  // namespace

ConnectionSettings& connectionSettings() { return threadRecord<ThreadData>().settings; }

Boolean16& internetFailed() { return threadRecord<ThreadData>().internet_failed; }

}  // namespace quorvane::basGlobals
