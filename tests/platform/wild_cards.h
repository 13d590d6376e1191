#pragma once

// What the wild cards of Windows find, by its documented rule: `?` stands for one character, but
// for none at a dot and at the end; a dot before a wild card for the end of the name, too; `*.` at
// the end for names without a further dot.

#include <string_view>
#include <vector>

#include "platform/files.h"
#include "tests/support/sample_bytes.h"
#include "tests/support/temporary_folder.h"

namespace quorvane::testing {

struct WildCard {
  std::u16string_view pattern;
  std::u16string_view finds;  ///< the names it matches of kWildCardNames, a blank behind each
  /// The same in Wine 8, where `?` is one character always and a dot at the end is no dot; in Wine
  /// 10 and on Windows the rule holds.
  std::u16string_view finds_in_wine_8;
};

inline constexpr std::u16string_view kWildCardNames[] = {u"a", u"ab", u"a.b", u"a.bin", u"ab.bin"};

inline constexpr WildCard kWildCards[] = {
    {u"*", u"a ab a.b a.bin ab.bin ", u"a ab a.b a.bin ab.bin "},
    {u"*.*", u"a ab a.b a.bin ab.bin ", u"a ab a.b a.bin ab.bin "},
    {u"?", u"a ", u"a "},
    {u"??", u"a ab ", u"ab "},
    {u"?.bin", u"a.bin ", u"a.bin "},
    {u"??.bin", u"a.bin ab.bin ", u"ab.bin "},
    {u"a?.bin", u"a.bin ab.bin ", u"ab.bin "},
    {u"a?b", u"", u"a.b "},
    {u"a.?", u"a a.b ", u"a.b "},
    {u"a.???", u"a a.b a.bin ", u"a.bin "},
    {u"a.*", u"a a.b a.bin ", u"a a.b a.bin "},
    {u"a.bin.*", u"a.bin ", u"a.bin "},
    {u"a.bin.?", u"a.bin ", u""},
    {u"*?", u"a ab a.b a.bin ab.bin ", u""},
    {u"?*", u"a ab a.b a.bin ab.bin ", u"a ab a.b a.bin ab.bin "},
    {u"*.?", u"a ab a.b a.bin ab.bin ", u"a.b "},
    {u"*.b?n", u"a.bin ab.bin ", u"a.bin ab.bin "},
    {u"*bin", u"a.bin ab.bin ", u"a.bin ab.bin "},
    {u"*ain", u"", u""},
    {u"*.", u"a ab ", u"a ab a.b a.bin ab.bin "},
    {u"a*.", u"a ab ", u"a ab a.b a.bin ab.bin "},
    {u"a.b*.", u"a.b a.bin ", u"a.b a.bin "},
    {u"?.", u"a ", u"a "},
    {u"??.", u"a ab ", u"ab "},
    {u"a.???.", u"a a.b a.bin ", u"a.bin "},
};

/// What the pattern finds, each name listed while it is alone in the folder.
inline Text FoundByWildCard(std::u16string_view pattern) {
  Text found = u"";
  for (const auto name : kWildCardNames) {
    const TemporaryFolder folder;
    folder.WriteFile(name, SampleBytes(1));
    const Text listed = files().ListName(folder.Name(pattern));
    if (!listed.IsEmpty()) found = found + listed + u" ";
  }
  return found;
}

}  // namespace quorvane::testing
