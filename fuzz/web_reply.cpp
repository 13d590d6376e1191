// A web server's reply, as the web client library hands it out: blocks of any bytes and lengths
// under several code pages, and calls that fail.
//
// Oracle: the blocks as whole buffers with their blanks, each converted and cut, joined.

#include <cstring>

#include "control/basGlobals.h"
#include "fuzz/pages.h"
#include "fuzz/target.h"
#include "web/form_post.h"

namespace quorvane::fuzz::web_reply {

constexpr std::size_t kBlock = 2048;

struct Block {
  std::string bytes;
  std::uint32_t count;
  bool succeeds;
};

class ScriptedWeb final : public WinInet {
 public:
  InternetHandle InternetOpenA(const char*, std::uint32_t, const char*, const char*,
                               std::uint32_t) override {
    return Open();
  }
  InternetHandle InternetConnectA(InternetHandle, const char*, std::int16_t, const char*,
                                  const char*, std::uint32_t, std::uint32_t,
                                  std::uintptr_t) override {
    return Open();
  }
  InternetHandle HttpOpenRequestA(InternetHandle, const char*, const char*, const char*,
                                  const char*, const char* const*, std::uint32_t,
                                  std::uintptr_t) override {
    return Open();
  }
  std::int32_t HttpAddRequestHeadersA(InternetHandle, const char*, std::uint32_t,
                                      std::uint32_t) override {
    return 0;
  }
  std::int32_t HttpSendRequestA(InternetHandle, const char*, std::uint32_t, const char*,
                                std::uint32_t) override {
    return sends ? 1 : 0;
  }
  std::int32_t InternetReadFile(InternetHandle, char* buffer, std::uint32_t size,
                                std::uint32_t& count) override {
    Require(size == kBlock, "the size of a block");
    static const std::string kBlanks(kBlock, ' ');
    Require(std::string_view(buffer, size) == kBlanks, "a block without blanks");
    count = 0;
    if (next == blocks.size()) return 1;
    const Block& block = blocks[next++];
    std::ranges::copy(block.bytes, buffer);
    count = block.count;
    return block.succeeds ? 1 : 0;
  }
  std::int32_t InternetCloseHandle(InternetHandle) override {
    --open;
    return 1;
  }

  std::vector<Block> blocks;
  std::size_t next = 0;
  int fails_at = 0;  // which of the handles is refused; 0 for none
  int asked = 0;
  int open = 0;
  bool sends = true;

 private:
  InternetHandle Open() {
    if (++asked == fails_at) return 0;
    return static_cast<InternetHandle>(++open);
  }
};

class SilentScreen final : public Screen {
 public:
  void SetMousePointer(std::int16_t shape) override { last = shape; }
  std::int16_t last = 99;
};

void Run(Input input) {
  const CodePage& page = PageOf(input.Byte());
  ScriptedWeb web;
  const std::uint8_t failure = input.Byte();
  if (failure >= 253) web.fails_at = failure - 252;
  web.sends = failure != 252;
  while (!input.IsEmpty() && web.blocks.size() < 4) {
    const std::uint8_t kind = input.Byte();
    Block block{input.Bytes(kind % 64), 0, kind != 255};
    // Most come as they are; some say that they are longer, or fill their buffer.
    if (kind >= 192) block.bytes.resize(kBlock, static_cast<char>(input.Byte()));
    const auto written = static_cast<std::uint32_t>(block.bytes.size());
    block.count = kind % 8 == 7 ? std::min<std::uint32_t>(input.Number16(), kBlock) : written;
    for (int times = kind == 254 ? 40 : 1; times > 0; --times) web.blocks.push_back(block);
  }
  std::u16string reply;
  for (const Block& block : web.blocks) {
    if (block.count == 0) break;
    std::string buffer = block.bytes;
    buffer.resize(kBlock, ' ');
    reply += page.FromBytes(buffer).substr(0, block.count);
    if (!block.succeeds) break;
  }
  basGlobals::internetFailed() = kFalse;
  SilentScreen screen;
  const Text text = PostFormRequest(u"server", u"/form", u"a=b", 80, web, screen, page);
  const bool is_open = web.fails_at != 1;
  const bool is_answered = web.fails_at == 0 && web.sends && !reply.empty();
  const std::u16string failed = u"Error : Unable to connect to the Internet";
  Require(text.Characters() == (is_answered ? reply : is_open ? failed : u""), "the reply");
  Require(basGlobals::internetFailed().IsTrue() == (is_open && !is_answered), "InternetFailed");
  Require(web.open == (web.fails_at == 0 && !web.sends ? 3 : 0), "the open handles");
  Require(screen.last == Screen::kDefaultPointer, "the pointer");
}

const Registered kTarget("web_reply", Run);

}  // namespace quorvane::fuzz::web_reply
