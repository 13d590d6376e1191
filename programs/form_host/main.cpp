// form_host: opens a saved form, hosts the control on it, changes settings, saves the form, proves
// that it comes back the same, and asks the control for its checksum; or shows it to people.

#include <array>
#include <optional>
#include <utility>

#include "programs/common/options.h"
#include "programs/common/program.h"
#include "programs/form_host/form_file.h"
#include "programs/form_host/hosted_form.h"
#include "programs/form_host/interactive.h"
#include "programs/form_host/log_file.h"
#include "programs/form_host/settings.h"
#include "runtime/utf8.h"

namespace quorvane::programs {
namespace {

constexpr const char* kHelp =
    R"(usage: form_host [--set NAME=VALUE]... [--save FILE] [--wait] [--log FILE] FORM
       form_host --interactive [--log FILE] [FORM]
       form_host --help

Opens the saved form FORM, creates the control on it, loads it, shows its size and its seven
settings, changes some of them, saves the form, loads it into a new control to compare, and
asks for GetCRCValue.

  --set NAME=VALUE  changes a setting: ServerAddress, ServerPort, ServerFile, UseProxy,
                    ProxyServer, UserName or Password; may be repeated
                    (without any: ServerPort=8081)
  --save FILE       writes the form to FILE, which may be FORM itself; else it is kept in
                    memory only
  --wait            keeps the form on the screen until Enter is pressed or standard input ends
                    (without it: a moment); F1 opens the help file beside the module
  --log FILE        (Windows only) writes each call between container and control to FILE, with
                    its arguments and its result, as UTF-8
  --interactive     (Windows only) opens FORM, or a new form, in a window for people: the form, its
                    settings to edit, the calls; F1 there opens the help

A form file holds one entry a line: Name = "text", Name = 8080, Name = True. Passwords show as
asterisks here and stand in the file as plain text.
exit codes: 0 success; 1 a form file that cannot be used, or a run-time error; 2 wrong usage
)";

constexpr std::array kOptions{
    Option{"--help"},         Option{.name = "--set", .value = "NAME=VALUE", .repeatable = true},
    Option{"--save", "FILE"}, Option{"--wait"},
    Option{"--log", "FILE"},  Option{"--interactive"},
};

using SettingValues = std::array<TaggedValue, kSettings.size()>;

constexpr int kTwipsPerPixel = 15;

// What the words ask for.
struct Task {
  explicit Task(const Arguments& arguments)
      : form(FormOf(arguments)), save_to(arguments.Value("--save")), wait(arguments.Has("--wait")) {
    for (const std::string& word : arguments.Values("--set")) changes.push_back(ParseChange(word));
    if (changes.empty()) changes.push_back({u"ServerPort", u"8081"});
  }

  static const std::string& FormOf(const Arguments& arguments) {
    arguments.RequireOperands(1, 1, "FORM");
    return arguments.Operands().front();
  }

  std::string form;
  std::optional<std::string> save_to;
  bool wait;
  std::vector<Change> changes;
};

class FormHost {
 public:
  /// The log may be null.
  FormHost(Task task, CallLog* log, Console& console)
      : task_(std::move(task)), log_(log), console_(console) {}

  void Run() {
    FormBag bag(LoadForm(task_.form));
    Say("form " + task_.form + ": " + CountOf(bag));
    OnFreshThread([&] { Edit(bag); });
    FormBag reopened(Store());
    OnFreshThread([&] { Reopen(reopened); });
  }

 private:
  void Say(const std::string& line) { console_.Out(line + "\n"); }

  static std::string CountOf(const FormBag& bag) {
    const std::size_t count = bag.Entries().size();
    return std::to_string(count) + (count == 1 ? " entry" : " entries");
  }

  // Load, show, change, save: the life of a form in its designer.
  void Edit(FormBag& bag) {
    const ChangeListener say = [this](const Text& property) {
      Say("  the control reports a change of " + ToUtf8(property));
    };
    const auto form = MakeForm(say, log_);
    Load(*form, bag);
    ShowSettings("settings as loaded:", SettingsOf(*form));
    Show(*form);
    for (const Change& change : task_.changes) {
      Say("set " + ToUtf8(change.setting) + " = " + Display(change.setting, change.value));
      form->Put(change.setting, change.value);
    }
    edited_ = SettingsOf(*form);
    Say(std::string("the form ") + (form->NeedsSaving() ? "needs saving" : "needs no saving"));
    form->Save(saved_);
  }

  void Load(HostedForm& form, FormBag& bag) {
    form.Load(bag);
    const SizeInTwips size = form.Size();
    Say("control: " + std::to_string(size.width) + " x " + std::to_string(size.height) +
        " twips, " + std::to_string(size.width / kTwipsPerPixel) + " x " +
        std::to_string(size.height / kTwipsPerPixel) + " pixels");
    for (const Text& name : bag.Unread())
      Say("note: the control has not read the entry " + ToUtf8(name));
  }

