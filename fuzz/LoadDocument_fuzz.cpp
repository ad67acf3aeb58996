// Any bytes as a row of stored objects. They load until an exception of loading comes, whatever they
// are, and are released. The check says what loading does, from memory and from a file alike, and what it
// calls safe can be worked on with every operation.

#include "Fuzz.h"
#include "support/CheckedDocuments.h"
#include "support/HostileLoading.h"

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
    const LoadedToTheEnd end = LoadToTheEnd(document);
    if (!IsOfLoading(end.caught))
        Vr::fuzz::Fail("loading ends in an exception that is not its own");
    const ::testing::AssertionResult loads = LoadsAsReported(document, report);
    if (!loads)
        Vr::fuzz::Fail(loads.message());
    return 0;
}
