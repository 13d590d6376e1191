// Proves persistence through storages of compound files, real ones and faulty ones: the one stream
// and its form, each state and what leads to it, saves that need nothing to be opened, and that no
// storage, whatever is wrong with it, harms settings, mark or state.

#include <vector>

#include "tests/support/component/fake_storage.h"
#include "tests/support/component/fake_stream.h"
#include "tests/support/component/module_under_test.h"
#include "tests/support/component/values.h"

namespace quorvane::component::storage_test {
namespace {

using ByteVector = std::vector<unsigned char>;

constexpr const wchar_t* kContents = L"CONTENTS";
constexpr DWORD kExclusive = STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

template <class Body>
void WithControl(Body body) {
  OnApartmentThread([&body] {
    const Module module;
    {
      const auto control = module.CreateSecurityCtrl();
      const auto persistence = control.As<IPersistStorage>();
      ASSERT_TRUE(persistence);
      body(control, persistence);
    }
    EXPECT_EQ(module.CanUnloadNow(), S_OK);
  });
}

ByteVector StreamForm(const Com<ISecurityCtrl>& control) {
  FakeStream stream;
  EXPECT_EQ(control.As<IPersistStreamInit>()->Save(&stream, FALSE), S_OK);
  return stream.content;
}

ByteVector ContentsOf(const Com<IStorage>& storage) {
  Com<IStream> stream;
  EXPECT_EQ(
      storage->OpenStream(kContents, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.Out()),
      S_OK);
  if (!stream) return {};
  STATSTG status{};
  EXPECT_EQ(stream->Stat(&status, STATFLAG_NONAME), S_OK);
  ByteVector bytes(static_cast<std::size_t>(status.cbSize.QuadPart));
  ULONG count = 0;
  EXPECT_EQ(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count), S_OK);
  EXPECT_EQ(count, bytes.size());
  return bytes;
}

void PutContents(const Com<IStorage>& storage, const ByteVector& bytes) {
  Com<IStream> stream;
  ASSERT_EQ(storage->CreateStream(kContents, kExclusive | STGM_CREATE, 0, 0, stream.Out()), S_OK);
  if (bytes.empty()) return;
  EXPECT_EQ(stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr), S_OK);
}

// The form of the settings, made by a control of another thread.
ByteVector FormOf(const Values& values) {
  ByteVector bytes;
  OnApartmentThread([&] {
    const Module module;
    const auto control = module.CreateSecurityCtrl();
    PutValues(control, values);
    bytes = StreamForm(control);
  });
  return bytes;
}

Com<IStorage> StorageOf(const Values& values) {
  auto storage = NewCompoundFile();
  PutContents(storage, FormOf(values));
  return storage;
}

Values Some() {
  Values values = kDefaults;
  values.server_port = 7;
  values.server_file = L"some";
  return values;
}

TEST(StorageSave, RoundTripsThroughACompoundFile) {
  const TemporaryFolder folder;
  const std::wstring file = folder.File(L"document.bin");
  WithControl([&](auto& control, auto& persistence) {
    const auto root = NewCompoundFile(file);
    Com<IStorage> place;
    ASSERT_EQ(root->CreateStorage(L"Object 1", kExclusive, 0, 0, place.Out()), S_OK);
    ASSERT_EQ(persistence->InitNew(place.Get()), S_OK);
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    EXPECT_EQ(::OleSave(persistence.Get(), place.Get(), TRUE), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
  });
  WithControl([&](auto& control, auto& persistence) {
    const auto root = OpenCompoundFile(file);
    Com<IStorage> place;
    ASSERT_EQ(root->OpenStorage(L"Object 1", nullptr, kExclusive, nullptr, 0, place.Out()), S_OK);
    CLSID written{};
    EXPECT_EQ(::ReadClassStg(place.Get(), &written), S_OK);
    EXPECT_TRUE(IsEqualCLSID(written, kClassId));
    EXPECT_EQ(persistence->Load(place.Get()), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    PutValues(control, Some());
    EXPECT_EQ(persistence->Save(place.Get(), TRUE), S_OK) << "shorter than before";
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_EQ(ContentsOf(place), StreamForm(control)) << "and nothing of the old behind it";
  });
}

TEST(StorageSave, HasTheFormOfAStreamInOneStream) {
  WithControl([](auto& control, auto& persistence) {
    const auto storage = NewCompoundFile();
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->Save(storage.Get(), FALSE), S_OK) << "also without a storage of its own";
    EXPECT_EQ(ContentsOf(storage), StreamForm(control));
    Com<IEnumSTATSTG> elements;
    ASSERT_EQ(storage->EnumElements(0, nullptr, 0, elements.Out()), S_OK);
    STATSTG element{};
    ASSERT_EQ(elements->Next(1, &element, nullptr), S_OK);
    EXPECT_EQ(element.type, static_cast<DWORD>(STGTY_STREAM));
    ::CoTaskMemFree(element.pwcsName);
    EXPECT_EQ(elements->Next(1, &element, nullptr), S_FALSE) << "one element";
  });
}

TEST(StorageSave, TouchesNothingButItsStream) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage;
    EXPECT_EQ(persistence->InitNew(&storage), S_OK);
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_TRUE(storage.IsFree());
    EXPECT_EQ(storage.other_calls + storage.class_calls, 0)
        << "no commit, no class id: those are the container's";
  });
}

