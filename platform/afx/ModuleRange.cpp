// The loader is asked for its list of modules; each names the segments it has mapped.
#include "detail/ModuleRange.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <link.h>
#endif

#include <algorithm>

namespace afx::detail {

#if defined(_WIN32)

MemoryRange ModuleRangeOf(const void* address) {
    HMODULE module = nullptr;
    const DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(flags, static_cast<LPCWSTR>(address), &module)) {
        return {};
    }
    const auto base = reinterpret_cast<std::uintptr_t>(module);
    const auto* const dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        base + static_cast<std::uintptr_t>(dosHeader->e_lfanew));
    return {base, base + headers->OptionalHeader.SizeOfImage};
}

#else

namespace {

struct Search {
    const void* address;
    MemoryRange found;
};

// Called for each module; nonzero ends the search.
int CompareModule(dl_phdr_info* info, std::size_t, void* data) {
    auto& search = *static_cast<Search*>(data);
    MemoryRange range{UINTPTR_MAX, 0};
    for (std::size_t segment = 0; segment < info->dlpi_phnum; ++segment) {
        const auto& header = info->dlpi_phdr[segment];
        if (header.p_type == PT_LOAD) {
            const std::uintptr_t start = info->dlpi_addr + header.p_vaddr;
            range.begin = (std::min)(range.begin, start);
            range.end = (std::max)(range.end, start + header.p_memsz);
        }
    }
    if (!range.Contains(search.address)) {
        return 0;
    }
    search.found = range;
    return 1;
}

}  // namespace

MemoryRange ModuleRangeOf(const void* address) {
    Search search{address, {}};
    dl_iterate_phdr(CompareModule, &search);
    return search.found;
}

#endif

}  // namespace afx::detail
