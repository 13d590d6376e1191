#include "programs/quorvane/web_watch.h"

#include "platform/posix/web_client.h"

namespace quorvane::programs {

std::int32_t LastWebFailure() { return static_cast<std::int32_t>(web_client::LastFailure()); }

void SetTimeOut(InternetHandle /*handle*/, std::chrono::seconds time_out) {
  web_client::SetTimeOuts({time_out, time_out});
}

}  // namespace quorvane::programs
