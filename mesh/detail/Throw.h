#pragma once

namespace Vr::detail {

// Every exception text of the module, once. The texts are part of the interface: hosts compare them,
// so the standard library's own wording never leaks through.

/// Throws `std::length_error` "vector too long".
[[noreturn]] void ThrowVectorTooLong();
/// Throws `std::length_error` "string too long".
[[noreturn]] void ThrowStringTooLong();
/// Throws `std::length_error` "unordered_map/set too long".
[[noreturn]] void ThrowUnorderedMapTooLong();
/// Throws `std::out_of_range` "invalid vector subscript".
[[noreturn]] void ThrowInvalidSubscript();
/// Throws `std::runtime_error` "conrer index not found".
///
/// - Deliberate: the text is spelled this way.
[[noreturn]] void ThrowCornerNotFound();
/// Throws `std::runtime_error` "invalid archive position".
[[noreturn]] void ThrowInvalidArchivePosition();

}  // namespace Vr::detail
