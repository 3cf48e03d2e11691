#pragma once

namespace hollowfernpike {

/// Takes from our environment what would have the toolkit speak to other machines, or wait for a
/// session manager. To be called before there is a second thread.
void stayOnThisMachine();

/// Has the toolkit find no session bus: it would start one, or wait without end for one that does
/// not answer. Likewise.
void hideSessionBus();

/// What standard input, output and errors should be, and is not open, leads nowhere from now on:
/// our own files must not get their numbers, and programs that we launch need them. To be called
/// first.
void openStandardDescriptors();

/// From now on neither our output nor the toolkit's waits for a reader.
void neverWaitForReaders();

} // namespace hollowfernpike
