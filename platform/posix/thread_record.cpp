#include "platform/thread_record.h"

#include <map>
#include <utility>

namespace quorvane {

ThreadRecord& threadRecordOf(ThreadRecordMaker make) {
  using Records = std::map<ThreadRecordMaker, std::unique_ptr<ThreadRecord>>;
  // Objects of the whole program are destroyed after the main thread's own and may still ask: they
  // get new, empty records, which nothing has to end.
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): as records are
  thread_local Records* records = nullptr;
  if (records == nullptr) {
    records = new Records;
    constexpr auto kEnd = [](Records** ended) { delete std::exchange(*ended, nullptr); };
    thread_local const std::unique_ptr<Records*, decltype(kEnd)> end(&records, kEnd);
  }
  std::unique_ptr<ThreadRecord>& record = (*records)[make];
  if (!record) record = make();
  return *record;
}

}  // namespace quorvane
