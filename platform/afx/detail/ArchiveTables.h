/// What an archive remembers of the classes and objects that went through it.
#pragma once

#include <unordered_map>
#include <vector>

#include "AfxObject.h"

/// The numbers given out while storing, by the address of the object or class record.
struct AfxStoreTable {
    std::unordered_map<const void*, UINT> numberOf;
};

/// What each number stands for while loading. Entry 0 is the null object.
struct AfxLoadTable {
    struct Entry {
        CObject* object;
        CRuntimeClass* runtimeClass;
    };
    std::vector<Entry> entries;
};

/// Stored schemas of versionable classes that differ from the class's own, while loading.
struct AfxSchemaTable {
    std::unordered_map<const CRuntimeClass*, UINT> storedSchemaOf;
};
