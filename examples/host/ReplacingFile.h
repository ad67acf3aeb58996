/// A file that takes the place of another only when it is complete.
#pragma once

#include <filesystem>

namespace Host {

/// Makes a temporary file beside a target and moves it over the target at the end.
///
///     ReplacingFile replacing("mug.vrd");
///     ... write and sync replacing.Path() ...
///     replacing.Commit();
///
/// Until `Commit` the target is as it was; destroyed without it, the temporary file is removed. A
/// process that is killed in between leaves the temporary file, whose name begins with a dot and
/// ends in ".tmp".
class ReplacingFile {
public:
    /// Creates the empty temporary file. A target that is a link is followed.
    ///
    /// - Throws: `Failure` for the target when it is there and no regular file, or when nothing can
    ///   be created beside it.
    explicit ReplacingFile(const std::filesystem::path& target);
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    /// Returns the temporary file, to be written, synced and closed by the caller.
    const std::filesystem::path& Path() const { return temporary_; }

    /// Moves the temporary file over the target and makes the move last.
    ///
    /// - Throws: `Failure` for the target; it is then as it was.
    void Commit();

private:
    std::filesystem::path shownTarget_;
    std::filesystem::path target_;
    std::filesystem::path temporary_;
    bool isCommitted_ = false;
};

}  // namespace Host
