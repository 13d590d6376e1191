#include "tests/support/component/guarded_memory.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <vector>

namespace quorvane::component {
namespace {

constexpr std::size_t kPage = 4096;
// 128 megabytes of addresses: a page given back is not used again before 15,000 others.
constexpr std::size_t kPages = 32768;
constexpr unsigned char kFresh = 0xCD;  // what a new block holds, so that nobody counts on zeros
constexpr unsigned char kBehind = 0xFD;

[[noreturn]] void Fail(const char* why, const void* block) {
  std::fprintf(stderr, "guarded memory: %s at %p\n", why, block);
  std::fflush(stderr);
  ::TerminateProcess(::GetCurrentProcess(), 99);
  for (;;) {
  }
}

// All pages in one range, handed out round and round. The tables lie outside of it.
class Pages {
 public:
  void* Take(std::size_t size) {
    const std::lock_guard turn(turn_);
    const std::size_t count = PagesOf(size);
    const std::size_t first = FindFree(count + 1);
    for (std::size_t i = first; i <= first + count; ++i) is_taken_[i] = true;  // and the guard
    unsigned char* const begin = Address(first);
    if (::VirtualAlloc(begin, count * kPage, MEM_COMMIT, PAGE_READWRITE) == nullptr)
      Fail("no memory", begin);
    unsigned char* const block = begin + count * kPage - Rounded(size);
    std::memset(block, kFresh, size);
    std::memset(block + size, kBehind, Rounded(size) - size);
    blocks_[first] = {block, size};
    ++held_;
    return block;
  }

  bool Has(const void* block) const {
    const auto* const place = static_cast<const unsigned char*>(block);
    return range_ != nullptr && place >= range_ && place < range_ + kPages * kPage;
  }

  void Give(void* block) {
    const std::lock_guard turn(turn_);
    const std::size_t first = FirstOf(block);
    const std::size_t size = blocks_[first].size;
    const auto* const bytes = static_cast<const unsigned char*>(block);
    for (std::size_t i = size; i < Rounded(size); ++i) {
      if (bytes[i] != kBehind) Fail("written to behind the block", block);
    }
    const std::size_t count = PagesOf(size);
    ::VirtualFree(Address(first), count * kPage, MEM_DECOMMIT);
    for (std::size_t i = first; i <= first + count; ++i) is_taken_[i] = false;
    blocks_[first] = {};
    --held_;
  }

  std::size_t SizeOf(void* block) {
    const std::lock_guard turn(turn_);
    return blocks_[FirstOf(block)].size;
  }

  int Held() {
    const std::lock_guard turn(turn_);
    return held_;
  }

 private:
  struct Block {
    void* begin = nullptr;
    std::size_t size = 0;
  };

  // An empty block has a place, too.
  static std::size_t Rounded(std::size_t size) { return (size + (size == 0 ? 8 : 7)) / 8 * 8; }
  static std::size_t PagesOf(std::size_t size) { return (Rounded(size) + kPage - 1) / kPage; }
  unsigned char* Address(std::size_t page) { return range_ + page * kPage; }

  std::size_t FirstOf(void* block) {
    const auto page = static_cast<std::size_t>(static_cast<unsigned char*>(block) - range_) / kPage;
    if (blocks_[page].begin != block) Fail("given back, but not held,", block);
    return page;
  }

  std::size_t FindFree(std::size_t count) {
    if (range_ == nullptr) {
      range_ = static_cast<unsigned char*>(
          ::VirtualAlloc(nullptr, kPages * kPage, MEM_RESERVE, PAGE_NOACCESS));
      if (range_ == nullptr) Fail("no addresses", range_);
    }
    std::size_t run = 0;
    for (std::size_t tried = 0; tried < 2 * kPages; ++tried, ++next_) {
      if (next_ == kPages) next_ = run = 0;
      run = is_taken_[next_] ? 0 : run + 1;
      if (run == count) return ++next_ - count;
    }
    Fail("no addresses left", range_);
  }

  std::mutex turn_;
  unsigned char* range_ = nullptr;
  std::size_t next_ = 0;
  std::vector<bool> is_taken_ = std::vector<bool>(kPages);
  std::vector<Block> blocks_ = std::vector<Block>(kPages);
  int held_ = 0;
};

Pages& pages() {
  static Pages all;
  return all;
}

// What stood in the place of the three that meet blocks of before, in their order.
void* real[3]{};

template <class Function>
Function* As(void* address) {
  return reinterpret_cast<Function*>(address);
}

void* __cdecl Malloc(std::size_t size) { return pages().Take(size); }
void* __cdecl Calloc(std::size_t count, std::size_t size) {
  void* const block = pages().Take(count * size);
  std::memset(block, 0, count * size);
  return block;
}
void __cdecl Free(void* block) {
  if (block == nullptr) return;
  if (pages().Has(block)) return pages().Give(block);
  As<void __cdecl(void*)>(real[0])(block);
}
void* __cdecl Realloc(void* block, std::size_t size) {
  if (block != nullptr && !pages().Has(block))
    return As<void* __cdecl(void*, std::size_t)>(real[1])(block, size);
  void* const larger = pages().Take(size);
  if (block != nullptr) {
    const std::size_t old_size = pages().SizeOf(block);
    std::memcpy(larger, block, old_size < size ? old_size : size);
    pages().Give(block);
  }
  return larger;
}
void* WINAPI HeapAllocate(HANDLE, DWORD flags, SIZE_T size) {
  void* const block = pages().Take(size);
  if ((flags & HEAP_ZERO_MEMORY) != 0) std::memset(block, 0, size);
  return block;
}
BOOL WINAPI HeapGiveBack(HANDLE heap, DWORD flags, void* block) {
  if (!pages().Has(block))
    return As<BOOL WINAPI(HANDLE, DWORD, void*)>(real[2])(heap, flags, block);
  pages().Give(block);
  return TRUE;
}

}  // namespace

namespace guarded_memory {

void* Take(std::size_t size) { return pages().Take(size); }

void Give(void* block) { pages().Give(block); }

int Blocks() { return pages().Held(); }

}  // namespace guarded_memory

GuardedModule::GuardedModule()
    : replaced_{{module_.Get().Handle(), "free", Free},
                {module_.Get().Handle(), "realloc", Realloc},
                {module_.Get().Handle(), "HeapFree", HeapGiveBack},
                {module_.Get().Handle(), "malloc", Malloc},
                {module_.Get().Handle(), "calloc", Calloc},
                {module_.Get().Handle(), "HeapAlloc", HeapAllocate}} {
  for (int i = 0; i < 3; ++i) real[i] = replaced_[i].Real();
}

GuardedModule::~GuardedModule() {
  for (testing::ReplacedImport& one : replaced_) one.Forget();
}

}  // namespace quorvane::component