TEST(StorageSave, IntoTheStorageHeldOpensNothing) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage(StorageOf(Some()));
    EXPECT_EQ(persistence->Load(&storage), S_OK);
    storage.leaves_streams_out = true;  // as in a system without memory
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_EQ(ContentsOf(storage.real), StreamForm(control));
  });
}

TEST(StorageSave, AsClearsTheMarkWhenItIsCompletedThere) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage first;
    FakeStorage second;
    EXPECT_EQ(persistence->InitNew(&first), S_OK);
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->Save(&second, FALSE), S_OK);
    EXPECT_TRUE(second.IsFree()) << "a copy is not held";
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "saved a copy only";
    EXPECT_FALSE(first.IsFree());

    EXPECT_EQ(persistence->Save(&second, FALSE), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(&second), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE) << "saved under another name";
    EXPECT_TRUE(first.IsFree());
    EXPECT_FALSE(second.IsFree());

    EXPECT_EQ(control->put_ServerPort(1), S_OK);
    EXPECT_EQ(persistence->Save(&first, FALSE), S_OK);
    EXPECT_EQ(control->put_ServerPort(2), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(&first), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "2 is saved nowhere";
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageSave, IsTakenAgainBeforeItIsCompleted) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage;
    EXPECT_EQ(persistence->InitNew(&storage), S_OK);
    for (SHORT port = 1; port <= 3; ++port) {
      EXPECT_EQ(control->put_ServerPort(port), S_OK);
      EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK);
    }
    EXPECT_EQ(persistence->SaveCompleted(nullptr), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_EQ(ContentsOf(storage.real), StreamForm(control));
  });
}

