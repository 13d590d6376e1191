// Names with wild cards, as the files' stand-in finds them in a folder.
//
// Oracle: every way in which a pattern may be laid over a name, tried one inside the other, where
// the house's own walks back to the last asterisk alone.

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "fuzz/target.h"
#include "platform/files.h"

namespace quorvane::fuzz::wild_cards {

constexpr std::u16string_view kNames[] = {u"a",     u"ab",    u"a.b",   u"a.bin", u"ab.bin",
                                          u"b.a.b", u"a..b",  u"bb.aa", u"b.",    u"abab",
                                          u"a.b.",  u"ba.ab", u"b"};

// A file of each name in a folder of the program's own, which goes at its end.
class Folder {
 public:
  Folder() {
    Require(::mkdtemp(path_.data()) != nullptr, "no folder can be made");
    for (const auto name : kNames) std::ofstream(std::filesystem::path(path_) / name) << 'x';
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] Text Name(const std::u16string& name) const {
    return std::u16string(path_.begin(), path_.end()) + u"\\" + name;
  }

 private:
  std::string path_ = (std::filesystem::temp_directory_path() / "quorvane_XXXXXX").string();
};

bool IsWild(char16_t c) { return c == u'*' || c == u'?'; }

bool Fits(std::u16string_view name, std::u16string_view pattern) {
  if (pattern.empty()) return name.empty();
  if (pattern == u"*.") return name.find(u'.') == std::u16string_view::npos;
  const std::u16string_view behind = pattern.substr(1);
  if (pattern[0] == u'*') {
    for (std::size_t count = 0; count <= name.size(); ++count)
      if (Fits(name.substr(count), behind)) return true;
    return false;
  }
  if (pattern[0] == u'?' && (name.empty() || name[0] == u'.')) return Fits(name, behind);
  if (!name.empty())
    return (pattern[0] == u'?' || pattern[0] == name[0]) && Fits(name.substr(1), behind);
  return pattern[0] == u'.' && (behind.empty() || IsWild(behind[0])) && Fits(name, behind);
}

void Run(Input input) {
  static const Folder kFolder;
  constexpr std::u16string_view kSigns = u"**??..ab";
  std::u16string pattern;
  while (!input.IsEmpty() && pattern.size() < 12) pattern += kSigns[input.Byte(7)];
  if (std::ranges::none_of(pattern, IsWild)) return;
  std::u16string_view first;
  for (const auto name : kNames)
    if (Fits(name, pattern) && (first.empty() || name < first)) first = name;
  Require(files().ListName(kFolder.Name(pattern)).Characters() == first, "ListName()");
}

const Registered kTarget("wild_cards", Run);

}  // namespace quorvane::fuzz::wild_cards
