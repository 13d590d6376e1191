#include "control/resources/msft_writer.h"

#include <array>
#include <cstddef>
#include <utility>

namespace quorvane::typelib {
namespace {

// Kinds of type entries. An interface that is dual is stored as its dispatch half with a mark.
constexpr std::uint32_t kInterfaceKind = 3;
constexpr std::uint32_t kDispatchKind = 4;
constexpr std::uint32_t kClassKind = 5;
constexpr std::uint32_t kAliasKind = 6;
constexpr std::uint32_t kDualMark = 0x10;

constexpr std::uint32_t kEntrySize = 100;
constexpr std::uint32_t kSegmentCount = 15;
constexpr std::uint32_t kHeaderSize = 84;

// The counts that heirs of IDispatch begin with.
constexpr std::uint32_t kDispatchMethods = 7;
constexpr std::uint32_t kDispatchDepth = 2;

constexpr std::uint16_t kErrorType = 25;  // HRESULT
constexpr std::uint32_t kPointerSize = 4;

std::uint32_t Packed(Version version) {
  return version.major | (std::uint32_t{version.minor} << 16);
}

std::uint32_t Packed(std::uint32_t low, std::uint32_t high) { return low | (high << 16); }

// The function that shares the name of function `index`, or itself where there is none.
std::uint32_t PartnerOf(const std::vector<Function>& functions, std::uint32_t index) {
  for (std::uint32_t other = 0; other < functions.size(); ++other) {
    if (other != index && functions[other].name == functions[index].name) return other;
  }
  return index;
}

}  // namespace

MsftWriter::MsftWriter(const LibraryTraits& library)
    : library_(library),
      library_id_(ids_.Add(library.id, kThisLibrary)),
      library_name_(names_.AddLibrary(library.name)),
      help_file_(library.help_file.empty() ? kNone : texts_.Add(library.help_file)),
      help_text_(texts_.Add(library.help_text)) {}

TypeReference MsftWriter::Import(const ImportTraits& traits, std::uint32_t kind) {
  constexpr std::uint32_t kNeutralLocale = 0;
  constexpr std::uint32_t kById = 0x00010000;
  const std::uint32_t import = imported_libraries_.Size();
  const std::string& file = traits.file;
  imported_libraries_.Put32({ids_.Add(traits.library_id, import + kImportedLibrary), kNeutralLocale,
                             Packed(traits.version)});
  imported_libraries_.Put16((static_cast<std::uint32_t>(file.size()) << 2) | 1);
  imported_libraries_.PutText(file);
  imported_libraries_.Align('W');

  imported_types_.Put32({kind << 24 | kById, import, ids_.Add(traits.id, kImportedType)});
  return kImportedType;
}

void MsftWriter::ImportDispatch(const ImportTraits& dispatch) {
  dispatch_ = Import(dispatch, kInterfaceKind);
}

TypeReference MsftWriter::ImportDualInterface(const ImportTraits& traits) {
  return Import(traits, kDispatchKind);
}

TypeReference MsftWriter::NextReference() const {
  return static_cast<TypeReference>(entries_.size()) * kEntrySize;
}

MsftWriter::Entry MsftWriter::NewEntry(const TypeTraits& traits, std::uint32_t kind,
                                       std::uint32_t alignment) {
  Entry entry{};
  entry.kind = kind;
  entry.alignment = alignment;
  entry.id = ids_.Add(traits.id, NextReference());
  entry.name = names_.AddType(traits.name, NextReference());
  entry.flags = traits.flags;
  entry.version = traits.version;
  return entry;
}

TypeReference MsftWriter::Add(Entry entry) {
  const TypeReference reference = NextReference();
  entries_.push_back(std::move(entry));
  return reference;
}

TypeReference MsftWriter::AddDualInterface(const TypeTraits& traits,
                                           const std::vector<Function>& functions) {
  Entry entry = NewEntry(traits, kDispatchKind | kDualMark, 8);
  const auto count = static_cast<std::uint16_t>(functions.size());
  entry.function_count = count;
  // Size hints for readers, as other compilers of the format give them.
  entry.hints[0] = 0x20;
  for (std::uint32_t i = 0; i < count; ++i) {
    entry.hints[0] = (entry.hints[0] << 1) + (i < 2 ? 0x10 : 0);
  }
  entry.hints[1] = count * 0x48U;
  entry.base_count = 1;
  entry.table_size = static_cast<std::uint16_t>((kDispatchMethods + count) * kPointerSize);
  entry.type = dispatch_;
  entry.inherited = Packed(kDispatchDepth, kDispatchMethods);
  entry.functions = WriteFunctions(functions);
  return Add(std::move(entry));
}

TypeReference MsftWriter::AddDispatchInterface(const TypeTraits& traits) {
  Entry entry = NewEntry(traits, kDispatchKind, 4);
  entry.base_count = 1;  // IDispatch, which the header of the file names
  return Add(std::move(entry));
}

TypeReference MsftWriter::AddClass(const TypeTraits& traits,
                                   const std::vector<Implemented>& interfaces) {
  Entry entry = NewEntry(traits, kClassKind, 8);
  entry.base_count = static_cast<std::uint16_t>(interfaces.size());
  entry.type = class_interfaces_.Size();
  for (std::size_t i = 0; i < interfaces.size(); ++i) {
    const bool is_last = i + 1 == interfaces.size();
    const std::uint32_t next = is_last ? kNone : class_interfaces_.Size() + 16;
    class_interfaces_.Put32({interfaces[i].type, interfaces[i].flags, kNone, next});
  }
  return Add(std::move(entry));
}

TypeReference MsftWriter::AddEmptyHeir(const TypeTraits& traits, TypeReference base,
                                       std::size_t members) {
  Entry entry = NewEntry(traits, kInterfaceKind, 8);
  const std::uint32_t methods = kDispatchMethods + static_cast<std::uint32_t>(members);
  entry.base_count = 1;
  entry.table_size = static_cast<std::uint16_t>(methods * kPointerSize);
  entry.type = base;
  entry.inherited = Packed(kDispatchDepth + 1, methods);
  return Add(std::move(entry));
}

TypeReference MsftWriter::AddAlias(const TypeTraits& traits, TypeReference of) {
  Entry entry = NewEntry(traits, kAliasKind, 4);
  entry.type = types_.Named(of);
  return Add(std::move(entry));
}

// A reader asks for the names of a member by its dispatch id and is told those of the first
// function that bears it. Where that is the get, its return value has to bear the name of the put's
// argument, or the put's would stay unknown.
std::uint32_t MsftWriter::NameOfResult(const std::vector<Function>& functions,
                                       std::uint32_t index) {
  const std::uint32_t partner = PartnerOf(functions, index);
  return partner > index ? names_.AddArgument(functions[partner].argument) : kNone;
}

// The block of an interface's functions: its size, the records, then three columns with the
// dispatch ids, the names and the places of the records.
Bytes MsftWriter::WriteFunctions(const std::vector<Function>& functions) {
  Bytes records, ids, names, places;
  for (std::uint32_t i = 0; i < functions.size(); ++i) {
    ids.Put32(functions[i].dispatch_id);
    names.Put32(names_.AddMember(functions[i].name, NextReference()));
    places.Put32(records.Size());
    records.Append(WriteFunction(functions, i));
  }
  Bytes block;
  block.Put32(records.Size());
  for (const Bytes* part : {&records, &ids, &names, &places}) block.Append(*part);
  return block;
}

Bytes MsftWriter::WriteFunction(const std::vector<Function>& functions, std::uint32_t index) {
  constexpr std::uint32_t kPureVirtual = 1;
  constexpr std::uint32_t kStdCall = 4;
  constexpr std::uint32_t kHasReturnValue = 0x4000;
  constexpr std::uint32_t kIn = 1;
  constexpr std::uint32_t kOutReturnValue = 2 | 8;
  constexpr std::uint32_t kDescriptionSize = 0x44;  // of FUNCDESC with one argument ...
  constexpr std::uint32_t kPointerDescription = 8;  // ... and what a pointer adds

  const Function& function = functions[index];
  const bool is_put = function.invoke == Invoke::kPropertyPut;
  const bool has_help = function.help_context != 0;
  const std::uint32_t calling = kPureVirtual | (static_cast<std::uint32_t>(function.invoke) << 3) |
                                (kStdCall << 8) | (is_put ? 0 : kHasReturnValue);
  Bytes record;
  record.Put32(Packed(has_help ? 40 : 36, index));
  record.Put32({TypeTable::Simple(kErrorType), 0});
  record.Put32(Packed((kDispatchMethods + index) * kPointerSize,
                      kDescriptionSize + (is_put ? 0 : kPointerDescription)));
  record.Put32(Packed(calling, PartnerOf(functions, index)));
  record.Put32(1);  // one argument, none of it optional
  if (has_help) record.Put32(function.help_context);
  if (is_put) {
    record.Put32(
        {TypeTable::Simple(function.variant_type), names_.AddArgument(function.argument), kIn});
  } else {
    record.Put32(
        {types_.PointerTo(function.variant_type), NameOfResult(functions, index), kOutReturnValue});
  }
  return record;
}

void MsftWriter::WriteHeader(Bytes& file) const {
  constexpr std::uint32_t kMagic = 0x5446534D;  // "MSFT"
  constexpr std::uint32_t kFormat = 0x00010002;
  constexpr std::uint32_t kHasHelpFile = 0x10;
  const std::uint32_t traits = 0x40 | 1 | (help_file_ != kNone ? kHasHelpFile : 0);  // 32 bits
  constexpr std::uint32_t kImportedTypes = 1;
  file.Put32({kMagic, kFormat, library_id_, library_.locale, library_.locale, traits});
  file.Put32({Packed(library_.version), library_.flags, static_cast<std::uint32_t>(entries_.size()),
              help_text_, 0, 0});
  file.Put32({names_.Count(), names_.Characters(), library_name_, help_file_, kNone});
  file.Put32({32, 128, dispatch_, kImportedTypes});  // 32 and 128: buckets of the hash tables
}

Bytes MsftWriter::WriteEntries(std::uint32_t functions_start) const {
  std::uint32_t functions_end = functions_start;
  for (const Entry& entry : entries_) functions_end += entry.functions.Size();

  Bytes bytes;
  std::uint32_t functions = functions_start;
  for (std::uint32_t index = 0; index < entries_.size(); ++index) {
    const Entry& entry = entries_[index];
    const bool has_functions = entry.function_count != 0;
    bytes.Put32(Packed(entry.kind | 0x20 | (4 << 11) | (entry.alignment << 6), index));
    bytes.Put32(has_functions ? functions : functions_end);
    bytes.Put32({entry.hints[0], entry.hints[1], 3, 0});
    bytes.Put32({entry.function_count, 0, 0, 0, 0});
    bytes.Put32({entry.id, entry.flags, entry.name, Packed(entry.version)});
    bytes.Put32({kNone, 0, 0, kNone});  // no help text, contexts 0, no custom data
    bytes.Put32({Packed(entry.base_count, entry.table_size), entry.instance_size});
    bytes.Put32({entry.type, entry.inherited, 0, kNone});
    functions += entry.functions.Size();
  }
  return bytes;
}

Bytes MsftWriter::Write() const {
  // A table and its number in the segment directory; here in the order of the file.
  struct Segment {
    std::size_t number;
    const Bytes* bytes;
  };
  const Bytes name_hashes = names_.HashTable();
  const Bytes id_hashes = ids_.HashTable();
  const std::array<Segment, 9> tables{{{4, &id_hashes},
                                       {5, &ids_.Entries()},
                                       {3, &class_interfaces_},
                                       {1, &imported_types_},
                                       {2, &imported_libraries_},
                                       {6, &name_hashes},
                                       {7, &names_.Entries()},
                                       {8, &texts_.Entries()},
                                       {9, &types_.Entries()}}};

  const auto entry_count = static_cast<std::uint32_t>(entries_.size());
  std::uint32_t place = kHeaderSize + entry_count * 4 + kSegmentCount * 16;
  std::array<std::array<std::uint32_t, 2>, kSegmentCount> directory;  // place and size
  directory.fill({kNone, 0});
  directory[0] = {place, entry_count * kEntrySize};
  place += entry_count * kEntrySize;
  for (const Segment& table : tables) {
    if (table.bytes->Size() == 0) continue;
    directory[table.number] = {place, table.bytes->Size()};
    place += table.bytes->Size();
  }

  Bytes file;
  WriteHeader(file);
  for (std::uint32_t i = 0; i < entry_count; ++i) file.Put32(i * kEntrySize);
  for (const auto& [start, size] : directory) file.Put32({start, size, kNone, 0x0F});
  file.Append(WriteEntries(place));
  for (const Segment& table : tables) file.Append(*table.bytes);
  for (const Entry& entry : entries_) file.Append(entry.functions);
  return file;
}

}  // namespace quorvane::typelib
