#include "platform/system_code_page.h"

#include <vector>

#include "platform/posix/code_page.h"

namespace quorvane {
namespace {

constexpr int kWesternEuropean = 1252;

// All pages that ever were the system's, the last one in force.
std::vector<std::unique_ptr<CodePage>>& systemCodePages() {
  static std::vector<std::unique_ptr<CodePage>> pages = [] {
    std::vector<std::unique_ptr<CodePage>> first;
    first.push_back(MakeCodePage(kWesternEuropean));
    return first;
  }();
  return pages;
}

}  // namespace

const CodePage& systemCodePage() { return *systemCodePages().back(); }

bool SetSystemCodePage(int number) {
  auto page = MakeCodePage(number);
  if (!page) return false;
  systemCodePages().push_back(std::move(page));
  return true;
}

}  // namespace quorvane
