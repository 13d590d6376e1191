// quorvane doctor: what the program stands on, and whether it can be used.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "host/basAPI_api.h"
#include "programs/common/program.h"
#include "programs/quorvane/commands.h"
#include "programs/quorvane/findings.h"
#include "programs/quorvane/help.h"
#include "programs/quorvane/json.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace doctor_family {
namespace {

constexpr const char* kDetails =
    R"(Prints what the program stands on: versions, code page, locale, account, and the
places of the registry and the profiles with what may be done there. A line that
starts with "!" is a fault, and the exit code is then 1. Changes nothing.)";

constexpr std::array kOptions{
    Option{"--json", nullptr, R"(prints a list of {"name", "value", "fault"})", 'j'},
};

std::vector<Finding> Findings() {
  std::vector<Finding> findings{{"program", VersionLine().substr(0, VersionLine().size() - 1)}};
  std::ranges::copy(SystemFindings(), std::back_inserter(findings));
  const Text user = basAPI_api::GetCurrentUserName();
  findings.push_back({"account",
                      user.IsEmpty()
                          ? "has no name of at most 24 bytes"
                          : ToUtf8(user + u", " + basAPI_api::GetCurrentAccountSidText()),
                      user.IsEmpty()});
  const auto adapters = basAPI_api::GetAdapterAddresses();
  findings.push_back({"adapters",
                      adapters ? std::to_string(adapters->size()) : "the system cannot list them",
                      !adapters});
  return findings;
}

std::string Json(const Finding& finding) {
  return JsonRecord({{"name", JsonText(finding.name)},
                     {"value", JsonText(finding.value)},
                     {"fault", JsonBoolean(finding.is_fault)}});
}

int Doctor(const Arguments& arguments, Console& console) {
  const std::vector<Finding> findings = Findings();
  std::vector<std::string> list;
  for (const Finding& finding : findings) {
    std::string name = finding.name;
    name.resize(16, ' ');
    if (arguments.Has("--json")) {
      list.push_back(Json(finding));
    } else {
      console.Out((finding.is_fault ? "! " : "  ") + name + finding.value + "\n");
    }
  }
  if (arguments.Has("--json")) console.Out(JsonList(list) + "\n");
  return std::ranges::any_of(findings, &Finding::is_fault) ? ExitCode::kFailure
                                                           : ExitCode::kSuccess;
}

constexpr std::array kCommands{
    Command{"doctor", "", "what the program stands on, and what may be written", kDetails, kOptions,
            Doctor},
};

}  // namespace
}  // namespace doctor_family

std::span<const Command> DoctorCommands() { return doctor_family::kCommands; }

}  // namespace quorvane::programs
