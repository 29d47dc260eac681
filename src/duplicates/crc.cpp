#include "duplicates/crc.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace brightsweep {

namespace {

// Bit 63 stands for the power 0 and bit 0 for the power 63, in this and in every other value.
constexpr std::uint64_t polynomial = 0x95AC9329AC4BC9B5;
constexpr std::uint64_t one = std::uint64_t(1) << 63;

constexpr std::uint64_t timesX(std::uint64_t value) {
    return (value >> 1) ^ (value & 1 ? polynomial : 0);
}

constexpr std::uint64_t multiply(std::uint64_t a, std::uint64_t b) {
    std::uint64_t product = 0;
    for (; a; a <<= 1, b = timesX(b))
        product ^= a & one ? b : 0;
    return product;
}

using Table = std::array<std::uint64_t, 256>;

// Row k holds what a byte comes to when k further bytes follow it.
constexpr std::array<Table, 16> makeTables() {
    std::array<Table, 16> tables{};
    for (std::uint64_t i = 0; i < 256; ++i) {
        std::uint64_t entry = i;
        for (int bit = 0; bit < 8; ++bit)
            entry = timesX(entry);
        tables[0][i] = entry;
    }
    for (std::size_t k = 1; k < 16; ++k) {
        for (std::size_t i = 0; i < 256; ++i)
            tables[k][i] = (tables[k - 1][i] >> 8) ^ tables[0][tables[k - 1][i] & 0xff];
    }
    return tables;
}

constexpr std::array<Table, 16> tables = makeTables();
static_assert(tables[0][1] == 0x7AD870C830358979 && tables[0][255] == 0x29B7D047EFEC8728);

// Entry k is the power 8 * 2^k: the weight of 2^k bytes.
constexpr std::array<std::uint64_t, 64> makeByteWeights() {
    std::array<std::uint64_t, 64> weights{};
    weights[0] = one >> 8;
    for (std::size_t k = 1; k < 64; ++k)
        weights[k] = multiply(weights[k - 1], weights[k - 1]);
    return weights;
}

constexpr std::array<std::uint64_t, 64> byteWeights = makeByteWeights();

std::uint64_t littleEndian(const unsigned char *bytes) {
    std::uint64_t value;
    std::memcpy(&value, bytes, sizeof value);
    if constexpr (std::endian::native == std::endian::big)
        value = __builtin_bswap64(value);
    return value;
}

#if defined(__x86_64__)

constexpr std::uint64_t power(unsigned exponent) {
    std::uint64_t value = one;
    while (exponent-- > 0)
        value = timesX(value);
    return value;
}

// What the two halves of a block are multiplied with to move it on by `bits`. The product of two
// reflected values stands one bit too low, hence one power less.
template <unsigned bits>
struct Move {
    static constexpr std::uint64_t first = power(bits + 63);
    static constexpr std::uint64_t second = power(bits - 1);
};

template <unsigned bits>
__attribute__((target("pclmul,sse4.1"))) inline __m128i moved(__m128i block) {
    const __m128i weights = _mm_set_epi64x(static_cast<long long>(Move<bits>::second),
                                           static_cast<long long>(Move<bits>::first));
    return _mm_xor_si128(_mm_clmulepi64_si128(block, weights, 0x00),
                         _mm_clmulepi64_si128(block, weights, 0x11));
}

__attribute__((target("sse4.1"))) inline __m128i load(const unsigned char *bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(bytes));
}

// The same for two blocks side by side.
template <unsigned bits>
__attribute__((target("vpclmulqdq,avx2"))) inline __m256i moved(__m256i blocks) {
    constexpr auto first = static_cast<long long>(Move<bits>::first);
    constexpr auto second = static_cast<long long>(Move<bits>::second);
    const __m256i weights = _mm256_set_epi64x(second, first, second, first);
    return _mm256_xor_si256(_mm256_clmulepi64_epi128(blocks, weights, 0x00),
                            _mm256_clmulepi64_epi128(blocks, weights, 0x11));
}

__attribute__((target("avx2"))) inline __m256i loadTwo(const unsigned char *bytes) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i *>(bytes));
}

// Folds in the rest of the bytes; the block that came to this stands for a message of sixteen.
__attribute__((target("pclmul,sse4.1"))) inline std::uint64_t
foldRest(__m128i block, const unsigned char *bytes, std::size_t size) {
    for (; size >= 16; bytes += 16, size -= 16)
        block = _mm_xor_si128(moved<128>(block), load(bytes));
    unsigned char left[16];
    _mm_storeu_si128(reinterpret_cast<__m128i *>(left), block);
    return crc::foldByBytes(crc::foldBySixteen(0, left, sizeof left), bytes, size);
}

#endif

} // namespace

std::uint64_t crc::crc64(const void *buffer, std::int32_t bufferSize) {
    return crc64Buffer(buffer, bufferSize, true, 0);
}

