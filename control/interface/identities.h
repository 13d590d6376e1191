// Everything about the module that a host may have stored or compiled in: ids, versions, names,
// numbers.
//
// This is the only list of them. The component, its registration, the type library, the two id
// tables, the numbers in QuorvaneSecurity.rc, the C++ headers of the interface and its IDL are all
// made from it, and no value here may change: forms saved by hosts and programs built against any
// earlier interface rely on each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "control/interface/guid.h"

namespace quorvane::identities {

// --- Names ---------------------------------------------------------------------------------------

// NOLINTBEGIN(*-avoid-c-arrays): literals whose sizes count
inline constexpr char kModuleName[] = "QuorvaneSecurity";  // also library name and help string
inline constexpr char kModuleFileName[] = "QuorvaneSecurity.ocx";
inline constexpr char kHelpFile[] = "SecurityOCX.chm";
inline constexpr char kClassName[] = "SecurityCtrl";
inline constexpr char kProgId[] = "QuorvaneSecurity.SecurityCtrl";
inline constexpr char kInterfaceName[] = "_SecurityCtrl";
inline constexpr char kSourceInterfaceName[] = "__SecurityCtrl";
inline constexpr char kMarshallingName[] = "QuorvaneSecurityMarshalling";
// NOLINTEND(*-avoid-c-arrays)

// --- Library and class ---------------------------------------------------------------------------

inline constexpr Guid kLibraryId = ParseGuid("D87A57E5-81C3-11D5-97D8-0050BA8CAAD8");
inline constexpr std::uint16_t kLibraryMajor = 443;
inline constexpr std::uint16_t kLibraryMinor = 16;
inline constexpr std::uint32_t kLocale = 0x0409;

inline constexpr Guid kClassId = ParseGuid("D87A57E7-81C3-11D5-97D8-0050BA8CAAD8");
inline constexpr std::uint16_t kClassMajor = 1;  ///< of the class and of all interface generations
inline constexpr std::uint16_t kClassMinor = 16;

/// The second library, for the system's marshaller only: see resources/control_library.h.
inline constexpr Guid kMarshallingId = ParseGuid("34356A0C-F8F5-4F2E-97B7-A27990164D0B");
inline constexpr std::uint16_t kMarshallingMajor = 1;
inline constexpr std::uint16_t kMarshallingMinor = 0;
inline constexpr std::uint16_t kMarshallingFlags = 4;  ///< hidden (LIBFLAG_FHIDDEN)

/// The automation library that ours imports, and IDispatch in it.
inline constexpr Guid kAutomationLibraryId = ParseGuid("00020430-0000-0000-C000-000000000046");
inline constexpr Guid kDispatchInterfaceId = ParseGuid("00020400-0000-0000-C000-000000000046");

/// SETCLIENTSITEFIRST | NOUIACTIVATE | INVISIBLEATRUNTIME | ACTIVATEWHENVISIBLE | INSIDEOUT |
/// CANTLINKINSIDE | RECOMPOSEONRESIZE
inline constexpr std::uint32_t kMiscStatus = 0x24591;

// --- Interface generations -----------------------------------------------------------------------

/// One step in the life of the interface. The members never changed, only the ids, so the present
/// interface answers to every interface id and its events to every source id.
struct Generation {
  const char* entry;            ///< name in the type library; all but the last are hidden aliases
  std::uint16_t minor_version;  ///< the major one is kClassMajor
  Guid interface_id;
  Guid source_id;
};

/// Oldest first; the last one is the present interface.
inline constexpr std::array<Generation, 17> kGenerations{{
    {"SecurityCtrl___v0", 0, ParseGuid("8B4B3B95-B3A0-11D5-8FF3-0060B0A44813"),
     ParseGuid("8B4B3B96-B3A0-11D5-8FF3-0060B0A44813")},
    {"SecurityCtrl___v1", 1, ParseGuid("EC17EC29-D2B2-11D5-8FF8-0060B0A44813"),
     ParseGuid("EC17EC2A-D2B2-11D5-8FF8-0060B0A44813")},
    {"SecurityCtrl___v2", 2, ParseGuid("5103B0F6-A5B6-4A93-9AE2-540EDE42B1A5"),
     ParseGuid("F4EB5032-2EBB-452F-88F6-F22983FC911A")},
    {"SecurityCtrl___v3", 3, ParseGuid("00FA7AC7-F2CA-4FF8-A0C0-32A1B6CD9CC8"),
     ParseGuid("2523D7D0-AA4D-464F-B664-DD302BED3A66")},
    {"SecurityCtrl___v4", 4, ParseGuid("7DE417FD-0A77-4BA2-BD4E-5F85AA09B23C"),
     ParseGuid("9BE9FDA7-A04B-46F7-9116-BEA759100DCE")},
    {"SecurityCtrl___v5", 5, ParseGuid("5C69ABDC-AE9A-42FD-B8BB-E73136FDA81E"),
     ParseGuid("96D616EE-8E13-45AC-BF50-8749B65F3BB2")},
    {"SecurityCtrl___v6", 6, ParseGuid("157C2BF2-EB9C-4784-8E33-7A2A11363C0C"),
     ParseGuid("8279C7B2-34CE-4B4C-8CB7-A3074DC38CA2")},
    {"SecurityCtrl___v7", 7, ParseGuid("662ABC14-2300-424A-9285-DEAB2B004AFD"),
     ParseGuid("F61A88E2-5A20-47B0-ADA1-02476C0D62E1")},
    {"SecurityCtrl___v8", 8, ParseGuid("7394FF21-F07A-4047-B2E7-8F2C001B7E4A"),
     ParseGuid("878949A6-032F-4256-9C07-413602C4FEA2")},
    {"SecurityCtrl___v9", 9, ParseGuid("837C6A0D-12AB-4ABE-967E-E97D689B1751"),
     ParseGuid("81E95369-10BD-440F-B081-9C0CD511AABD")},
    {"SecurityCtrl___v10", 10, ParseGuid("54CB573B-B960-4F71-ACF7-79EBC22C4E3C"),
     ParseGuid("8D635294-B787-4108-9A1D-413372039790")},
    {"SecurityCtrl___v11", 11, ParseGuid("DFE7C31B-0349-4617-B766-AA9A5B9DCBA0"),
     ParseGuid("DF787A3A-A77A-420A-9941-AC3BE7D2A7A9")},
    {"SecurityCtrl___v12", 12, ParseGuid("AC674024-4E4F-4659-B1CD-582009F4C24C"),
     ParseGuid("19A1E102-28D8-400C-ACBD-616B747DDF78")},
    {"SecurityCtrl___v13", 13, ParseGuid("86FD65FD-06C7-4060-BCBA-7157F94EB51A"),
     ParseGuid("1A552F4A-7433-43F3-9762-8102D89DB6B4")},
    {"SecurityCtrl___v14", 14, ParseGuid("EB5E841F-A4B5-40C4-AA9D-329848F7CEE5"),
     ParseGuid("5A41FEC7-4BAB-49F4-B4C2-FBB392B1B61E")},
    {"SecurityCtrl___v15", 15, ParseGuid("8D7AE9D3-029C-4526-A961-272660BEE4F3"),
     ParseGuid("49B76257-44DE-4984-9652-CCB74441B05C")},
    {"_SecurityCtrl", 16, ParseGuid("80A6F5ED-2A74-4AA0-BD7A-211CF85AECE2"),
     ParseGuid("1D54DF39-6000-4448-ABCE-DA756E22FFF9")},
}};
inline constexpr const Generation& kPresent = kGenerations.back();

// --- Properties and members of _SecurityCtrl -----------------------------------------------------

enum class ValueType { kText, kInteger16, kBoolean, kInteger32 };

/// Which of a property's two members stands first in the virtual table.
enum class First { kGet, kPut };

/// One property, as hosts and saved forms know it. What the control does with it stands in its row
/// of control/settings.h.
struct Property {
  const char* name;
  const char16_t* entry;  ///< its name in a saved form and in the notice of a change
  ValueType type;
  std::int32_t dispatch_id;
  const char* argument;  ///< name of the put's argument
  std::uint32_t help_context;
  First first;
};

/// In the order of the virtual table, which is also that of a saved form.
/// Kept: the first three properties stand get before put, the last four put before get; clients
/// call by position. Pinned by test_members_stand_in_the_order_of_the_virtual_table and
/// TypeLibrary.HasTheDualInterfaceWithItsMembersInOrder.
/// Kept: the entry of UserName is spelled "Username", unlike the member; saved forms hold that
/// spelling. Pinned by SecurityCtrl.PersistsUserNameAsUsername.
inline constexpr std::array<Property, 7> kProperties{{
    {"ServerAddress", u"ServerAddress", ValueType::kText, 0x6803000D, "str_New_ServerAddress", 0,
     First::kGet},
    {"ServerPort", u"ServerPort", ValueType::kInteger16, 0x68030053, "int_New_ServerPort", 0,
     First::kGet},
    {"ServerFile", u"ServerFile", ValueType::kText, 0x6803000C, "str_New_ServerFile", 600,
     First::kGet},
    {"UseProxy", u"UseProxy", ValueType::kBoolean, 0x68030048, "bolUseProxy", 0, First::kPut},
    {"ProxyServer", u"ProxyServer", ValueType::kText, 0x68030047, "strProxyServer", 0, First::kPut},
    {"UserName", u"Username", ValueType::kText, 0x68030046, "strUserName", 0, First::kPut},
    {"Password", u"Password", ValueType::kText, 0x68030045, "strPassword", 0, First::kPut},
}};

/// The row of that name; the compiler refuses a name that has none.
consteval const Property& PropertyNamed(std::string_view name) {
  for (const Property& property : kProperties) {
    if (property.name == name) return property;
  }
  throw "there is no property of that name";
}

enum class MemberKind { kFunction, kPropertyGet, kPropertyPut };

struct Member {
  const char* name;
  MemberKind kind;
  std::int32_t dispatch_id;
  ValueType type;        ///< of the put's argument, or of the value that comes back
  const char* argument;  ///< name of the put's argument; empty for a get and for the function
  std::uint32_t help_context;
};

inline constexpr Member kChecksumMember{
    "GetCRCValue", MemberKind::kFunction, 0x6003005E, ValueType::kInteger32, "", 0};

namespace details {

constexpr Member MemberOf(const Property& of, MemberKind kind) {
  const bool is_put = kind == MemberKind::kPropertyPut;
  return {of.name, kind, of.dispatch_id, of.type, is_put ? of.argument : "", of.help_context};
}

consteval auto Members() {
  std::array<Member, 2 * kProperties.size() + 1> members{};
  std::size_t count = 0;
  for (const Property& property : kProperties) {
    const bool put_is_first = property.first == First::kPut;
    const auto put = MemberOf(property, MemberKind::kPropertyPut);
    const auto get = MemberOf(property, MemberKind::kPropertyGet);
    members[count++] = put_is_first ? put : get;
    members[count++] = put_is_first ? get : put;
  }
  members[count] = kChecksumMember;
  return members;
}

}  // namespace details

/// In the order of the virtual table.
inline constexpr auto kMembers = details::Members();

// --- Resources -----------------------------------------------------------------------------------

inline constexpr std::uint16_t kTypeLibraryResource = 1;         ///< of type TYPELIB
inline constexpr std::uint16_t kMarshallingLibraryResource = 2;  ///< likewise
// NOLINTBEGIN(*-avoid-c-arrays): as above
inline constexpr char kInterfaceIdsType[] = "_IID_SECURITYCTRL";  // resource type, id 1
inline constexpr char kSourceIdsType[] = "_SRCIID_SECURITYCTRL";  // resource type, id 1
// NOLINTEND(*-avoid-c-arrays)
inline constexpr std::uint16_t kIdTableResource = 1;
inline constexpr std::uint16_t kToolboxBitmapResource = 30000;  ///< 16 by 15 pixels, 24 bits
inline constexpr std::uint16_t kControlIconResource = 30001;    ///< 32 by 32 pixels, 16 colours
inline constexpr std::uint16_t kVersionResource = 1;

inline constexpr std::uint16_t kVersionCodePage = 0x04B0;  ///< with kLocale the block "040904B0"

}  // namespace quorvane::identities
