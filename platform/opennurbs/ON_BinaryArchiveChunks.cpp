// Chunks: a header of typecode and length around a body. The length is not known when the header is
// written, so a zero holds its place until the chunk ends. Checksums run over the bytes between the
// headers and nested chunks, which is why each open chunk carries its own.
#include "ON_BinaryArchive.h"
#include "ON_Crc32.h"
#include "detail/Typecodes.h"

namespace {

// Deeper streams are damaged or hostile; each level costs stack in the reader.
constexpr size_t kDeepestNesting = 256;

// Longer chunks are damaged; skipping them would take seek after seek.
constexpr std::uint64_t kLongestChunk = std::uint64_t{1} << 40;

constexpr std::uint64_t kLongestSeek = 2147483632u;

// Every step back reads bytes again, and chunks that overlap can lead back so often that reading never
// ends. A damaged chunk takes one step.
constexpr int kMostStepsBack = 16;

bool IsShort(unsigned int typecode) noexcept {
    return (typecode & kernel_detail::kShortChunkBit) != 0;
}

bool HasChecksum(unsigned int typecode) noexcept {
    return !IsShort(typecode) && (typecode & kernel_detail::kChecksumBit) != 0;
}

}  // namespace

bool ON_BinaryArchive::SetArchive3dmVersion(int version) noexcept {
    m_3dmVersion = version;
    return true;
}

void ON_BinaryArchive::UpdateChecksum(size_t byteCount, const void* bytes) noexcept {
    Chunk& chunk = m_chunks.back();
    if (chunk.hasChecksum) {
        chunk.checksum = ON_CRC32(chunk.checksum, byteCount, bytes);
    }
}

bool ON_BinaryArchive::WriteRaw(size_t byteCount, const void* source) {
    return Write(byteCount, source) == byteCount;
}

bool ON_BinaryArchive::ReadRaw(size_t byteCount, void* destination) {
    return Read(byteCount, destination) == byteCount;
}

bool ON_BinaryArchive::WriteChunkLength(std::uint64_t length) {
    if (m_3dmVersion >= 50) {
        return WriteRaw(8, &length);
    }
    const auto shortLength = static_cast<std::uint32_t>(length);
    return WriteRaw(4, &shortLength);
}

bool ON_BinaryArchive::ReadChunkLength(std::uint64_t& length) {
    if (m_3dmVersion >= 50) {
        return ReadRaw(8, &length);
    }
    std::uint32_t shortLength = 0;
    const bool isRead = ReadRaw(4, &shortLength);
    length = shortLength;
    return isRead;
}

bool ON_BinaryArchive::SeekForward(std::uint64_t distance) {
    for (std::uint64_t left = distance; left > 0;) {
        const std::uint64_t step = left < kLongestSeek ? left : kLongestSeek;
        if (!SeekFromCurrentPosition(static_cast<int>(step))) {
            return false;
        }
        left -= step;
    }
    return true;
}

bool ON_BinaryArchive::SeekBackward(std::uint64_t distance) {
    for (std::uint64_t left = distance; left > 0;) {
        const std::uint64_t step = left < kLongestSeek ? left : kLongestSeek;
        if (!SeekFromCurrentPosition(-static_cast<int>(step))) {
            return false;
        }
        left -= step;
    }
    return true;
}

bool ON_BinaryArchive::BeginWrite3dmChunk(unsigned int typecode, int value) {
    const std::uint64_t lengthOrValue =
        IsShort(typecode) ? static_cast<std::uint64_t>(static_cast<std::int64_t>(value)) : 0;
    if (!WriteMode() || !WriteRaw(4, &typecode) || !WriteChunkLength(lengthOrValue)) {
        return false;
    }
    m_chunks.push_back({typecode, 0, CurrentPosition(), 0, HasChecksum(typecode)});
    return true;
}

