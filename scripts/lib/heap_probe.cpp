// A program with a fault of memory, for scripts/check-heap and check-valgrind: one that they
// must tell of.

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

// Out of the optimiser's sight.
char* volatile block = nullptr;

void Spoil(std::string_view fault) {
  block = static_cast<char*>(std::malloc(100));
  std::memset(block, 0, 100);
  if (fault == "overrun") block[100] = 1;
  if (fault == "late-write" || fault == "given-back-twice") std::free(block);
  if (fault == "late-write") block[50] = 1;
  if (fault != "late-write") std::free(block);
}

}  // namespace

int main(int count, char** arguments) {
  Spoil(count > 1 ? arguments[1] : "");
  for (int i = 0; i < 100; ++i) std::free(std::malloc(100));
}
