#pragma once

#include <cstddef>
#include <cstdint>

namespace brightsweep {

/// CRC-64 with the Jones polynomial, reflected on both sides, started from all ones, without a
/// final change; the nine digits 1 to 9 give 0xCAA717168609F281. Stateless and safe from every
/// thread. All forms of the fold give the same value; fold() takes the fastest that this processor
/// has.
class crc {
public:
    static constexpr std::uint64_t start = ~std::uint64_t(0);

    /// The checksum of one buffer: 0 for a missing one, all ones for a size of 0 or below.
    static std::uint64_t crc64(const void *buffer, std::int32_t bufferSize);
    /// One step of a checksum over several buffers: from all ones at the head, else from `running`.
    /// 0 for a missing buffer.
    static std::uint64_t crc64Buffer(const void *buffer, std::int32_t buffSize, bool isHead,
                                     std::uint64_t running);

    static std::uint64_t fold(std::uint64_t value, const void *data, std::size_t size);
    /// Folds in that many zero bytes, in a time that does not grow with their number.
    static std::uint64_t foldZeros(std::uint64_t value, std::uint64_t count);

    /// The forms behind fold(), one byte and sixteen bytes a step.
    static std::uint64_t foldByBytes(std::uint64_t value, const void *data, std::size_t size);
    static std::uint64_t foldBySixteen(std::uint64_t value, const void *data, std::size_t size);
    /// By carry-less multiplication; only where hasCarryless().
    static std::uint64_t foldCarryless(std::uint64_t value, const void *data, std::size_t size);
    static bool hasCarryless();
    /// The same in registers of twice the width; only where hasWide().
    static std::uint64_t foldWide(std::uint64_t value, const void *data, std::size_t size);
    static bool hasWide();
};

} // namespace brightsweep
