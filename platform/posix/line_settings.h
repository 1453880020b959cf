// Conversion between a tty's line settings and the records of the serial interface.
#pragma once

#include <termios.h>

#include "system/serial.h"

/// MakeRaw changes `settings` so that the tty passes every byte unchanged, echoes nothing, ignores the modem
/// lines and has no flow control.
void MakeRaw(termios& settings);

/// PutLineState copies rate, byte size, parity and stop bits from `state` to `settings`. False, with
/// `settings` partly changed, when the tty does not support the rate or a value is invalid.
bool PutLineState(const DCB& state, termios& settings);

/// TakeLineState copies rate, byte size, parity and stop bits from `settings` to `state`; other fields of
/// `state` are unchanged. A non-standard rate reads as 0.
void TakeLineState(const termios& settings, DCB& state);

/// ApplyLineState applies `settings` to the tty. Returns 0, or -1 with errno. A tty that accepts the rate but
/// drops settings that it does not support (a pseudo-terminal has no parity or byte size) counts as success.
int ApplyLineState(int fdTty, const termios& settings);
