/// The files of tests/golden/documents.
#pragma once

#include <afx.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

namespace Vr::golden {

/// The names of the files, without ".bin". Anything else in the folder comes with its extension.
inline std::set<std::string> DocumentNames() {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(VERIDANE_GOLDEN_FOLDER)) {
        const std::filesystem::path& path = entry.path();
        names.insert((path.extension() == ".bin" ? path.stem() : path.filename()).string());
    }
    return names;
}

/// The bytes of one; none where there is no such file.
inline std::vector<BYTE> DocumentBytes(const std::string& name) {
    std::ifstream file(std::string(VERIDANE_GOLDEN_FOLDER "/") + name + ".bin", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace Vr::golden
