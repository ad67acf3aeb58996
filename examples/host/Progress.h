/// The progress of loading and storing, and the way to stop a load.
#pragma once

#include <afx.h>

#include <chrono>
#include <string>

#include "serialize/VrwSerializeObserver.h"

namespace Host {

/// Shows how far a document has come: a bar on a terminal, elsewhere a plain line a second from the
/// first second on. Both go to the standard error stream.
///
/// As the observer of an archive it is asked once before each object. So a document of many objects
/// moves the bar and can be cancelled between any two of them, and a document of one object does
/// neither while that object is being loaded.
class Progress final : public Vr::VrwSerializeObserver {
public:
    /// `title` stands in front, as in "loading mug.vrd".
    explicit Progress(std::string title);
    /// Takes the bar off the terminal.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Answers whether Ctrl-C was pressed.
    bool IsCanceled() override;
    /// Shows the share of `position` in `length`; cheap enough to be called for every object.
    void OnProgress(ULONGLONG position, ULONGLONG length) override;

private:
    using Clock = std::chrono::steady_clock;

    void DrawBar(int percent) const;

    std::string title_;
    bool isTerminal_;
    bool isBarShown_ = false;
    int shownPercent_ = -1;
    Clock::time_point nextLine_;
};

}  // namespace Host
