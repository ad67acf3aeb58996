/// The typecodes of the chunks that object records consist of.
#pragma once

namespace kernel_detail {

/// Set: the header holds a value and there is no body.
constexpr unsigned int kShortChunkBit = 0x80000000u;
/// Set in a long chunk: the last four bytes of the body are a checksum.
constexpr unsigned int kChecksumBit = 0x00008000u;

constexpr unsigned int kObjectChunk = 0x00027ffau;
constexpr unsigned int kClassIdChunk = 0x0002fffbu;
constexpr unsigned int kClassDataChunk = 0x0002fffcu;
constexpr unsigned int kObjectEndChunk = 0x80027fffu;
constexpr unsigned int kAnonymousChunk = 0x40008000u;

}  // namespace kernel_detail
