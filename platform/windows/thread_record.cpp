#include "platform/thread_record.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

#include "platform/windows/loader_notice.h"
#include "platform/windows/os_headers.h"
#include "runtime/runtime_error.h"

// One TLS index for the module, and a list of all threads' records beside it: a thread that ends
// gives its own back, and the module that leaves memory gives back those of the threads that go on.
// C++ thread_local with a destructor would keep the module in memory and crash the thread that ends
// later; a bare TLS index would lose the records at unload.

namespace quorvane {
namespace {

struct RecordsOfThread {
  struct Entry {
    ThreadRecordMaker make;
    std::unique_ptr<ThreadRecord> record;
  };
  std::vector<Entry> entries;
  RecordsOfThread* next = nullptr;
};

class CriticalSection {
 public:
  CriticalSection() { ::InitializeCriticalSection(&section_); }
  ~CriticalSection() { ::DeleteCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;
  void lock() { ::EnterCriticalSection(&section_); }
  void unlock() { ::LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_{};
};

// Holds the list of all threads' records; made by the first request in the module's life.
class AllRecords {
 public:
  AllRecords() : index_(::TlsAlloc()) {}
  AllRecords(const AllRecords&) = delete;
  AllRecords& operator=(const AllRecords&) = delete;
  ~AllRecords() {
    while (first_ != nullptr) Destroy(first_);
    if (index_ != TLS_OUT_OF_INDEXES) ::TlsFree(index_);
  }

  RecordsOfThread& OfThisThread() {
    if (index_ == TLS_OUT_OF_INDEXES) Raise(ErrorNumber::kOutOfMemory);
    // Asking for a TLS value clears the last-error code, which belongs to the caller.
    const DWORD last_error = ::GetLastError();
    auto* records = static_cast<RecordsOfThread*>(::TlsGetValue(index_));
    ::SetLastError(last_error);
    return records != nullptr ? *records : Add();
  }

  void EndThisThread() {
    if (index_ == TLS_OUT_OF_INDEXES) return;
    auto* records = static_cast<RecordsOfThread*>(::TlsGetValue(index_));
    if (records == nullptr) return;
    ::TlsSetValue(index_, nullptr);
    const std::lock_guard lock(section_);
    Destroy(records);
  }

 private:
  RecordsOfThread& Add() {
    auto records = std::make_unique<RecordsOfThread>();
    if (::TlsSetValue(index_, records.get()) == 0) Raise(ErrorNumber::kOutOfMemory);
    const std::lock_guard lock(section_);
    records->next = first_;
    first_ = records.get();
    return *records.release();
  }

  void Destroy(RecordsOfThread* records) {
    RecordsOfThread** link = &first_;
    while (*link != records) link = &(*link)->next;
    *link = records->next;
    delete records;
  }

  // Kept: the list has a lock, as threads begin and end at any time; a record itself has none.
  // Pinned by ThreadRecord.OfManyThreadsAtOnceAreKeptApart.
  CriticalSection section_;
  DWORD index_;
  RecordsOfThread* first_ = nullptr;
};

// Raw storage, because the order of the module's static destructors must not decide who outlives
// whom: the loader's last notice ends it.
alignas(AllRecords) unsigned char storage[sizeof(AllRecords)];
AllRecords* all_records = nullptr;

void NTAPI OnTlsNotice(void* /*module*/, DWORD reason, void* process_ends) {
  OnLoaderNotice(reason, process_ends);
}

}  // namespace

void OnLoaderNotice(unsigned long reason, const void* process_ends) {
  if (reason == DLL_PROCESS_ATTACH && all_records == nullptr)
    all_records = new (storage) AllRecords;
  if (all_records == nullptr) return;
  if (reason == DLL_THREAD_DETACH) all_records->EndThisThread();
  // At the end of the process other threads were stopped wherever they stood, and the system takes
  // all back.
  if (reason == DLL_PROCESS_DETACH && process_ends == nullptr) {
    all_records->~AllRecords();
    all_records = nullptr;
  }
}

// Placed between the linker's marks of the TLS callback list.
extern "C" {
__attribute__((section(".CRT$XLF"), used)) const PIMAGE_TLS_CALLBACK quorvane_thread_record_notice =
    OnTlsNotice;
}

ThreadRecord& threadRecordOf(ThreadRecordMaker make) {
  if (all_records == nullptr) Raise(ErrorNumber::kOutOfMemory);
  auto& entries = all_records->OfThisThread().entries;
  const auto found = std::ranges::find(entries, make, &RecordsOfThread::Entry::make);
  if (found != entries.end()) return *found->record;
  entries.push_back({make, make()});
  return *entries.back().record;
}

}  // namespace quorvane
