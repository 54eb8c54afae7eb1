#pragma once

namespace zrkbench {

// Each prints its rows of the table.

/// Measures bring-up, download and flash at 115200 baud, at the board's device and through a serial server.
void benchLine();

/// Measures the use of the line, also by stop-and-wait protocols, with adapters of several latencies.
void benchPeers();

/// Measures the processor time a megabyte, and the speed without a line.
void benchCost();

/// Measures the time from a received byte to the return of the wait for it.
void benchReaction();

/// Measures the time from a cancel to the end of the operation, at every kind of wait.
void benchCancel();

/// Measures the processor use of the command line while it waits for a BootID.
void benchIdleWait();

/// Measures the memory of the command line while it sends a 64 MiB image.
void benchMemory();

/// Measures the start and the terminal of the window program, in processes of its own.
void benchWindow();

/// Measures so many boards at once, each with a loader on its own thread: worst and best use of a line.
void benchBoards(int count);

} // namespace zrkbench
