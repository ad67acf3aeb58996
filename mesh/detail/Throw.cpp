#include "mesh/detail/Throw.h"

#include <stdexcept>

namespace Vr::detail {

void ThrowVectorTooLong() {
    throw std::length_error("vector too long");
}

void ThrowStringTooLong() {
    throw std::length_error("string too long");
}

void ThrowUnorderedMapTooLong() {
    throw std::length_error("unordered_map/set too long");
}

void ThrowInvalidSubscript() {
    throw std::out_of_range("invalid vector subscript");
}

void ThrowCornerNotFound() {
    throw std::runtime_error("conrer index not found");
}

void ThrowInvalidArchivePosition() {
    throw std::runtime_error("invalid archive position");
}

}  // namespace Vr::detail
