// Any bytes as a row of stored objects: the check says what loading does, from memory and from a file
// alike, and what it calls safe can be worked on with every operation.

#include "Fuzz.h"
#include "support/CheckedDocuments.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t byteCount) {
    using namespace Vr::test;
    const Bytes document(bytes, bytes + byteCount);
    const Vr::CheckReport report = Vr::CheckDocument(document.data(), document.size());
    MemoryFile file(document);
    file.LimitReads(100);
    const Vr::CheckReport ofFile = Vr::CheckDocument(file);
    if (ofFile.findingCount != report.findingCount || ofFile.worst != report.worst ||
        ofFile.readCount != report.readCount)
        Vr::fuzz::Fail("a file is checked otherwise than memory");
    const ::testing::AssertionResult loads = LoadsAsReported(document, report);
    if (!loads)
        Vr::fuzz::Fail(loads.message());
    return 0;
}
