#include "peers/ScratchFile.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace Vr::bench::peers {

ScratchFile::ScratchFile(const std::string& extension) {
    static int count = 0;
    const char* const folder = std::getenv("VERIDANE_BENCH_FOLDER");
    path_ = std::string(folder ? folder : "/dev/shm") + "/veridane-bench-" +
            std::to_string(getpid()) + "-" + std::to_string(++count) + extension;
}

ScratchFile::~ScratchFile() {
    std::remove(path_.c_str());
}

}  // namespace Vr::bench::peers
