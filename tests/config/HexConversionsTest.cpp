#include "config/HexConversions.h"

#include "platform/RuntimeFailure.h"
#include "support/Rig.h"

#include <limits>
#include <optional>

namespace {

using zrk::FailureKind;

/// The kind of failure of a conversion, or none.
template <class Conversion>
std::optional<FailureKind> failureOf(Conversion conversion) {
    try {
        (void)conversion();
    } catch (const zrk::RuntimeFailure& failure) {
        EXPECT_FALSE(failure.description().isEmpty());
        return failure.kind();
    }
    return std::nullopt;
}

TEST(HexConversions, NormalizeHex) {
    for (const auto& [text, result] : {std::pair{"0x1F", "&h1F"},
                                       {"0h1F", "&h1F"},
                                       {"0X1F", "0X1F"},
                                       {"&H1F", "&H1F"},
                                       {"1F", "1F"},
                                       {"", ""},
                                       {" 0x1F", " 0x1F"},
                                       {"0x", "&h"},
                                       {"0x0x1", "&h0x1"}})
        EXPECT_EQ(zrk::NormalizeHex(text), result) << text;
}

TEST(HexConversions, HexToLongReadsLeniently) {
    for (const auto& [text, value] : std::initializer_list<std::pair<const char*, std::int32_t>>{
             {"0x8000", 32768},
             {"0xFFFF", 65535},
             {"0x10000", 65536},
             {"0h1f", 31},
             {"&H1f", 31},
             {"0x7FFFFFFF", 2147483647},
             {"0x80000000", 32768},
             {"0x80000004", 32772},
             {"0x83FFFFF0", 65520},
             {"0xFFFFFFFF", 65535},
             {"300", 300},
             {" 3 0\t0\n", 300},
             {"& h 1 0", 16},
             {"12abc", 12},
             {"0x12xyz", 18},
             {"0x", 0},
             {"1e3", 1000},
             {"1e", 1},
             {".5e1", 5},
             {"2.5", 2},
             {"3.5", 4},
             {"2147483647", 2147483647},
             {"-1", 65535},
             {"-0.4", 32768},
             {"-32769", 65535},
             {"-2147483648", 32768},
             {"0X10", 0},
             {"", 0},
             {"xyz", 0},
         })
        EXPECT_EQ(zrk::HexToLong(text), value) << text;
    for (const char* text : {"2147483648", "2147483647.5", "-2147483649", "1e10", "1e999", "0x123456789"})
        EXPECT_EQ(failureOf([&] { return zrk::HexToLong(text); }), FailureKind::Overflow) << text;
}

TEST(HexConversions, HexByteReadsStrictly) {
    struct Row {
        const char* text;
        std::array<int, 5> bytes; // for n = 0 to 4
    };
    for (const Row& row : std::initializer_list<Row>{
             {"0x80000004", {0x80, 0, 0, 0x04, 0}},
             {"0x1A2B", {0, 0, 0x1A, 0x2B, 0}},
             {"0x0001f000", {0, 0x01, 0xF0, 0, 0}},
             {"300", {0, 0, 0x01, 0x2C, 0}},
             {"  &H10 ", {0, 0, 0, 0x10, 0}},
             {"2.5", {0, 0, 0, 2, 0}},
             {"3.5", {0, 0, 0, 4, 0}},
             {"+5.", {0, 0, 0, 5, 0}},
             {".6", {0, 0, 0, 1, 0}},
             {"2147483647", {0x7F, 0xFF, 0xFF, 0xFF, 0}},
             {"-1", {0xFF, 0xFF, 0xFF, 0xFF, 0}},
             {"0xFFFFFFFF", {0xFF, 0xFF, 0xFF, 0xFF, 0}},
             {"0x000000000001", {0, 0, 0, 1, 0}},
         }) {
        for (std::int16_t n = 0; n < 5; ++n)
            EXPECT_EQ(zrk::HexByte(row.text, n), row.bytes[static_cast<std::size_t>(n)])
                << row.text << " n=" << n;
    }
    for (const char* text :
         {"0X10", "xyz", "", " ", "0x", "0x12g", "12 3", "0x 12", "1e3", ".", "1.2.3", "- 1", "0h 1"})
        EXPECT_EQ(failureOf([&] { return zrk::HexByte(text, 0); }), FailureKind::TypeMismatch) << text;
    for (const char* text : {"0x123456789", "2147483648", "-2147483649"})
        EXPECT_EQ(failureOf([&] { return zrk::HexByte(text, 0); }), FailureKind::Overflow) << text;
    EXPECT_EQ(failureOf([] { return zrk::HexByte("1", -1); }), FailureKind::InvalidArgument);
    EXPECT_EQ(zrk::HexByte("1", 16383), 0);
    EXPECT_EQ(failureOf([] { return zrk::HexByte("1", 16384); }), FailureKind::Overflow);
}

TEST(HexConversions, DropLastChar) {
    EXPECT_EQ(zrk::DropLastChar("0x80000004"), "0x8000000");
    EXPECT_EQ(zrk::DropLastChar("a"), "");
    EXPECT_EQ(failureOf([] { return zrk::DropLastChar(""); }), FailureKind::InvalidArgument);
}

} // namespace
