// The order that survives a power cut: the caller syncs the content, then the name is exchanged in
// one step, then the folder is synced so that the exchange is on the disk too.

#include "ReplacingFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "Failure.h"

namespace Host {

namespace {

namespace fs = std::filesystem;

fs::path FolderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

// The file that a write to `target` would reach.
fs::path ResolvedTarget(const fs::path& target) {
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(target, error)))
        return target;
    fs::path resolved = fs::weakly_canonical(target, error);
    if (error)
        throw Failure(target, error.message());
    return resolved;
}

// Creates a file that was not there before and returns whether that went well.
bool CreateNew(const fs::path& file, mode_t mode) {
    const int descriptor = open(file.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, mode);
    return descriptor >= 0 && close(descriptor) == 0;
}

}  // namespace

ReplacingFile::ReplacingFile(const fs::path& target)
    : shownTarget_(target), target_(ResolvedTarget(target)) {
    struct stat status = {};
    const bool targetExists = stat(target_.c_str(), &status) == 0;
    if (targetExists && !S_ISREG(status.st_mode))
        throw Failure(shownTarget_, "not a regular file");

    const std::string stem = "." + target_.filename().string() + "." + std::to_string(getpid());
    int attempt = 0;
    do {
        temporary_ = FolderOf(target_) / (stem + "." + std::to_string(attempt) + ".tmp");
        if (CreateNew(temporary_, 0666)) {
            // Who could read the old file can read the new one.
            if (targetExists)
                static_cast<void>(chmod(temporary_.c_str(), status.st_mode & 07777));
            return;
        }
        ++attempt;
    } while (errno == EEXIST);
    throw Failure(shownTarget_, SystemErrorText(errno));
}

ReplacingFile::~ReplacingFile() {
    if (!isCommitted_)
        unlink(temporary_.c_str());
}

void ReplacingFile::Commit() {
    if (rename(temporary_.c_str(), target_.c_str()) != 0)
        throw Failure(shownTarget_, SystemErrorText(errno));
    isCommitted_ = true;
    // The exchange is done; a folder that cannot be synced, on some network, does not undo it.
    const int folder = open(FolderOf(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder >= 0) {
        fsync(folder);
        close(folder);
    }
}

}  // namespace Host