// A full save: into another file, the old one deleted, the new one renamed.
TEST(StorageStates, LetAFileBeReplacedWhileHandsAreOff) {
  const TemporaryFolder folder;
  const std::wstring file = folder.File(L"old.bin");
  WithControl([&](auto& control, auto& persistence) {
    auto root = NewCompoundFile(file);
    EXPECT_EQ(persistence->InitNew(root.Get()), S_OK);
    PutValues(control, kOthers);
    auto next = NewCompoundFile(folder.File(L"new.bin"));
    EXPECT_EQ(persistence->Save(next.Get(), FALSE), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    next.Reset();
    root.Reset();
    EXPECT_TRUE(::DeleteFileW(file.c_str())) << "nothing holds the old file";
    EXPECT_TRUE(::MoveFileW(folder.File(L"new.bin").c_str(), file.c_str()));
    root = OpenCompoundFile(file);
    EXPECT_EQ(persistence->SaveCompleted(root.Get()), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(control->put_ServerPort(9), S_OK);
    EXPECT_EQ(persistence->Save(root.Get(), TRUE), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_EQ(ContentsOf(root), StreamForm(control));
  });
}

TEST(StorageStates, AllowWhatTheModelAllows) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage(StorageOf(kOthers));
    FakeStorage other(StorageOf(Some()));
    EXPECT_EQ(persistence->SaveCompleted(nullptr), E_UNEXPECTED) << "nothing was saved";
    EXPECT_EQ(persistence->SaveCompleted(&storage), E_UNEXPECTED);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);

    EXPECT_EQ(persistence->Load(&storage), S_OK);
    const auto refuses_another = [&] {
      EXPECT_EQ(persistence->Load(&other), CO_E_ALREADYINITIALIZED);
      EXPECT_EQ(persistence->InitNew(&other), CO_E_ALREADYINITIALIZED);
      EXPECT_EQ(ValuesOf(control), kOthers);
      EXPECT_EQ(other.medium.calls, 0);
    };
    refuses_another();
    EXPECT_EQ(persistence->SaveCompleted(nullptr), E_UNEXPECTED) << "normal";

    EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK);
    refuses_another();
    EXPECT_EQ(persistence->SaveCompleted(&storage), S_OK) << "no scribble, and the same storage";
    EXPECT_EQ(persistence->SaveCompleted(&storage), E_UNEXPECTED) << "normal again";

    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_TRUE(storage.IsFree());
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK) << "repeatable";
    refuses_another();
    EXPECT_EQ(persistence->Save(&storage, TRUE), E_UNEXPECTED);
    EXPECT_EQ(persistence->Save(&other, FALSE), E_UNEXPECTED);
    EXPECT_EQ(persistence->SaveCompleted(nullptr), E_INVALIDARG);
    EXPECT_EQ(persistence->SaveCompleted(&other), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers) << "what is there is not read";
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);

    EXPECT_EQ(control->put_ServerPort(5), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK) << "from the normal state";
    EXPECT_EQ(persistence->SaveCompleted(&storage), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "nothing was saved meanwhile";
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageStates, RefuseNullPointers) {
  WithControl([](auto&, auto& persistence) {
    EXPECT_EQ(persistence->InitNew(nullptr), E_POINTER);
    EXPECT_EQ(persistence->Load(nullptr), E_POINTER);
    EXPECT_EQ(persistence->Save(nullptr, TRUE), E_POINTER);
    EXPECT_EQ(persistence->GetClassID(nullptr), E_POINTER);
    CLSID id{};
    EXPECT_EQ(persistence->GetClassID(&id), S_OK);
    EXPECT_TRUE(IsEqualCLSID(id, kClassId));
  });
}

