#include "programs/form_host/call_log.h"

namespace quorvane::programs {

void CallLog::Note(std::string_view text) {
  EndOpenLine();
  Write(Indentation() + "-- " + std::string(text) + "\n");
}

void CallLog::Begin(std::string_view call) {
  EndOpenLine();
  Write(Indentation() + std::string(call));
  is_line_open_ = true;
  ++depth_;
}

void CallLog::End(std::string_view name, std::string_view outcome) {
  --depth_;
  if (is_line_open_) {
    Write(" = " + std::string(outcome) + "\n");
  } else {
    Write(Indentation() + std::string(name) + " returns " + std::string(outcome) + "\n");
  }
  is_line_open_ = false;
}

void CallLog::Count(std::string_view call, std::string_view outcome) {
  EndOpenLine();
  Write(Indentation() + std::string(call) + " = " + std::string(outcome) + "\n", Kind::kCount);
}

void CallLog::EndOpenLine() {
  if (is_line_open_) Write("\n");
  is_line_open_ = false;
}

void CallLog::Write(std::string_view piece, Kind kind) const {
  for (const Reader& reader : readers_) reader(piece, kind);
}

}  // namespace quorvane::programs
