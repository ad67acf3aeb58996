// A document that the library stored, damaged as the input says: nearer to the truth than bytes at
// random, so that damage to numbers and counts deep in a document is tried.

#include <algorithm>

#include "Fuzz.h"
#include "support/CheckedDocuments.h"
#include "support/ConsistentDocument.h"

namespace {

using namespace Vr::test;
using Vr::fuzz::Choices;

void Damage(Choices& choices, Bytes& bytes) {
    const auto kind = choices.Take<std::uint8_t>();
    const std::size_t place = choices.Below(bytes.size());
    const std::size_t size =
        std::min<std::size_t>(choices.Take<std::uint8_t>(), bytes.size() - place);
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(place);
    const auto end = begin + static_cast<std::ptrdiff_t>(size);
    switch (kind % 4) {
        case 0:
            bytes[place] = static_cast<BYTE>(size);
            break;
        case 1: {
            const auto number = choices.Take<std::uint64_t>();
            std::memcpy(bytes.data() + place, &number,
                        std::min<std::size_t>(8, bytes.size() - place));
            break;
        }
        case 2:
            bytes.erase(begin, end);
            break;
        default: {
            const Bytes piece(begin, end);
            const std::size_t target = choices.Below(bytes.size());
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(target), piece.begin(),
                         piece.end());
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
    Choices choices(bytes, byteCount);
    Random random(choices.Take<std::uint32_t>());
    Bytes document = StoredObjects(ConsistentDocument(random));
    if (!Vr::CheckDocument(document.data(), document.size()).IsSafe())
        Vr::fuzz::Fail("a stored document is not safe");
    for (int left = 16; left > 0 && !choices.IsEmpty() && !document.empty(); --left)
        Damage(choices, document);
    const Vr::CheckReport report = Vr::CheckDocument(document.data(), document.size());
    const ::testing::AssertionResult loads = LoadsAsReported(document, report);
    if (!loads)
        Vr::fuzz::Fail(loads.message());
    return 0;
}