bool ON_BinaryArchive::BeginWrite3dmChunk(unsigned int typecode, int major, int minor) {
    if (!BeginWrite3dmChunk(typecode, 0)) {
        return false;
    }
    if (!WriteInt(major) || !WriteInt(minor)) {
        EndWrite3dmChunk();
        return false;
    }
    return true;
}

bool ON_BinaryArchive::EndWrite3dmChunk() {
    if (m_chunks.empty()) {
        return false;
    }
    const Chunk chunk = m_chunks.back();
    m_chunks.pop_back();
    bool isWritten = true;
    if (!IsShort(chunk.typecode)) {
        isWritten = !chunk.hasChecksum || WriteRaw(4, &chunk.checksum);
        isWritten = WriteLengthOf(chunk) && isWritten;
    }
    if (m_chunks.empty()) {
        isWritten = Flush() && isWritten;
    }
    return isWritten;
}

bool ON_BinaryArchive::WriteLengthOf(const Chunk& chunk) {
    const std::uint64_t end = CurrentPosition();
    const std::uint64_t fieldSize = m_3dmVersion >= 50 ? 8 : 4;
    if (end < chunk.start) {
        return false;
    }
    const std::uint64_t length = end - chunk.start;
    if (fieldSize == 4 && length > 0xffffffffu) {
        return false;
    }
    return SeekBackward(length + fieldSize) && WriteChunkLength(length) && SeekForward(length) &&
           CurrentPosition() == end;
}

bool ON_BinaryArchive::BeginRead3dmChunk(unsigned int* typecode, std::int64_t* lengthOrValue) {
    *typecode = 0;
    *lengthOrValue = 0;
    std::uint64_t length = 0;
    if (!ReadMode() || m_chunks.size() >= kDeepestNesting || !ReadRaw(4, typecode) ||
        !ReadChunkLength(length)) {
        return false;
    }
    if (IsShort(*typecode)) {
        *lengthOrValue = m_3dmVersion >= 50
                             ? static_cast<std::int64_t>(length)
                             : static_cast<std::int32_t>(static_cast<std::uint32_t>(length));
        length = 0;
    } else if (length > kLongestChunk) {
        return false;
    } else {
        *lengthOrValue = static_cast<std::int64_t>(length);
    }
    if (m_chunks.empty()) {
        m_stepsBack = 0;
    }
    m_chunks.push_back({*typecode, length, CurrentPosition(), 0, HasChecksum(*typecode)});
    return true;
}

bool ON_BinaryArchive::BeginRead3dmChunk(unsigned int expectedTypecode, int* major, int* minor) {
    unsigned int typecode = 0;
    std::int64_t length = 0;
    if (!BeginRead3dmChunk(&typecode, &length)) {
        return false;
    }
    if (typecode != expectedTypecode || !ReadInt(major) || !ReadInt(minor)) {
        EndRead3dmChunk();
        return false;
    }
    return true;
}

bool ON_BinaryArchive::EndRead3dmChunk() {
    if (m_chunks.empty()) {
        return false;
    }
    const Chunk chunk = m_chunks.back();
    m_chunks.pop_back();
    const std::uint64_t end = chunk.start + chunk.length;
    std::uint64_t position = CurrentPosition();
    if (chunk.hasChecksum && position + 4 == end) {
        std::uint32_t checksum = 0;
        if (!ReadRaw(4, &checksum)) {
            return false;
        }
        m_badCrcCount += checksum != chunk.checksum ? 1 : 0;
        position = end;
    }
    if (position < end) {
        return SeekForward(end - position);
    }
    return position == end || StepBack(end);
}

bool ON_BinaryArchive::StepBack(std::uint64_t position) {
    // The outermost chunk always gets to its end; what comes behind it is not read for it.
    const bool isOutermost = m_chunks.empty();
    return (isOutermost || ++m_stepsBack <= kMostStepsBack) &&
           SeekFromStart(static_cast<size_t>(position));
}
