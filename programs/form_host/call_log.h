#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quorvane::programs {

/// The log of the calls between a container and its control, as text that grows. A call stands in
/// the log from the moment it is made, so that one that never comes back is its last line:
///
///   > IOleObject.GetExtent(aspect 1) = S_OK, extent 741 x 741
///   > IOleObject.DoVerb(verb -5)
///     < IOleInPlaceSite.CanInPlaceActivate() = S_OK
///   > IOleObject.DoVerb returns S_OK
///
/// Calls that are made within another stand indented below it, which then ends in a line of its
/// own. Used on one thread at a time.
class CallLog {
 public:
  /// How much a reader wants to see of a line: calls that only count references are the many.
  enum class Kind { kCall, kCount };
  /// Gets each piece of the log as it comes, UTF-8, lines ended by "\n".
  using Reader = std::function<void(std::string_view piece, Kind kind)>;

  /// The reader stays for ever; it must not throw.
  void AddReader(Reader reader) { readers_.push_back(std::move(reader)); }

  /// A line that is no call, such as what the user has asked for: "-- text".
  void Note(std::string_view text);
  /// A call is made: "> IOleObject.Close(option 1)".
  void Begin(std::string_view call);
  /// The latest call that has not come back yet does so: its name, as Begin() told it, and what
  /// came of it.
  void End(std::string_view name, std::string_view outcome);
  /// A call that only counts references, whole: Begin() and End() in one.
  void Count(std::string_view call, std::string_view outcome);

 private:
  void Write(std::string_view piece, Kind kind = Kind::kCall) const;
  void EndOpenLine();
  [[nodiscard]] std::string Indentation() const { return std::string(2 * depth_, ' '); }

  std::vector<Reader> readers_;
  std::size_t depth_ = 0;
  bool is_line_open_ = false;  // the latest call, which may come back on its line
};

}  // namespace quorvane::programs
