// Runs a fuzz target on stored inputs, where no fuzzer is linked: each argument is a file, or a folder
// of files.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "Fuzz.h"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& path) {
    std::vector<fs::path> files;
    if (!fs::is_directory(path))
        return {path};
    for (const fs::directory_entry& entry : fs::directory_iterator(path))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

void Run(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        Vr::fuzz::Fail(("cannot read " + path.string()).c_str());
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
    std::printf("%s\n", path.string().c_str());
    std::fflush(stdout);  // names the input of a crash
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int argumentCount, char** arguments) {
    std::size_t runCount = 0;
    for (int argument = 1; argument < argumentCount; ++argument)
        for (const fs::path& file : FilesOf(arguments[argument])) {
            Run(file);
            ++runCount;
        }
    std::printf("%zu inputs\n", runCount);
    return runCount > 0 ? 0 : 1;
}
