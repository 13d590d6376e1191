#include "programs/quorvane/web_watch.h"

#include <algorithm>
#include <array>

#include "runtime/ignored_result.h"

namespace quorvane::programs {
namespace {

struct Meaning {
  std::int32_t failure;
  const char* words;
};

// By the library's published numbers.
constexpr std::array kMeanings{
    Meaning{12002, "the time is up"},
    Meaning{12005, "the server, the proxy or the path is no proper name"},
    Meaning{12006, "the address has another scheme than http"},
    Meaning{12007, "the name of the server or the proxy is not known"},
    Meaning{12029, "the connection is refused, or there is no way to the server"},
    Meaning{12030, "the server has ended the connection"},
    Meaning{12031, "the server has broken off the connection"},
    Meaning{12152, "the answer is no HTTP"},
    Meaning{12156, "the answer points elsewhere too often"},
};

}  // namespace

std::string WebWatch::Reason() const {
  if (!has_failed_) return "the answer is empty";
  const auto* const found = std::ranges::find(kMeanings, failure_, &Meaning::failure);
  return found != kMeanings.end() ? found->words
                                  : "the web client library gives code " + std::to_string(failure_);
}

InternetHandle WebWatch::Opened(InternetHandle handle) {
  if (handle != 0 && time_out_) SetTimeOut(handle, *time_out_);
  if (handle == 0) IgnoreResult(Noted(0));
  return handle;
}

std::int32_t WebWatch::Noted(std::int32_t result) {
  if (result == 0 && !has_failed_) {
    has_failed_ = true;
    failure_ = LastWebFailure();
  }
  return result;
}

}  // namespace quorvane::programs