  void Show(HostedForm& form) {
    Say("on screen: " + form.Show());
    if (!task_.wait) return;
    console_.Flush();
    form.StayUntilEnter();
  }

  static SettingValues SettingsOf(HostedForm& form) {
    SettingValues values;
    for (std::size_t i = 0; i < values.size(); ++i)
      values[i] = form.Get(FromUtf8(kSettings[i].name));
    return values;
  }

  static std::string Shown(std::size_t i, const SettingValues& values) {
    const std::string name = kSettings[i].name;
    return name + " = " + Display(FromUtf8(name), values[i]);
  }

  void ShowSettings(const std::string& title, const SettingValues& values) {
    Say(title);
    for (std::size_t i = 0; i < values.size(); ++i) Say("  " + Shown(i, values));
  }

  // The saved form as it comes back: from the file, or from the bytes that a file would hold.
  std::vector<FormEntry> Store() {
    Say((task_.save_to ? "saved to " + *task_.save_to : "saved in memory only") + ": " +
        CountOf(saved_));
    for (const FormEntry& entry : saved_.Entries())
      Say("  " + ToUtf8(entry.name) + " = " + Display(entry.name, entry.value));
    if (!task_.save_to) return ParseForm(FormatForm(saved_.Entries()));
    SaveForm(*task_.save_to, saved_.Entries());
    return LoadForm(*task_.save_to);
  }

  void Reopen(FormBag& bag) {
    const auto form = MakeForm([](const Text&) {}, log_);
    form->Load(bag);
    Compare(SettingsOf(*form));
    Say("reloaded into a new control: all seven settings are as saved");
    Say("GetCRCValue=" + std::to_string(form->GetCRCValue()));
  }

  void Compare(const SettingValues& values) const {
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i] != edited_[i]) {
        throw FormFileError("the reloaded form differs: " + Shown(i, values));
      }
    }
  }

  Task task_;
  CallLog* log_;
  Console& console_;
  FormBag saved_;
  SettingValues edited_;
};

// The log that the words ask for, if they do.
class AskedLog {
 public:
  explicit AskedLog(const std::optional<std::string>& file) {
    if (file) file_.emplace(*file).Follow(log_);
  }

  [[nodiscard]] CallLog& Log() { return log_; }
  [[nodiscard]] CallLog* LogIfAsked() { return file_ ? &log_ : nullptr; }
  void RaiseFailure() const {
    if (file_) file_->RaiseFailure();
  }

 private:
  CallLog log_;
  std::optional<LogFile> file_;
};

// The log would wipe out the form, or the form the log.
void RefuseLogOverForm(const std::optional<std::string>& log,
                       const std::optional<std::string>& form) {
  if (log && form && IsSamePlace(*log, *form))
    throw UsageError("--log names the file of the form: '" + *log + "'");
}

void RefuseBesideInteractive(const Arguments& arguments) {
  for (const char* const option : {"--set", "--save", "--wait"})
    if (arguments.Has(option)) throw UsageError(std::string("--interactive takes no ") + option);
}

void ShowToPeople(const Arguments& arguments) {
  RequireContainer("--interactive");
  RefuseBesideInteractive(arguments);
  arguments.RequireOperands(0, 1, "FORM");
  const std::string form = arguments.Operands().empty() ? "" : arguments.Operands().front();
  RefuseLogOverForm(arguments.Value("--log"), form);
  AskedLog log(arguments.Value("--log"));
  OnFreshThread([&] { RunInteractive(form, log.Log()); });
  log.RaiseFailure();
}

void ShowToScripts(const Arguments& arguments, Console& console) {
  if (arguments.Has("--log")) RequireContainer("--log");
  const Task task(arguments);
  RefuseLogOverForm(arguments.Value("--log"), task.form);
  RefuseLogOverForm(arguments.Value("--log"), task.save_to);
  AskedLog log(arguments.Value("--log"));
  FormHost(task, log.LogIfAsked(), console).Run();
  log.RaiseFailure();
}

int Run(std::span<const std::string> words, Console& console) {
  const Arguments arguments(words, kOptions);
  if (arguments.Has("--help")) {
    console.Out(kHelp);
    return ExitCode::kSuccess;
  }
  try {
    if (arguments.Has("--interactive"))
      ShowToPeople(arguments);
    else
      ShowToScripts(arguments, console);
  } catch (const FormFileError& error) {
    console.Complain(error.what());
    return ExitCode::kFailure;
  }
  return ExitCode::kSuccess;
}

}  // namespace

int ProgramMain(std::span<const std::string> words) {
  Console console("form_host");
  return ExitCodeOf(console, [&] { return Run(words, console); });
}

}  // namespace quorvane::programs
