/// A file for benchmarks that store and load.
#pragma once

#include <afx.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace Vr::bench {

/// A file that is created for one benchmark and removed after it, in the folder
/// VERIDANE_BENCH_FOLDER, by default one in memory.
class ScratchFile {
public:
    ScratchFile() {
        const char* const folder = std::getenv("VERIDANE_BENCH_FOLDER");
        path_ = std::string(folder ? folder : "/dev/shm") + "/veridane-bench-" +
                std::to_string(getpid());
        file_.Open(path_.c_str(), CFile::modeCreate | CFile::modeReadWrite);
    }
    ~ScratchFile() {
        file_.Close();
        CFile::Remove(path_.c_str());
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    CFile& operator*() { return file_; }
    CFile* operator->() { return &file_; }

private:
    std::string path_;
    CFile file_;
};

}  // namespace Vr::bench
