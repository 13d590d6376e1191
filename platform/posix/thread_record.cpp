#include "platform/thread_record.h"

#include <map>
#include <utility>

namespace quorvane {

ThreadRecord& threadRecordOf(ThreadRecordMaker make) {
  using Records = std::map<ThreadRecordMaker, std::unique_ptr<ThreadRecord>>;
  // Objects of the whole program are destroyed after the main thread's own and may still ask: they
  // get new, empty records, which nothing has to end.
  thread_local Records* records = nullptr;
  struct AtTheThreadsEnd {
    ~AtTheThreadsEnd() { delete std::exchange(records, nullptr); }
  };
  if (records == nullptr) {
    records = new Records;
    thread_local const AtTheThreadsEnd end;
  }
  std::unique_ptr<ThreadRecord>& record = (*records)[make];
  if (!record) record = make();
  return *record;
}

}  // namespace quorvane
