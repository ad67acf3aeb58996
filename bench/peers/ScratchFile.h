/// A file name of this process for one contestant.
#pragma once

#include <string>

namespace Vr::bench::peers {

/// Removes the file of its name when it goes.
class ScratchFile {
public:
    /// The file lies in VERIDANE_BENCH_FOLDER, by default a folder in memory.
    explicit ScratchFile(const std::string& extension);
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

private:
    std::string path_;
};

}  // namespace Vr::bench::peers
