#pragma once

namespace zrkbench {

/// A 126,976-byte image at 115200 baud, through the primary boot and into the flash: use of the line and
/// how far hand-over runs ahead of it.
void benchPacedLine();

/// The same path with no line in between: bytes a second and processor time a megabyte.
void benchUnpaced();

/// Use of the line by this loader and by stop-and-wait protocols, behind adapters of several latencies.
void benchPeers();

/// Processor use of the command line while it waits for a BootID.
void benchIdleWait();

/// Memory of the command line above the file's size while it sends a 64 MiB image.
void benchMemory();

/// So many boards at once, each with a loader on a thread of its own: the worst and the best use of a line.
void benchBoards(int count);

} // namespace zrkbench
