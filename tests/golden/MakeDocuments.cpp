// Makes files of the golden documents. What is there stays as it is: versions to come must read what
// this one has read, so a document is never replaced by another of its name.
//   make_golden_documents <folder>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "golden/Documents.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

Bytes Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void Write(const fs::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + path.string());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2)
        return 2;
    const fs::path folder = arguments[1];
    fs::create_directories(folder);
    int result = 0;
    for (const Vr::golden::Document& document : Vr::golden::AllDocuments()) {
        const fs::path path = folder / (document.name + ".bin");
        if (!fs::exists(path)) {
            Write(path, document.script.Bytes());
            std::printf("%s: %zu bytes\n", path.string().c_str(), document.script.Bytes().size());
        } else if (Content(path) != document.script.Bytes()) {
            std::printf("%s: differs and is left alone\n", path.string().c_str());
            result = 1;
        }
    }
    return result;
}
