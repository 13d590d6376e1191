#include "control/resources/interface_texts.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <map>

#include "control/interface/identities.h"

namespace quorvane::resources {
namespace {

using namespace identities;

// The texts, with a word between two @ for each thing that comes from the list of identities.

constexpr const char* kDefinition =
    R"(// The interface of the control, for those who read or generate code from it.
//
// Written by the build from control/interface/identities.h, as the type library inside the module
// is. The library is not compiled from this text, because widl can express neither the version and
// the non-extensible flag of a pure dispatch interface nor the argument name of a property put; a
// test compiles it and compares. On a get, "value" is a name for readers only.

import "oaidl.idl";

[
  uuid(@library_id@),
  @library_version@,
  lcid(0x@locale@),
  control,
  helpstring("@library@"),
  helpfile("@help_file@")
]
library @library@ {
  importlib("stdole2.tlb");

  [
    odl, uuid(@interface_id@), @version@,
    hidden, dual, nonextensible, oleautomation
  ]
  interface @interface@ : IDispatch {
@members@  }

  // The events. There are none, but containers connect to the ids of every generation.
  [
    uuid(@source_id@), hidden
#ifndef __WIDL__  // which refuses both here
    , @version@, nonextensible
#endif
  ]
  dispinterface @source@ {
    properties:
    methods:
  }

  [uuid(@class_id@), @version@, control, noncreatable]
  coclass @class@ {
    [default] interface @interface@;
    [default, source] dispinterface @source@;
  }

  // Earlier generations of the interface, oldest first. The members are those of today.
@aliases@}
)";

constexpr const char* kInterfaceHeader =
    R"(// The interface of the control for C++, written by the build from control/interface/identities.h.
#pragma once

@system@
inline constexpr CLSID CLSID_SecurityCtrl = {
    @class_id@;
inline constexpr IID IID_ISecurityCtrl = {
    @interface_id@;

/// The virtual table of @interface@.
struct ISecurityCtrl : IDispatch {
@slots@};
)";

constexpr const char* kMembersHeader =
    R"(// Written by the build from control/interface/identities.h.
#pragma once

@own@
namespace quorvane::component {

/// The slots of the properties, each one led to its row: `Object`, which derives from this, has
/// Get(setting, out) and Put(setting, value).
template <class Object>
class SecurityCtrlMembers : public ISecurityCtrl {
 public:
@slots@
 protected:
  ~SecurityCtrlMembers() = default;
};

}  // namespace quorvane::component
)";

// The text with each word replaced. A word that is not in the list is a mistake of this file.
std::string Filled(std::string text, const std::map<std::string, std::string>& words) {
  for (const auto& [word, replacement] : words) {
    const std::string mark = "@" + word + "@";
    for (auto at = text.find(mark); at != std::string::npos; at = text.find(mark, at))
      text.replace(at, mark.size(), replacement);
  }
  return text;
}

std::string Hex(std::uint32_t number, int digits) {
  std::array<char, 9> text{};
  std::snprintf(text.data(), text.size(), "%0*lX", digits, static_cast<unsigned long>(number));
  return text.data();
}

std::string IdText(const Guid& id) {
  std::string text = Hex(id.data1, 8) + "-" + Hex(id.data2, 4) + "-" + Hex(id.data3, 4) + "-";
  for (int i = 0; i < 8; ++i) text += (i == 2 ? "-" : "") + Hex(id.data4[i], 2);
  return text;
}

std::string IdInitializer(const Guid& id) {
  std::string text =
      "0x" + Hex(id.data1, 8) + ", 0x" + Hex(id.data2, 4) + ", 0x" + Hex(id.data3, 4) + ", {";
  for (int i = 0; i < 8; ++i) text += (i == 0 ? "0x" : ", 0x") + Hex(id.data4[i], 2);
  return text + "}}";
}

std::string Version(std::uint32_t major, std::uint32_t minor) {
  return "version(" + std::to_string(major) + "." + std::to_string(minor) + ")";
}

const char* TypeName(ValueType type) {
  switch (type) {
    case ValueType::kText:
      return "BSTR";
    case ValueType::kInteger16:
      return "short";
    case ValueType::kBoolean:
      return "VARIANT_BOOL";
    case ValueType::kInteger32:
      break;
  }
  return "long";
}

bool IsPut(const Member& member) { return member.kind == MemberKind::kPropertyPut; }

// --- Interface definition ------------------------------------------------------------------------

std::string Definition(const Member& member) {
  std::string text = "    [id(0x" + Hex(static_cast<std::uint32_t>(member.dispatch_id), 8) + ")";
  if (member.kind != MemberKind::kFunction) text += IsPut(member) ? ", propput" : ", propget";
  if (member.help_context != 0)
    text += ", helpcontext(" + std::to_string(member.help_context) + ")";
  text += "]\n    HRESULT " + std::string(member.name) + "(";
  const std::string type = TypeName(member.type);
  text +=
      IsPut(member) ? "[in] " + type + " " + member.argument : "[out, retval] " + type + "* value";
  return text + ");\n";
}

std::string Definition(const Generation& alias) {
  return "  typedef [uuid(" + IdText(alias.interface_id) + "), " +
         Version(kClassMajor, alias.minor_version) + ", hidden]\n  " + kInterfaceName + " " +
         alias.entry + ";\n";
}

// --- C++ -----------------------------------------------------------------------------------------

std::string Include(const std::string& name) { return "#include " + name + "\n"; }

std::string Declaration(const Member& member, const std::string& argument) {
  std::string prefix;
  if (member.kind != MemberKind::kFunction) prefix = IsPut(member) ? "put_" : "get_";
  return "HRESULT STDMETHODCALLTYPE " + prefix + member.name + "(" + TypeName(member.type) +
         (IsPut(member) ? " " : "* ") + argument + ")";
}

}  // namespace