std::uint64_t crc::crc64Buffer(const void *buffer, std::int32_t buffSize, bool isHead,
                               std::uint64_t running) {
    if (!buffer)
        return 0;
    const std::uint64_t from = isHead ? start : running;
    return buffSize > 0 ? fold(from, buffer, std::size_t(buffSize)) : from;
}

std::uint64_t crc::foldByBytes(std::uint64_t value, const void *data, std::size_t size) {
    const auto *bytes = static_cast<const unsigned char *>(data);
    for (std::size_t i = 0; i < size; ++i)
        value = (value >> 8) ^ tables[0][(value ^ bytes[i]) & 0xff];
    return value;
}

std::uint64_t crc::foldBySixteen(std::uint64_t value, const void *data, std::size_t size) {
    const auto *bytes = static_cast<const unsigned char *>(data);
    for (; size >= 16; bytes += 16, size -= 16) {
        const std::uint64_t first = value ^ littleEndian(bytes);
        const std::uint64_t second = littleEndian(bytes + 8);
        value = 0;
        for (unsigned i = 0; i < 8; ++i) {
            value ^= tables[15 - i][(first >> (8 * i)) & 0xff];
            value ^= tables[7 - i][(second >> (8 * i)) & 0xff];
        }
    }
    return foldByBytes(value, bytes, size);
}

#if defined(__x86_64__)

bool crc::hasCarryless() {
    static const bool has = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    return has;
}

__attribute__((target("pclmul,sse4.1"))) std::uint64_t
crc::foldCarryless(std::uint64_t value, const void *data, std::size_t size) {
    const auto *bytes = static_cast<const unsigned char *>(data);
    if (size < 64)
        return foldBySixteen(value, data, size);
    __m128i a = _mm_xor_si128(load(bytes), _mm_set_epi64x(0, static_cast<long long>(value)));
    __m128i b = load(bytes + 16);
    __m128i c = load(bytes + 32);
    __m128i d = load(bytes + 48);
    for (bytes += 64, size -= 64; size >= 64; bytes += 64, size -= 64) {
        a = _mm_xor_si128(moved<512>(a), load(bytes));
        b = _mm_xor_si128(moved<512>(b), load(bytes + 16));
        c = _mm_xor_si128(moved<512>(c), load(bytes + 32));
        d = _mm_xor_si128(moved<512>(d), load(bytes + 48));
    }
    b = _mm_xor_si128(moved<128>(a), b);
    c = _mm_xor_si128(moved<128>(b), c);
    return foldRest(_mm_xor_si128(moved<128>(c), d), bytes, size);
}

bool crc::hasWide() {
    static const bool has =
        hasCarryless() && __builtin_cpu_supports("vpclmulqdq") && __builtin_cpu_supports("avx2");
    return has;
}

__attribute__((target("vpclmulqdq,avx2,pclmul"))) std::uint64_t
crc::foldWide(std::uint64_t value, const void *data, std::size_t size) {
    const auto *bytes = static_cast<const unsigned char *>(data);
    if (size < 256)
        return foldCarryless(value, data, size);
    __m256i a =
        _mm256_xor_si256(loadTwo(bytes), _mm256_set_epi64x(0, 0, 0, static_cast<long long>(value)));
    __m256i b = loadTwo(bytes + 32);
    __m256i c = loadTwo(bytes + 64);
    __m256i d = loadTwo(bytes + 96);
    for (bytes += 128, size -= 128; size >= 128; bytes += 128, size -= 128) {
        a = _mm256_xor_si256(moved<1024>(a), loadTwo(bytes));
        b = _mm256_xor_si256(moved<1024>(b), loadTwo(bytes + 32));
        c = _mm256_xor_si256(moved<1024>(c), loadTwo(bytes + 64));
        d = _mm256_xor_si256(moved<1024>(d), loadTwo(bytes + 96));
    }
    b = _mm256_xor_si256(moved<256>(a), b);
    c = _mm256_xor_si256(moved<256>(b), c);
    d = _mm256_xor_si256(moved<256>(c), d);
    const __m128i low = _mm256_castsi256_si128(d);
    const __m128i high = _mm256_extracti128_si256(d, 1);
    return foldRest(_mm_xor_si128(moved<128>(low), high), bytes, size);
}

#else

bool crc::hasCarryless() {
    return false;
}

std::uint64_t crc::foldCarryless(std::uint64_t value, const void *data, std::size_t size) {
    return foldBySixteen(value, data, size);
}

bool crc::hasWide() {
    return false;
}

std::uint64_t crc::foldWide(std::uint64_t value, const void *data, std::size_t size) {
    return foldBySixteen(value, data, size);
}

#endif

std::uint64_t crc::fold(std::uint64_t value, const void *data, std::size_t size) {
    if (hasWide())
        return foldWide(value, data, size);
    return hasCarryless() ? foldCarryless(value, data, size) : foldBySixteen(value, data, size);
}

std::uint64_t crc::foldZeros(std::uint64_t value, std::uint64_t count) {
    for (std::size_t k = 0; count; ++k, count >>= 1) {
        if (count & 1)
            value = multiply(value, byteWeights[k]);
    }
    return value;
}

} // namespace brightsweep
