#include "programs/form_host/windows/interactive/settings_list.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "programs/form_host/form_file.h"
#include "programs/form_host/windows/interactive/commands.h"
#include "programs/form_host/windows/interactive/parts.h"

namespace quorvane::programs {
namespace {

// The letters that lead to the fields by the Alt key; no two the same, nor one of the menus or the
// buttons.
constexpr std::array<const char16_t*, kSettings.size()> kNames{
    u"Server&Address", u"Server&Port", u"S&erverFile", u"&UseProxy",
    u"Pro&xyServer",   u"Use&rName",   u"Pass&word"};
constexpr SettingsList::Index kPassword = 6;

const char16_t* NameOf(identities::ValueType type) {
  switch (type) {
    case identities::ValueType::kInteger16:
      return u"16-bit integer";
    case identities::ValueType::kBoolean:
      return u"Boolean";
    default:
      return u"text";
  }
}

int IdOf(int first, SettingsList::Index setting) { return first + static_cast<int>(setting); }

Text SettingOf(SettingsList::Index setting) {
  const std::string_view name = kSettings[setting].name;
  return std::u16string(name.begin(), name.end());
}

}  // namespace

// In the order of the keyboard: the field stands right behind the name that leads to it.
SettingsList::SettingsList(HWND window) {
  for (Index i = 0; i < rows_.size(); ++i) {
    const DWORD secret = i == kPassword ? ES_PASSWORD : 0;
    rows_[i].name = MakePart(window, L"STATIC", kNames[i], SS_LEFT, IdOf(ID_NAMES, i));
    rows_[i].value = MakePart(window, L"EDIT", u"", WS_TABSTOP | ES_AUTOHSCROLL | secret,
                              IdOf(ID_VALUES, i), WS_EX_CLIENTEDGE);
    rows_[i].type =
        MakePart(window, L"STATIC", NameOf(kSettings[i].type), SS_LEFT, IdOf(ID_TYPES, i));
    ::SendMessageW(rows_[i].value, EM_LIMITTEXT, kLongest, 0);
  }
}

void SettingsList::Show(Index setting, const TaggedValue& value) {
  shown_[setting] = TextToEdit(SettingOf(setting), value);
  Restore(setting);
}

void SettingsList::Restore(Index setting) const {
  const HWND field = rows_[setting].value;
  ::SetWindowTextW(field, Wide(shown_[setting]));
  ::SendMessageW(field, EM_SETMODIFY, FALSE, 0);
  if (::GetFocus() == field) Focus(setting);
}

bool SettingsList::IsTyped(Index setting) const {
  return ::SendMessageW(rows_[setting].value, EM_GETMODIFY, 0, 0) != 0;
}

std::optional<TaggedValue> SettingsList::Typed(Index setting) const {
  if (!IsTyped(setting)) return std::nullopt;
  const Text text = TextOf(rows_[setting].value);
  if (text.Characters().size() > kLongest)
    throw FormFileError("a value has at most " + std::to_string(kLongest) + " characters here");
  return ValueOfEdited(text);
}

std::optional<SettingsList::Index> SettingsList::Focused() const {
  const auto row = std::ranges::find(rows_, ::GetFocus(), &Row::value);
  if (row == rows_.end()) return std::nullopt;
  return static_cast<Index>(row - rows_.begin());
}

void SettingsList::Focus(Index setting) const {
  ::SetFocus(rows_[setting].value);
  ::SendMessageW(rows_[setting].value, EM_SETSEL, 0, -1);
}

// The asterisks of a password are no text to edit: who goes there types a new one.
std::optional<SettingsList::Index> SettingsList::OnCommand(int id, int notice) const {
  const auto setting = static_cast<Index>(id - ID_VALUES);
  if (id < ID_VALUES || setting >= rows_.size()) return std::nullopt;
  if (setting == kPassword && notice == EN_SETFOCUS && !IsTyped(setting))
    ::SetWindowTextW(rows_[setting].value, L"");
  if (notice == EN_SETFOCUS) ::SendMessageW(rows_[setting].value, EM_SETSEL, 0, -1);
  return notice == EN_KILLFOCUS ? std::optional(setting) : std::nullopt;
}

int SettingsList::WidthOf(const Look& look, HWND Row::*column) const {
  int width = 0;
  for (const Row& row : rows_) width = std::max(width, look.WidthOf(Wide(TextOf(row.*column))));
  return width;
}

int SettingsList::LeastWidth(const Look& look) const {
  return WidthOf(look, &Row::name) + WidthOf(look, &Row::type) + 2 * look.Gap() +
         look.WidthOf(L"reports.example.com:8080");
}

int SettingsList::Place(const Look& look, int left, int top, int width) const {
  const int names = WidthOf(look, &Row::name) + look.Gap();
  const int types = WidthOf(look, &Row::type) + look.Gap();
  const int drop = (look.Field() - look.Line()) / 2;  // texts stand on one line with the fields'
  const int step = look.Field() + look.Gap() / 2;
  int y = top;
  for (const Row& row : rows_) {
    Put(row.name, left, y + drop, names, look.Line());
    Put(row.type, left + names, y + drop, types, look.Line());
    Put(row.value, left + names + types, y, width - names - types, look.Field());
    y += step;
  }
  return y - top;
}

}  // namespace quorvane::programs
