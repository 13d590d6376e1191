#include "control/resources/control_library.h"

#include <vector>

#include "control/interface/identities.h"
#include "control/resources/msft_writer.h"

namespace quorvane::typelib {
namespace {

using namespace identities;

// Flags of the platform's type descriptions, under their names there.
constexpr std::uint16_t LIBFLAG_FCONTROL = 0x02;
constexpr std::uint16_t TYPEFLAG_FHIDDEN = 0x10;
constexpr std::uint16_t TYPEFLAG_FCONTROL = 0x20;
constexpr std::uint16_t TYPEFLAG_FDUAL = 0x40;
constexpr std::uint16_t TYPEFLAG_FNONEXTENSIBLE = 0x80;
constexpr std::uint16_t TYPEFLAG_FOLEAUTOMATION = 0x100;
constexpr std::uint16_t TYPEFLAG_FDISPATCHABLE = 0x1000;
constexpr std::uint32_t IMPLTYPEFLAG_FDEFAULT = 1;
constexpr std::uint32_t IMPLTYPEFLAG_FSOURCE = 2;

Invoke InvokeOf(MemberKind kind) {
  switch (kind) {
    case MemberKind::kPropertyGet:
      return Invoke::kPropertyGet;
    case MemberKind::kPropertyPut:
      return Invoke::kPropertyPut;
    case MemberKind::kFunction:
      break;
  }
  return Invoke::kFunction;
}

// The VARTYPE of a value.
std::uint16_t VariantTypeOf(ValueType type) {
  switch (type) {
    case ValueType::kText:
      return 8;
    case ValueType::kInteger16:
      return 2;
    case ValueType::kBoolean:
      return 11;
    case ValueType::kInteger32:
      break;
  }
  return 3;
}

std::vector<Function> Functions() {
  std::vector<Function> functions;
  for (const Member& member : kMembers) {
    functions.push_back({member.name, InvokeOf(member.kind),
                         static_cast<std::uint32_t>(member.dispatch_id), VariantTypeOf(member.type),
                         member.argument, member.help_context});
  }
  return functions;
}

}  // namespace

Bytes ControlLibrary() {
  constexpr Version kVersion{kClassMajor, kClassMinor};
  constexpr std::uint16_t kEventFlags =
      TYPEFLAG_FHIDDEN | TYPEFLAG_FNONEXTENSIBLE | TYPEFLAG_FDISPATCHABLE;
  constexpr std::uint16_t kInterfaceFlags = kEventFlags | TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION;

  MsftWriter writer({kModuleName,
                     kLibraryId,
                     {kLibraryMajor, kLibraryMinor},
                     kLocale,
                     LIBFLAG_FCONTROL,
                     kModuleName,
                     kHelpFile});
  writer.ImportDispatch({kAutomationLibraryId, {2, 0}, "stdole2.tlb", kDispatchInterfaceId});

  const TypeReference members = writer.AddDualInterface(
      {kInterfaceName, kPresent.interface_id, kVersion, kInterfaceFlags}, Functions());
  const TypeReference events = writer.AddDispatchInterface(
      {kSourceInterfaceName, kPresent.source_id, kVersion, kEventFlags});
  // Kept: the can-create flag is clear, so browsers do not offer the class for creation by itself;
  // containers create it through its class object all the same. Pinned by
  // test_class_is_a_control_without_the_can_create_flag.
  writer.AddClass(
      {kClassName, kClassId, kVersion, TYPEFLAG_FCONTROL},
      {{members, IMPLTYPEFLAG_FDEFAULT}, {events, IMPLTYPEFLAG_FDEFAULT | IMPLTYPEFLAG_FSOURCE}});

  for (const Generation& generation : kGenerations) {
    if (&generation == &kPresent) continue;
    writer.AddAlias({generation.entry,
                     generation.interface_id,
                     {kClassMajor, generation.minor_version},
                     TYPEFLAG_FHIDDEN},
                    members);
  }
  return writer.Write();
}

Bytes MarshallingLibrary() {
  constexpr std::uint16_t kFlags =
      TYPEFLAG_FHIDDEN | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE;
  MsftWriter writer({kMarshallingName,
                     kMarshallingId,
                     {kMarshallingMajor, kMarshallingMinor},
                     kLocale,
                     kMarshallingFlags,
                     kMarshallingName,
                     ""});
  const TypeReference present = writer.ImportDualInterface(
      {kLibraryId, {kLibraryMajor, kLibraryMinor}, kModuleFileName, kPresent.interface_id});
  for (const Generation& generation : kGenerations) {
    if (&generation == &kPresent) continue;
    writer.AddEmptyHeir({generation.entry,
                         generation.interface_id,
                         {kClassMajor, generation.minor_version},
                         kFlags},
                        present, kMembers.size());
  }
  return writer.Write();
}

}  // namespace quorvane::typelib
