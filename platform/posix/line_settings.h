// A tty's line settings and the records of the serial interface, one turned into the other.
#pragma once

#include <termios.h>

#include "system/serial.h"

/// MakeRaw changes `settings` so that the tty hands every byte on unchanged, echoes nothing, ignores the
/// modem lines and has no flow control.
void MakeRaw(termios& settings);

/// PutLineState puts rate, byte size, parity and stop bits of `state` into `settings`. False, with
/// `settings` in part changed, when the tty has no such rate or the values mean nothing.
bool PutLineState(const DCB& state, termios& settings);

/// TakeLineState reads rate, byte size, parity and stop bits of `settings` into `state` and leaves its
/// other fields. A rate outside the standard ones reads as 0.
void TakeLineState(const termios& settings, DCB& state);

/// ApplyLineState hands `settings` to the tty. Returns 0, or -1 with errno. A tty that takes the rate but
/// drops bits that it has no use for (a pseudo-terminal has neither parity nor byte sizes) counts as done.
int ApplyLineState(int fdTty, const termios& settings);
