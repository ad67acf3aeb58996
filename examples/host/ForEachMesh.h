/// Meshes among the objects of a document, with the numbers that users know them by.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include "Document.h"

namespace Host {

/// Calls `visit(mesh, object)` for each mesh, in order; `object` counts all objects from 0.
template <class Visit>
void ForEachMesh(const Document& document, const Visit& visit) {
    for (size_t object = 0; object < document.objects.size(); ++object)
        if (const Mesh* const mesh = std::get_if<Mesh>(&document.objects[object]))
            visit(**mesh, object);
}

/// Throws `std::runtime_error` for an object, whose number is printed counted from 1.
[[noreturn]] inline void ThrowForObject(size_t object, const std::string& reason) {
    throw std::runtime_error("object " + std::to_string(object + 1) + ": " + reason);
}

}  // namespace Host
