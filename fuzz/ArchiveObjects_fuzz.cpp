// The platform layer's grammar of objects and classes: an input is a list of calls and the stream they
// read. Each call gives an object that lives and is of the wanted class, or an exception.

#include <afx.h>

#include "Fuzz.h"
#include "support/MemoryFile.h"
#include "unit/platform/afx/TestClasses.h"

namespace {

using Vr::fuzz::Choices;

// Nodes nest, and each level takes stack.
constexpr std::size_t kLongestInput = 4096;
constexpr std::size_t kCallBytes = 32;

const CRuntimeClass* WantedClass(Choices& choices) {
    switch (choices.Take<BYTE>() % 4) {
        case 0:
            return RUNTIME_CLASS(CTestNode);
        case 1:
            return RUNTIME_CLASS(CTestItem);
        case 2:
            return RUNTIME_CLASS(CObject);  // cannot be stored
        default:
            return nullptr;
    }
}

void ReadObject(CArchive& archive, const CRuntimeClass* wanted) {
    CObject* const object = archive.ReadObject(wanted);
    if (object != nullptr && wanted != nullptr && !object->IsKindOf(wanted))
        Vr::fuzz::Fail("an object of another class than wanted");
}

void ReadClass(CArchive& archive, const CRuntimeClass* wanted) {
    UINT schema = 0;
    DWORD tag = 0;
    const CRuntimeClass* const found = archive.ReadClass(wanted, &schema, &tag);
    if (found != nullptr && wanted != nullptr && !found->IsDerivedFrom(wanted))
        Vr::fuzz::Fail("another class than wanted");
}

void Call(Choices& choices, CArchive& archive) {
    BYTE bytes[300];
    switch (choices.Take<BYTE>() % 8) {
        case 0:
        case 1:
        case 2:
            ReadObject(archive, WantedClass(choices));
            return;
        case 3:
            ReadClass(archive, WantedClass(choices));
            return;
        case 4:
            archive.SerializeClass(WantedClass(choices));
            return;
        case 5:
            archive.MapObject(new CTestEmpty);
            return;
        case 6:
            archive.Read(bytes, choices.Take<BYTE>());
            return;
        default:
            archive.Flush();
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
    if (byteCount < kCallBytes || byteCount > kLongestInput)
        return 0;
    const LoadedObjectsGuard guard;
    Choices choices(bytes, kCallBytes);
    Vr::test::MemoryFile file(std::vector<BYTE>(bytes + kCallBytes, bytes + byteCount));
    file.LimitReads(1u + choices.Take<BYTE>());
    try {
        CArchive archive(&file, CArchive::load, 128);
        while (!choices.IsEmpty())
            Call(choices, archive);
    } catch (CException* exception) {
        exception->Delete();
    }
    return 0;
}
