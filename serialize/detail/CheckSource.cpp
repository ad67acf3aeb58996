// A window over the file that moves forward only. What is passed over without reading is passed over
// in the file too, so that a document of large coordinate arrays costs a few seeks.

#include "serialize/detail/CheckSource.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace Vr::detail {

namespace {
constexpr uint64_t kPieceBytes = uint64_t{256} << 10;
}

CheckSource::CheckSource(CFile& file)
    : file_(&file),
      position_(file.GetPosition()),
      end_((std::max)(static_cast<uint64_t>(file.GetLength()), position_)) {
    bufferSize_ =
        static_cast<size_t>(std::clamp<uint64_t>(Remaining(), uint64_t{kLargestUnit}, kPieceBytes));
    buffer_.reset(new BYTE[bufferSize_]);
}

CheckSource::CheckSource(const BYTE* bytes, size_t count)
    : next_(bytes), atHand_(count), end_(count) {}

CheckSource::Piece CheckSource::Take(size_t unit, uint64_t most) {
    assert(unit <= kLargestUnit && most % unit == 0);
    if (unit > Remaining())
        return {};
    if (atHand_ < unit)
        FetchAtLeast(unit);
    if (atHand_ < unit)
        return {};
    const Piece piece = {next_,
                         static_cast<size_t>((std::min<uint64_t>)(most, atHand_ - atHand_ % unit))};
    Advance(piece.count);
    return piece;
}

bool CheckSource::Skip(uint64_t count) {
    if (count > Remaining())
        return false;
    if (count <= atHand_) {
        Advance(static_cast<size_t>(count));
        return true;
    }
    position_ += count;
    atHand_ = 0;
    file_->Seek(static_cast<LONGLONG>(position_), CFile::begin);
    return true;
}

void CheckSource::FetchAtLeast(size_t count) {
    if (atHand_ > 0)
        std::memmove(buffer_.get(), next_, atHand_);
    next_ = buffer_.get();
    while (atHand_ < count) {
        const UINT got =
            file_->Read(buffer_.get() + atHand_, static_cast<UINT>(bufferSize_ - atHand_));
        if (got == 0) {
            end_ = position_ + atHand_;  // The file is shorter than it said.
            return;
        }
        atHand_ += got;
    }
}

void CheckSource::Advance(size_t count) {
    next_ += count;
    atHand_ -= count;
    position_ += count;
}

}  // namespace Vr::detail
