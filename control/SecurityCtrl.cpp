#include "control/SecurityCtrl.h"

#include "checksum/cBinaryFileStream.h"
#include "checksum/cCRC32.h"
#include "platform/conversions.h"

namespace quorvane {
namespace {

using basGlobals::connectionSettings;
using settings::NewControl;
using settings::Setting;

template <class Value>
constexpr identities::ValueType TypeOf() {
  if (std::is_same_v<Value, Text>) return identities::ValueType::kText;
  if (std::is_same_v<Value, Boolean16>) return identities::ValueType::kBoolean;
  return identities::ValueType::kInteger16;
}

template <class Value>
constexpr bool IsRowOf(const identities::Property& property, const Setting<Value>& setting) {
  return &setting.property == &property && property.type == TypeOf<Value>();
}

// Each property has its row, in the same order and of its type.
static_assert(std::apply(
    [](const auto&... setting) {
      std::size_t place = 0;
      return sizeof...(setting) == identities::kProperties.size() &&
             (IsRowOf(identities::kProperties[place++], setting) && ...);
    },
    settings::kAll));

void Take(Text& field, const TaggedValue& stored, Oleaut32& oleaut) {
  field = ToText(stored, oleaut);
}
void Take(std::int16_t& field, const TaggedValue& stored, Oleaut32& oleaut) {
  field = ToInteger16(stored, oleaut);
}
void Take(Boolean16& field, const TaggedValue& stored, Oleaut32& oleaut) {
  field = ToBoolean(stored, oleaut);
}

template <class Value>
Value DefaultOf(const Setting<Value>& setting) {
  return setting.default_value;
}

// The handler that ends every event: the error is dropped and the event counts as a success.
template <class Body>
void DropErrors(Body body) {
  try {
    body();
  } catch (...) {  // NOLINT(bugprone-empty-catch): dropping the error is what containers rely on
  }
}

}  // namespace

SecurityCtrl::SecurityCtrl(ControlSite& site, App& module, Files& file_access, Kernel32& kernel,
                           Oleaut32& oleaut)
    : site_(site), module_(module), files_(file_access), kernel_(kernel), oleaut_(oleaut) {}

void SecurityCtrl::Initialize() {}

void SecurityCtrl::InitProperties() {
  DropErrors([] {
    settings::ForEach([](const auto& setting) {
      if (setting.new_control == NewControl::kDefaultsIt)
        connectionSettings().*setting.field = DefaultOf(setting);
    });
  });
}

void SecurityCtrl::ReadProperties(PropertyBag& bag) {
  DropErrors([this, &bag] {
    settings::ForEach([this, &bag](const auto& setting) {
      Take(connectionSettings().*setting.field,
           bag.ReadProperty(setting.property.entry, DefaultOf(setting)), oleaut_);
    });
  });
}

void SecurityCtrl::WriteProperties(PropertyBag& bag) {
  DropErrors([&bag] {
    settings::ForEach([&bag](const auto& setting) {
      bag.WriteProperty(setting.property.entry, connectionSettings().*setting.field,
                        DefaultOf(setting));
    });
  });
}

void SecurityCtrl::Resize() {
  DropErrors([this] {
    site_.SetHeight(kSizeInTwips);
    site_.SetWidth(kSizeInTwips);
  });
}

// Kept: the record of settings stays as it is; the thread's other and later controls go on with it.
// Pinned by SecurityCtrl.TerminateLeavesTheSettings.
void SecurityCtrl::Terminate() {}

std::int32_t SecurityCtrl::GetCRCValue() {
  // Kept: the extension is a fixed literal and the backslash is added whatever the path ends in; a
  // module under another extension fails with 53. Pinned by
  // GetCRCValue.AlwaysAddsBackslashAndOcx.
  const Text path = module_.Path();
  const Text file_name = path + u"\\" + module_.EXEName() + u".ocx";
  cBinaryFileStream stream(files_, module_, kernel_);
  stream.PutFile(file_name);
  cCRC32 crc;
  return crc.GetFileCrc32(stream);
}

}  // namespace quorvane
