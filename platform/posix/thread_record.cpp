#include "platform/thread_record.h"

#include <map>

namespace quorvane {

ThreadRecord& threadRecordOf(ThreadRecordMaker make) {
  thread_local std::map<ThreadRecordMaker, std::unique_ptr<ThreadRecord>> records;
  std::unique_ptr<ThreadRecord>& record = records[make];
  if (!record) record = make();
  return *record;
}

}  // namespace quorvane
