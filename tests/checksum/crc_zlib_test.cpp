// The fast CRC against zlib's, an independent implementation: random lengths, alignments and
// splits, in a buffer with a forbidden page on either side. On Linux only.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>
#include <zlib.h>

#include "checksum/crc_register.h"
#include "tests/support/sample_bytes.h"

namespace quorvane {
namespace {

// Whole pages that can be used, with one that ends the program at any touch before and behind them.
class GuardedPages {
 public:
  explicit GuardedPages(std::size_t pages)
      : page_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))), size_((pages + 2) * page_) {
    void* const mapped = ::mmap(nullptr, size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    start_ = static_cast<std::uint8_t*>(mapped);
    if (::mprotect(start_ + page_, size_ - 2 * page_, PROT_READ | PROT_WRITE) != 0)
      throw std::bad_alloc();
  }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;
  ~GuardedPages() { ::munmap(start_, size_); }

  [[nodiscard]] std::span<std::uint8_t> Usable() const {
    return {start_ + page_, size_ - 2 * page_};
  }

 private:
  std::size_t page_;
  std::size_t size_;
  std::uint8_t* start_ = nullptr;
};

std::uint32_t CrcOf(const CrcTable& table, std::span<const std::uint8_t> bytes) {
  return ~AdvanceCrc(table, 0xFFFFFFFF, bytes);
}

std::uint32_t ZlibCrcOf(std::span<const std::uint8_t> bytes) {
  return static_cast<std::uint32_t>(::crc32(0, bytes.data(), static_cast<uInt>(bytes.size())));
}

class CrcBesideZlib : public ::testing::Test {
 protected:
  CrcBesideZlib() { std::ranges::copy(testing::SampleBytes(buffer_.size(), 3), buffer_.begin()); }

  GuardedPages pages_{20};
  std::span<std::uint8_t> buffer_ = pages_.Usable();
  CrcTable table_ = BuildCrcTable();
  std::mt19937 random_{11};
};

TEST_F(CrcBesideZlib, AgreesRightBehindAForbiddenPage) {
  for (int round = 0; round < 400; ++round) {
    const auto bytes = buffer_.first(random_() % (buffer_.size() + 1));
    ASSERT_EQ(CrcOf(table_, bytes), ZlibCrcOf(bytes)) << bytes.size();
  }
}

TEST_F(CrcBesideZlib, AgreesRightBeforeAForbiddenPage) {
  for (int round = 0; round < 400; ++round) {
    const auto bytes = buffer_.last(random_() % (buffer_.size() + 1));
    ASSERT_EQ(CrcOf(table_, bytes), ZlibCrcOf(bytes)) << bytes.size();
  }
}

TEST_F(CrcBesideZlib, AgreesAtAnySplit) {
  for (int round = 0; round < 400; ++round) {
    const auto bytes = buffer_.last(random_() % (buffer_.size() + 1));
    const std::size_t split = random_() % (bytes.size() + 1);
    const std::uint32_t crc = AdvanceCrc(table_, 0xFFFFFFFF, bytes.first(split));
    ASSERT_EQ(~AdvanceCrc(table_, crc, bytes.subspan(split)), ZlibCrcOf(bytes))
        << bytes.size() << " split at " << split;
  }
}

}  // namespace
}  // namespace quorvane
