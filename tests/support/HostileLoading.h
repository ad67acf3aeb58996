/// Loading any bytes, whatever a check says of them.
#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "support/Caught.h"
#include "support/FailingAllocation.h"
#include "support/StoreLoad.h"

namespace Vr::test {

/// Runs where no allocation may be larger than a mebibyte: more than a reader takes before content
/// has come, and less than many a false count asks for.
template <class Code>
Caught CaughtWithLittleMemory(const Code& code) {
    const LimitAllocation limit(std::size_t{1} << 20);
    return CaughtFrom(code);
}

/// Returns whether loading may end so.
inline bool IsOfLoading(const Caught& caught) {
    static const std::set<std::string> kKinds = {"", "CArchiveException", "std::length_error",
                                                 "std::bad_alloc"};
    return kKinds.count(caught.kind) == 1;
}

/// How a row of objects came to its end, which it does at the latest with the stream.
struct LoadedToTheEnd {
    Caught caught;
    std::size_t readCount = 0;
};

/// Loads objects with little memory until one fails, and releases them all.
inline LoadedToTheEnd LoadToTheEnd(const Bytes& bytes) {
    LoadedToTheEnd end;
    // They keep the objects that a later number may lead to.
    const CreatedMeshes created;
    LoadedFrom stream(bytes);
    end.caught = CaughtWithLittleMemory([&] {
        for (;; ++end.readCount)
            stream.Next();
    });
    return end;
}

}  // namespace Vr::test
