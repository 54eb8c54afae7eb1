#pragma once

#include <array>
#include <cstddef>

namespace zrk {

inline constexpr int kSlotCount = 7;

/// Slot numbers; the number is the index of every per-slot control.
enum Slot : int {
    kPrimaryBoot = 0,
    kSecondaryExecutable = 1,
    kUBoot = 2,
    kRootFs = 3,
    kKernel = 4,
    kFlashImage = 5,
    kPgSibl = 6,
};

enum class Memory { Iram, Sdram, Nand };

/// The frame of the window that shows a slot.
enum class SlotFrame { ProgramFlash, Executables, Images };

/// All facts about one image slot. All code reads them here, so a new slot is one row.
struct SlotFacts {
    const char* caption; ///< of its check box; "&" marks the access key
    SlotFrame frame;
    Memory memory;
    const char* designAddress;      ///< before anything has set another
    const char* section;            ///< of the INI file
    const char* key;                ///< within that section
    const char* addressWhenMissing; ///< when the INI file names a file that is not there
    const char* listName;           ///< in messages and in the address list; "" for none
    char command;                   ///< its download command to the primary boot; 0 for none
    int fileFilter;                 ///< the preselected entry of the file dialog, counted from 1
    const char* option;             ///< of the command line, without the dashes
    const char* optionHelp;
};

// clang-format off
inline constexpr std::array<SlotFacts, kSlotCount> kSlots{{
    {"&Primary Boot (IRAM)", SlotFrame::Executables, Memory::Iram, "0x0",
     "BINFILES", "PRIMARY", "0x0000", "", 0, 1, "primary", "Primary boot, into IRAM."},
    {"&Secondary Executable (SDRAM)", SlotFrame::Executables, Memory::Sdram, "0x80000000",
     "BINFILES", "SECONDARY", "0x80000004", "Secondary Executable", 'p', 1, "secondary", "Secondary executable, into SDRAM."},
    {"&UBoot image", SlotFrame::Images, Memory::Sdram, "0x80000000",
     "IMGFILES", "UBOOT", "0x80000004", "UBoot image", 'u', 2, "uboot", "U-Boot image."},
    {"&RootFS image", SlotFrame::Images, Memory::Sdram, "0x80000000",
     "IMGFILES", "ROOTFS", "0x80000004", "Root FS image", 'r', 2, "rootfs", "Root file system image."},
    {"&Kernel image", SlotFrame::Images, Memory::Sdram, "0x80000000",
     "IMGFILES", "KERNEL", "0x80000004", "Kernel image", 'k', 2, "kernel", "Kernel image."},
    {"&Flash image", SlotFrame::ProgramFlash, Memory::Nand, "0x00000000",
     "BINFILES", "FLASH", "0x0000", "", 0, 1, "flash", "Image for the NAND flash."},
    {"pg_sibl", SlotFrame::ProgramFlash, Memory::Iram, "0x0",
     "BINFILES", "PG_SIBL", "0x80000004", "", 0, 1, "pg-sibl", "Flash-programming image, into IRAM."},
}};
// clang-format on

/// The order in which the window shows the slots, frame by frame.
inline constexpr std::array<Slot, kSlotCount> kWindowOrder{
    kPgSibl, kFlashImage, kPrimaryBoot, kSecondaryExecutable, kUBoot, kRootFs, kKernel};

[[nodiscard]] constexpr const char* addressCaption(Memory memory) {
    return memory == Memory::Iram    ? "IRAM Address"
           : memory == Memory::Sdram ? "SDRAM Address"
                                     : "Flash Address";
}

/// Returns the number of hexadecimal digits of an entered address: IRAM has 16-bit addresses.
[[nodiscard]] constexpr int addressDigits(Memory memory) {
    return memory == Memory::Iram ? 4 : 8;
}

[[nodiscard]] constexpr const SlotFacts& factsOf(int slot) {
    return kSlots.at(static_cast<std::size_t>(slot));
}

} // namespace zrk
