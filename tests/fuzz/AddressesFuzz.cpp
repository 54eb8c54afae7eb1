#include "config/HexConversions.h"
#include "fuzz/LoaderUnderFuzz.h"
#include "platform/RuntimeFailure.h"

#include <algorithm>
#include <optional>

// Input: four bytes of size for each of four slots, then lines of addresses.

namespace {

using namespace zrkfuzz;
using zrk::FailureKind;

constexpr std::uint64_t kMarkers[][2]{{0x80000000, 4}, {0x82000000, 0}, {0x84000000, 0}};

template <typename Call>
auto valueOf(Call call, std::initializer_list<FailureKind> documented) -> std::optional<decltype(call())> {
    try {
        return call();
    } catch (const zrk::RuntimeFailure& failure) {
        require(std::find(documented.begin(), documented.end(), failure.kind()) != documented.end(),
                "a failure is of a documented kind", failure.description());
        return {};
    }
}

void checkConversions(const QString& text) {
    const QString normal = zrk::NormalizeHex(text);
    const auto form = valueOf([&] { return zrk::strictHexForm(normal); },
                              {FailureKind::TypeMismatch, FailureKind::Overflow});
    (void)valueOf([&] { return zrk::HexToLong(text); }, {FailureKind::Overflow});
    const auto line =
        valueOf([&] { return zrk::lineBytes(text); }, {FailureKind::TypeMismatch, FailureKind::Overflow});
    require(form.has_value() == line.has_value(), "what has a form has bytes", text);
    if (!form)
        return;
    std::uint32_t value = 0;
    for (std::size_t i = 4; i-- > 0;)
        value = value << 8 | (*line)[i];
    require(QString::number(value, 16).toUpper() == *form, "the bytes are those of the form", text);
    const auto again = zrk::HexToLong("0x" + *form);
    require(value > 0x7FFFFFFFU || static_cast<std::uint32_t>(again) == value, "the form reads as it is");
}

void checkEntry(LoaderUnderFuzz& under, int slot, const QString& text) {
    auto& box = under.loader.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text;
    const QString fault = zrk::addressFault(slot, text);
    box = text;
    under.loader.addresses.txtStartAddress_Validate(slot);
    const QString entered = box;
    if (fault.isEmpty())
        require(zrk::strictHexForm(zrk::NormalizeHex(entered)) == zrk::strictHexForm(zrk::NormalizeHex(text)),
                "an address without a fault keeps its value", text);
    under.loader.addresses.txtStartAddress_Validate(slot);
    require(entered == box || (entered == "0x0" && box.value().toUInt(nullptr, 16) == 0),
            "the entry rule is idempotent", text);
}

/// Checks that ranges that pass lie in the SDRAM and do not meet.
void checkRanges(LoaderUnderFuzz& under, const std::array<std::uint32_t, 4>& sizes) {
    auto& controls = under.loader.controls;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges;
    for (const auto& [start, size] : kMarkers)
        ranges.emplace_back(start, start + size);
    for (std::size_t slot = 1; slot <= 4; ++slot) {
        const std::uint64_t start = controls.txtStartAddress[slot].Text.value().toULongLong(nullptr, 16);
        ranges.emplace_back(start, start + sizes[slot - 1]);
    }
    const auto valid = valueOf([&] { return under.loader.validation.ValidateAddresses(); }, {});
    if (!valid || !*valid)
        return;
    std::sort(ranges.begin(), ranges.end());
    for (std::size_t i = 1; i < ranges.size(); ++i)
        require(ranges[i - 1].second <= ranges[i].first, "valid ranges do not overlap");
    require(ranges.front().first >= 0x80000000, "valid ranges lie in the SDRAM");
    require(ranges.back().second <= 0x84000000, "valid ranges end in the SDRAM");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    LoaderUnderFuzz under;
    std::array<std::uint32_t, 4> sizes{};
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        sizes[i] = input.word() & 0x7FFFFFFFU;
        under.loader.controls.txtFilNam[i + 1].Tag = QStringLiteral("a");
        under.loader.controls.chkExeURK[i + 1].Value = 1;
        under.loader.controls.lblCodeSize[i + 1].Caption = "0x" + QString::number(sizes[i], 16).toUpper();
    }
    for (int slot = 0; slot < 7; ++slot) {
        const QString text = QString::fromUtf8(input.line());
        checkConversions(text);
        checkEntry(under, slot, text);
    }
    checkRanges(under, sizes);
    return 0;
}
