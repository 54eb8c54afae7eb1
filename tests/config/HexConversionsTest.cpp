#include "config/HexConversions.h"

#include "platform/RuntimeFailure.h"
#include "support/Rig.h"

#include <optional>

namespace {

using zrk::FailureKind;

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

TEST(HexConversions, HexToLongReadsLeniently) {
    using Table = std::initializer_list<std::pair<const char*, std::int32_t>>;
    const Table hexadecimal{{"0x8000", 32768},
                            {"0xFFFF", 65535},
                            {"0x10000", 65536},
                            {"0h1f", 31},
                            {"&H1f", 31},
                            {"0X10", 0},
                            {"0x7FFFFFFF", 2147483647},
                            {"0x80000000", 32768},
                            {"0x80000004", 32772},
                            {"0x83FFFFF0", 65520},
                            {"0xFFFFFFFF", 65535},
                            {"& h 1 0", 16},
                            {"0x12xyz", 18},
                            {"0x", 0}};
    const Table decimal{{" 3 0\t0\n", 300},
                        {"12abc", 12},
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
                        {"", 0},
                        {"xyz", 0}};
    for (const Table& table : {hexadecimal, decimal}) {
        for (const auto& [text, value] : table)
            EXPECT_EQ(zrk::HexToLong(text), value) << text;
    }
    for (const char* text : {"2147483648", "2147483647.5", "-2147483649", "1e10", "1e999", "0x123456789"})
        EXPECT_EQ(failureOf([&] { return zrk::HexToLong(text); }), FailureKind::Overflow) << text;
}

TEST(HexConversions, HexByteReadsStrictly) {
    const std::initializer_list<std::pair<const char*, const char*>> table{
        {"0x80000004", "80000004"},    {"0x1A2B", "00001a2b"},  {"0x0001f000", "0001f000"},
        {"300", "0000012c"},           {"  &H10 ", "00000010"}, {"2.5", "00000002"},
        {"3.5", "00000004"},           {"+5.", "00000005"},     {".6", "00000001"},
        {"2147483647", "7fffffff"},    {"-1", "ffffffff"},      {"0xFFFFFFFF", "ffffffff"},
        {"0x000000000001", "00000001"}};
    for (const auto& [text, digits] : table) {
        QByteArray bytes;
        for (std::int16_t n = 0; n < 4; ++n)
            bytes += static_cast<char>(zrk::HexByte(text, n));
        EXPECT_EQ(bytes.toHex(), digits) << text;
    }
    for (const char* text :
         {"0X10", "xyz", "", " ", "0x", "0x12g", "12 3", "0x 12", "1e3", ".", "1.2.3", "- 1", "0h 1"})
        EXPECT_EQ(failureOf([&] { return zrk::HexByte(text, 0); }), FailureKind::TypeMismatch) << text;
    for (const char* text : {"0x123456789", "2147483648", "-2147483649"})
        EXPECT_EQ(failureOf([&] { return zrk::HexByte(text, 0); }), FailureKind::Overflow) << text;
    EXPECT_EQ(failureOf([] { return zrk::HexByte("1", -1); }), FailureKind::InvalidArgument);
    EXPECT_EQ(zrk::HexByte("0xFFFFFFFF", 4) + zrk::HexByte("0xFFFFFFFF", 16383), 0);
    EXPECT_EQ(failureOf([] { return zrk::HexByte("1", 16384); }), FailureKind::Overflow);
    EXPECT_EQ(failureOf([] { return zrk::DropLastChar(""); }), FailureKind::InvalidArgument);
}

} // namespace
