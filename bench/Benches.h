#pragma once

namespace zrkbench {

// Each prints its rows of the table.

/// Bring-up, download and flash at 115200 baud, at the board's own device and through a serial server.
void benchLine();

/// Use of the line by this loader and by stop-and-wait protocols, behind adapters of several latencies.
void benchPeers();

/// Processor time a megabyte, and the speed where no line holds it back.
void benchCost();

/// From a received byte to the return of the wait for it.
void benchReaction();

/// From a cancel to the end of the operation, at every kind of wait.
void benchCancel();

/// Processor use of the command line while it waits for a BootID.
void benchIdleWait();

/// Memory of the command line while it sends a 64 MiB image.
void benchMemory();

/// The window program, in processes of its own: start and terminal.
void benchWindow();

/// So many boards at once, each with a loader on a thread of its own: the worst and the best use of a line.
void benchBoards(int count);

} // namespace zrkbench