std::string InterfaceDefinition() {
  std::string members;
  for (const Member& member : kMembers) members += Definition(member);
  std::string aliases;
  for (const Generation& generation : kGenerations) {
    if (&generation != &kPresent) aliases += Definition(generation);
  }
  return Filled(kDefinition, {{"library_id", IdText(kLibraryId)},
                              {"library_version", Version(kLibraryMajor, kLibraryMinor)},
                              {"locale", Hex(kLocale, 4)},
                              {"library", kModuleName},
                              {"help_file", kHelpFile},
                              {"interface_id", IdText(kPresent.interface_id)},
                              {"version", Version(kClassMajor, kClassMinor)},
                              {"interface", kInterfaceName},
                              {"members", members},
                              {"source_id", IdText(kPresent.source_id)},
                              {"source", kSourceInterfaceName},
                              {"class_id", IdText(kClassId)},
                              {"class", kClassName},
                              {"aliases", aliases}});
}

std::string InterfaceHeader() {
  std::string slots;
  for (const Member& member : kMembers) {
    const char* const argument = IsPut(member) ? member.argument : "value";
    slots += "  virtual " + Declaration(member, argument) + " = 0;\n";
  }
  return Filled(kInterfaceHeader, {{"system", Include("<ole2.h>")},
                                   {"class_id", IdInitializer(kClassId)},
                                   {"interface_id", IdInitializer(kPresent.interface_id)},
                                   {"interface", kInterfaceName},
                                   {"slots", slots}});
}

std::string MembersHeader() {
  std::string slots;
  for (const Member& member : kMembers) {
    if (member.kind == MemberKind::kFunction) continue;
    slots += "  " + Declaration(member, "value") +
             " final {\n    return static_cast<Object*>(this)->" + (IsPut(member) ? "Put" : "Get") +
             "(settings::k" + member.name + ", value);\n  }\n";
  }
  const std::string own = Include("\"control/automation/com.h\"") +
                          Include("\"control/interface/security_ctrl.h\"") +
                          Include("\"control/settings.h\"");
  return Filled(kMembersHeader, {{"own", own}, {"slots", slots}});
}

}  // namespace quorvane::resources
