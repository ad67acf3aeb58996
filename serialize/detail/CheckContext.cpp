// Reading with an end: every step that wants more than there is ends the check with a finding.

#include "serialize/detail/CheckContext.h"

#include <algorithm>

namespace Vr::detail {

bool CheckContext::Read(void* target, size_t byteCount) {
    if (!canGoOn_)
        return false;
    if (byteCount > Remaining())
        return StopAtEnd(byteCount);
    const uint64_t offset = Position();
    auto* bytes = static_cast<BYTE*>(target);
    while (byteCount > 0) {
        const auto piece = Take(1, byteCount);
        if (piece.count == 0)
            return false;
        std::memcpy(bytes, piece.bytes, piece.count);
        bytes += piece.count;
        byteCount -= piece.count;
    }
    lastOffset_ = offset;
    return true;
}

bool CheckContext::Skip(uint64_t byteCount) {
    if (!canGoOn_)
        return false;
    lastOffset_ = Position();
    return source_.Skip(byteCount) || StopAtEnd(byteCount);
}

CheckSource::Piece CheckContext::Take(size_t unit, uint64_t most) {
    if (!canGoOn_)
        return {};
    lastOffset_ = Position();
    const CheckSource::Piece piece = source_.Take(unit, most);
    if (piece.count == 0)
        StopAtEnd(unit);
    return piece;
}

bool CheckContext::StopAtEnd(uint64_t wanted) {
    return Stop(CheckCode::EndOfStream, Position(), [&] {
        return "the stream ends " + std::to_string(Remaining()) + " bytes into a value of " +
               std::to_string(wanted);
    });
}

bool CheckContext::Count(CheckCode code) {
    ++report_.findingCount;
    report_.worst = (std::max)(report_.worst, SeverityOf(code));
    return report_.findings.size() < limits_.findings;
}

}  // namespace Vr::detail
