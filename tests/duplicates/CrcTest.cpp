#include "duplicates/crc.h"
#include "duplicates/SearchSupport.h"

#include <gtest/gtest.h>

namespace brightsweep::test {
namespace {

TEST(Crc, CheckValueAndLimits) {
    EXPECT_EQ(crc::crc64("123456789", 9), 0xCAA717168609F281u);
    EXPECT_EQ(crc::crc64Buffer("56789", 5, false, crc::crc64Buffer("1234", 4, true, 7)),
              0xCAA717168609F281u);
    EXPECT_EQ(crc::crc64(nullptr, 9), 0u);
    EXPECT_EQ(crc::crc64("x", 0), crc::start);
    EXPECT_EQ(crc::crc64("x", -1), crc::start);
    EXPECT_EQ(crc::crc64Buffer("x", 0, false, 42), 42u);
    EXPECT_EQ(crc::crc64Buffer(nullptr, 0, true, 42), 0u);
}

TEST(Crc, AllFormsAgreeAtAllLengthsAndAlignments) {
    struct Form {
        const char *name;
        std::uint64_t (*fold)(std::uint64_t, const void *, std::size_t);
    };
    const Form forms[] = {{"dispatched", crc::fold},
                          {"sixteen", crc::foldBySixteen},
                          {"carry-less", crc::hasCarryless() ? crc::foldCarryless : crc::fold},
                          {"wide", crc::hasWide() ? crc::foldWide : crc::fold}};
    const std::string data = bytes(70'000, 1);
    const auto check = [&](std::size_t begin, std::size_t size, std::uint64_t from) {
        const std::uint64_t expected = crc::foldByBytes(from, data.data() + begin, size);
        for (const Form &form : forms)
            ASSERT_EQ(form.fold(from, data.data() + begin, size), expected)
                << form.name << " " << begin << " " << size;
    };
    for (std::size_t size = 0; size <= 700; ++size) {
        for (std::size_t begin = 0; begin < 17; ++begin)
            check(begin, size, begin % 2 ? crc::start : size * 0x9E3779B97F4A7C15u);
    }
    for (const std::size_t size : {1023, 1024, 1025, 4096, 65'535, 65'536, 65'537})
        check(3, size, crc::start);
}

TEST(Crc, ZerosByArithmetic) {
    const std::string zeros(5000, '\0');
    for (const std::size_t count : {0, 1, 2, 7, 8, 255, 256, 4999, 5000})
        EXPECT_EQ(crc::foldZeros(99, count), crc::foldByBytes(99, zeros.data(), count)) << count;
    const std::uint64_t tebibyte = std::uint64_t(1) << 40;
    EXPECT_EQ(crc::foldZeros(crc::foldZeros(5, tebibyte - 3), 3), crc::foldZeros(5, tebibyte));
}

} // namespace
} // namespace brightsweep::test
