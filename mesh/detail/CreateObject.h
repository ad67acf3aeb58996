#pragma once

#include <afx.h>

#include <new>

namespace Vr::detail {

/// The schema number that streams carry behind each class name.
constexpr UINT kStreamSchema = 16;

/// Creates an object for a run-time class record; answers null when memory is short.
///
/// The platform's `operator new` throws `CMemoryException*` under MFC and `std::bad_alloc` elsewhere;
/// a record's creation function answers null in both cases.
template <class Object>
[[nodiscard]] CObject* CreateObjectOrNull() {
    try {
        return new Object;
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (CMemoryException* exception) {
        exception->Delete();
        return nullptr;
    }
}

}  // namespace Vr::detail
