#pragma once

#include <cstdint>
#include <memory>

#include "serialize/VrmArchive.h"

namespace Vr::detail {

/// The shared-array envelope: presence, array number and, at the first meeting, the content.
///
/// An array is known by its address while storing and by its number while loading; all array types
/// of an archive share one sequence of numbers.
class SharedArrayAccess {
public:
    /// Stores one handle; `writeContent(array)` runs when this archive meets the array first.
    template <class Array, class WriteContent>
    static void Write(VrmArchive& archive, const std::shared_ptr<Array>& handle,
                      const WriteContent& writeContent) {
        archive << static_cast<BYTE>(handle ? 1 : 0);
        if (!handle)
            return;
        auto& numberOf = archive.numberOfWrittenArray_;
        const auto known = numberOf.find(handle.get());
        if (known != numberOf.end()) {
            archive << static_cast<ULONGLONG>(known->second);
            return;
        }
        const uint64_t number = numberOf.size() + 1;
        numberOf.emplace(handle.get(), number);
        archive << static_cast<ULONGLONG>(number);
        writeContent(*handle);
    }

    /// Loads one handle; `readContent(array)` fills a new array, which is installed and recorded
    /// before its content comes.
    ///
    /// - Deliberate: a presence byte other than 1 means an empty handle, and the element type behind
    ///   a known number is not checked.
    template <class Array, class ReadContent>
    static void Read(VrmArchive& archive, std::shared_ptr<Array>& handle,
                     const ReadContent& readContent) {
        BYTE presence = 0;
        archive >> presence;
        if (presence != 1) {
            handle.reset();
            return;
        }
        ULONGLONG number = 0;
        archive >> number;
        auto& arrayOf = archive.readArrayOfNumber_;
        const auto known = arrayOf.find(number);
        if (known != arrayOf.end()) {
            handle = std::static_pointer_cast<Array>(known->second);
            return;
        }
        const auto array = std::make_shared<Array>();
        handle = array;
        arrayOf.emplace(number, array);
        readContent(*array);
    }
};

}  // namespace Vr::detail