TEST(StorageStates, GoWithTheOtherKindsOfPersistence) {
  WithControl([](auto& control, auto& persistence) {
    const auto stream_persistence = control.template As<IPersistStreamInit>();
    FakeStream stream(FormOf(kOthers));
    EXPECT_EQ(stream_persistence->Load(&stream), S_OK);
    FakeStorage storage;
    EXPECT_EQ(persistence->InitNew(&storage), CO_E_ALREADYINITIALIZED)
        << "would wipe what is there";
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(storage.medium.calls, 0);
    EXPECT_EQ(persistence->Save(&storage, FALSE), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(&storage), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_FALSE(storage.IsFree()) << "from here on the storage is its own";
    EXPECT_EQ(stream_persistence->InitNew(), E_UNEXPECTED);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageStates, EndWithTheControl) {
  FakeStorage storage;
  WithControl([&](auto&, auto& persistence) { EXPECT_EQ(persistence->InitNew(&storage), S_OK); });
  EXPECT_TRUE(storage.IsFree());
}

// Each of these storages is refused: settings, mark and state stay, nothing is held, and a good one
// is taken next.
template <class Damage>
void ExpectRefused(HRESULT expected, Damage damage) {
  WithControl([&](auto& control, auto& persistence) {
    PutValues(control, Some());
    FakeStorage storage;
    damage(storage);
    EXPECT_EQ(persistence->Load(&storage), expected);
    EXPECT_EQ(ValuesOf(control), Some());
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    EXPECT_TRUE(storage.IsFree());
    FakeStorage good(StorageOf(kOthers));
    EXPECT_EQ(persistence->Load(&good), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageLoad, RefusesAStorageWithoutTheStream) {
  ExpectRefused(STG_E_FILENOTFOUND, [](FakeStorage&) {});
  ExpectRefused(E_UNEXPECTED, [](FakeStorage& storage) { storage.leaves_streams_out = true; });
}

TEST(StorageLoad, RefusesForeignBytesAndTruncations) {
  ByteVector bytes = FormOf(kOthers);
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{11}, std::size_t{12}, bytes.size() / 2, bytes.size() - 1}) {
    const ByteVector cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
    ExpectRefused(E_FAIL, [&](FakeStorage& storage) { PutContents(storage.real, cut); });
  }
  ExpectRefused(E_FAIL,
                [](FakeStorage& storage) { PutContents(storage.real, ByteVector(500, 0xEE)); });
}

TEST(StorageLoad, RefusesAStreamThatIsAStorage) {
  ExpectRefused(STG_E_FILENOTFOUND, [](FakeStorage& storage) {
    Com<IStorage> inner;
    EXPECT_EQ(storage.real->CreateStorage(kContents, kExclusive, 0, 0, inner.Out()), S_OK);
  });
}

TEST(StorageLoad, RefusesAStreamThatSomebodyHolds) {
  Com<IStream> held;
  ExpectRefused(STG_E_ACCESSDENIED, [&](FakeStorage& storage) {
    PutContents(storage.real, FormOf(kOthers));
    EXPECT_EQ(storage.real->OpenStream(kContents, nullptr, kExclusive, 0, held.Out()), S_OK);
  });
}

// Windows denies the access, Wine calls the flags invalid; both then allow to read.
TEST(StorageLoad, ReadsWhereWritingIsDeniedInEitherWay) {
  for (const HRESULT denial : {STG_E_ACCESSDENIED, STG_E_INVALIDFLAG}) {
    WithControl([&](auto& control, auto& persistence) {
      FakeStorage storage(StorageOf(kOthers));
      storage.medium.failing_call = 1;
      storage.medium.failure = denial;
      EXPECT_EQ(persistence->Load(&storage), S_OK);
      EXPECT_EQ(ValuesOf(control), kOthers);
      EXPECT_EQ(persistence->Save(&storage, TRUE), STG_E_ACCESSDENIED) << "open for reading";
      EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    });
  }
}

TEST(StorageLoad, FailsWithTheMediumAtEachCall) {
  const ByteVector bytes = FormOf(kOthers);
  WithControl([&](auto&, auto& persistence) {
    FakeStorage storage;
    PutContents(storage.real, bytes);
    EXPECT_EQ(persistence->Load(&storage), S_OK);
    EXPECT_EQ(storage.medium.calls, 3) << "opens the stream, reads its head and its body";
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
  for (int n = 1; n <= 3; ++n) {
    ExpectRefused(STG_E_READFAULT, [&](FakeStorage& storage) {
      PutContents(storage.real, bytes);
      storage.medium.failure = STG_E_READFAULT;
      storage.medium.failing_call = n;
    });
  }
}

TEST(StorageLoad, TakesAStorageThatCanOnlyBeRead) {
  const TemporaryFolder folder;
  const std::wstring file = folder.File(L"document.bin");
  PutContents(NewCompoundFile(file), FormOf(kOthers));
  WithControl([&](auto& control, auto& persistence) {
    const auto root = OpenCompoundFile(file, STGM_READ | STGM_SHARE_DENY_WRITE);
    EXPECT_TRUE(FAILED(persistence->InitNew(root.Get())));
    EXPECT_EQ(persistence->Load(root.Get()), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(control->put_ServerPort(1), S_OK);
    EXPECT_EQ(persistence->Save(root.Get(), TRUE), STG_E_ACCESSDENIED);
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    EXPECT_EQ(persistence->SaveCompleted(nullptr), E_UNEXPECTED) << "still in the normal state";
    const auto copy = NewCompoundFile();
    EXPECT_EQ(persistence->Save(copy.Get(), FALSE), S_OK) << "elsewhere it can be saved";
    EXPECT_EQ(ContentsOf(copy), StreamForm(control));
  });
}

TEST(StorageInitNew, FailsWithTheMediumAndChangesNothing) {
  WithControl([](auto& control, auto& persistence) {
    PutValues(control, kOthers);
    FakeStorage storage;
    storage.medium.failing_call = 1;
    EXPECT_EQ(persistence->InitNew(&storage), STG_E_WRITEFAULT);
    EXPECT_EQ(ValuesOf(control), kOthers);
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    EXPECT_TRUE(storage.IsFree());
    EXPECT_EQ(persistence->InitNew(&storage), S_OK);
    EXPECT_EQ(ValuesOf(control).proxy_server, L"");
    EXPECT_EQ(ValuesOf(control).server_address, L"host") << "as any new control";
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

// Saves with the n-th call failing, n = 1, 2 ... until none does.
void SaveOnAFailingMedium(bool same, int expected_calls) {
  WithControl([&](auto& control, auto& persistence) {
    FakeStorage own(StorageOf(Some()));
    FakeStorage other;
    FakeStorage& target = same ? own : other;
    EXPECT_EQ(persistence->Load(&own), S_OK);
    PutValues(control, kOthers);
    int n = 1;
    for (;; ++n) {
      ASSERT_LT(n, 20);
      target.medium.calls = 0;
      target.medium.failing_call = n;
      const HRESULT result = persistence->Save(&target, same);
      if (result == S_OK) break;
      EXPECT_EQ(result, STG_E_WRITEFAULT) << n;
      EXPECT_EQ(persistence->IsDirty(), S_OK) << n;
      EXPECT_EQ(persistence->SaveCompleted(nullptr), E_UNEXPECTED) << n;
      EXPECT_EQ(ValuesOf(control), kOthers) << n;
      EXPECT_EQ(other.medium.open_streams, 0) << n;
      EXPECT_EQ(own.medium.open_streams, 1) << n;
    }
    EXPECT_EQ(n, expected_calls + 1) << "every call was met";
    target.medium.failing_call = 0;
    EXPECT_EQ(persistence->SaveCompleted(same ? nullptr : &other), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_EQ(ContentsOf(target.real), StreamForm(control));
  });
}

TEST(StorageSave, FailsWithTheMediumAtEachCall) {
  SaveOnAFailingMedium(true, 3);   // takes the room, goes to the front, writes
  SaveOnAFailingMedium(false, 4);  // and before that makes the stream
}

TEST(StorageSave, LeavesTheOldBytesWhereThereIsNoRoomForMore) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage(StorageOf(Some()));
    const ByteVector before = ContentsOf(storage.real);
    EXPECT_EQ(persistence->Load(&storage), S_OK);
    PutValues(control, kOthers);
    storage.medium.room = before.size();
    EXPECT_EQ(persistence->Save(&storage, TRUE), STG_E_MEDIUMFULL);
    EXPECT_EQ(persistence->IsDirty(), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    EXPECT_EQ(ContentsOf(storage.real), before);
  });
}

TEST(StorageSaveCompleted, StaysWhereItIsWhenTheNewStorageFails) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage own(StorageOf(Some()));
    FakeStorage next;
    EXPECT_EQ(persistence->Load(&own), S_OK);
    PutValues(control, kOthers);
    EXPECT_EQ(persistence->Save(&next, FALSE), S_OK);
    for (const bool hands_off : {false, true}) {
      if (hands_off) {
        EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
      }
      next.medium.calls = 0;
      next.medium.failing_call = 1;
      next.medium.failure = E_OUTOFMEMORY;
      EXPECT_EQ(persistence->SaveCompleted(&next), E_OUTOFMEMORY);
      EXPECT_TRUE(next.IsFree());
      EXPECT_EQ(own.IsFree(), hands_off);
      EXPECT_EQ(persistence->IsDirty(), S_OK);
    }
    EXPECT_EQ(persistence->Save(&next, FALSE), E_UNEXPECTED) << "hands are still off";
    FakeStorage empty;
    EXPECT_EQ(persistence->SaveCompleted(&empty), STG_E_FILENOTFOUND) << "holds no copy";
    EXPECT_EQ(persistence->SaveCompleted(&next), S_OK) << "with memory again";
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

// A container runs inside every call of its storages. What it may do there, besides: put.
TEST(StorageCalls, MayPutFromWithin) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage;
    EXPECT_EQ(persistence->InitNew(&storage), S_OK);
    SHORT port = 0;
    storage.medium.on_call = [&] { EXPECT_EQ(control->put_ServerPort(++port), S_OK); };
    EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_OK) << "the last value is saved nowhere";
    storage.medium.on_call = nullptr;
    EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK);
    EXPECT_EQ(persistence->IsDirty(), S_FALSE);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageCalls, MayTakeTheStorageAway) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage storage;
    EXPECT_EQ(persistence->InitNew(&storage), S_OK);
    PutValues(control, kOthers);
    storage.medium.on_call = [&] { EXPECT_EQ(persistence->HandsOffStorage(), S_OK); };
    EXPECT_EQ(persistence->Save(&storage, TRUE), S_OK) << "its stream lives on over the call";
    storage.medium.on_call = nullptr;
    EXPECT_TRUE(storage.IsFree());
    EXPECT_EQ(ContentsOf(storage.real), StreamForm(control));
    EXPECT_EQ(persistence->Save(&storage, TRUE), E_UNEXPECTED);
    EXPECT_EQ(persistence->SaveCompleted(&storage), S_OK);
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageCalls, MayTakeTheStorageAwayBeforeItIsHeld) {
  for (const bool is_new : {true, false}) {
    WithControl([&](auto&, auto& persistence) {
      FakeStorage storage(StorageOf(kOthers));
      storage.medium.on_call = [&] { EXPECT_EQ(persistence->HandsOffStorage(), S_OK); };
      EXPECT_EQ(is_new ? persistence->InitNew(&storage) : persistence->Load(&storage), S_OK);
      EXPECT_TRUE(storage.IsFree());
      storage.medium.on_call = nullptr;
      EXPECT_EQ(persistence->SaveCompleted(&storage), S_OK);
      EXPECT_FALSE(storage.IsFree());
      EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
    });
  }
}

TEST(StorageCalls, MayLoadAnotherStorage) {
  WithControl([](auto& control, auto& persistence) {
    FakeStorage outer(StorageOf(kOthers));
    FakeStorage inner(StorageOf(Some()));
    outer.medium.on_call = [&] {
      outer.medium.on_call = nullptr;
      EXPECT_EQ(persistence->Load(&inner), S_OK);
    };
    EXPECT_EQ(persistence->Load(&outer), S_OK);
    EXPECT_EQ(ValuesOf(control), kOthers) << "the one that ends last";
    EXPECT_TRUE(inner.IsFree());
    EXPECT_FALSE(outer.IsFree());
    EXPECT_EQ(persistence->HandsOffStorage(), S_OK);
  });
}

TEST(StorageCalls, MayGiveBackTheLastReference) {
  for (const int which : {0, 1, 2, 3}) {
    OnApartmentThread([which] {
      const Module module;
      FakeStorage own(StorageOf(Some()));
      FakeStorage other(StorageOf(kOthers));
      IPersistStorage* last = nullptr;
      {
        const auto control = module.CreateControl();
        last = control.As<IPersistStorage>().Get();
        last->AddRef();
      }
      if (which >= 2) {
        EXPECT_EQ(last->Load(&own), S_OK);
      }
      if (which == 3) {
        EXPECT_EQ(last->Save(&other, FALSE), S_OK);
      }
      ULONG left = 0;
      for (FakeStorage* storage : {&own, &other}) {
        storage->medium.on_call = [&] {
          own.medium.on_call = nullptr;
          other.medium.on_call = nullptr;
          left = last->Release();
        };
      }
      const HRESULT result = which == 0   ? last->InitNew(&own)
                             : which == 1 ? last->Load(&own)
                             : which == 2 ? last->Save(&own, TRUE)
                                          : last->SaveCompleted(&other);
      EXPECT_EQ(result, S_OK) << which;
      EXPECT_EQ(left, 1U) << "held by the call itself, " << which;
      EXPECT_TRUE(own.IsFree()) << which;
      EXPECT_TRUE(other.IsFree()) << which;
      EXPECT_EQ(module.CanUnloadNow(), S_OK) << which;
    });
  }
}

}  // namespace
}  // namespace quorvane::component::storage_test
