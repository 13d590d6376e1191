#pragma once

#include <memory>

namespace quorvane {

/// Something that exists once per thread. Derive a record from it and reach it through
/// threadRecord<Record>().
class ThreadRecord {
 public:
  ThreadRecord() = default;
  ThreadRecord(const ThreadRecord&) = delete;
  ThreadRecord& operator=(const ThreadRecord&) = delete;
  virtual ~ThreadRecord() = default;
};

/// Makes a record. Its address stands for the kind of record.
using ThreadRecordMaker = std::unique_ptr<ThreadRecord> (*)();

/// The calling thread's record of the kind that `make` makes, made at the thread's first request.
/// It is destroyed when the thread ends or when the module leaves memory, whichever comes first.
/// Raises out of memory (7).
[[nodiscard]] ThreadRecord& threadRecordOf(ThreadRecordMaker make);

/// The calling thread's own `Record` (default constructed), see threadRecordOf().
template <class Record>
[[nodiscard]] Record& threadRecord() {
  constexpr ThreadRecordMaker kMake = []() -> std::unique_ptr<ThreadRecord> {
    return std::make_unique<Record>();
  };
  return static_cast<Record&>(threadRecordOf(kMake));
}

}  // namespace quorvane
