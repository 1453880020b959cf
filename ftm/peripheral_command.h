// Shared by the audio and camera commands: responses that end with a status, and data in pieces.
#pragma once

#include <span>

#include "ftm/ftm_command.h"

/// The size of the header of requests and responses.
constexpr size_t kPeripheralHeader = 10;
/// The length of a response that carries a status alone.
constexpr unsigned short kStatusResponse = kPeripheralHeader + 2;
/// The longest response, without its FCS.
constexpr unsigned short kLongestResponse = 4094;

/// TakeBehindHeader is TakeValues for values that must all follow the header. False, with all of them
/// unchanged, when they do not.
template <class... Values>
bool TakeBehindHeader(CommandFrame& frame, Values&... values) {
    const size_t iPosition = frame.Buffer().ReadPosition();
    const size_t iEnd = iPosition == 0 ? frame.Response().Size() : iPosition;
    return iEnd >= kPeripheralHeader + (sizeof values + ... + 0) && TakeValues(frame, values...);
}

/// LogStatus logs the result line of a command and returns bPassed. sEntry is the command's entry line: its
/// name, then a parenthesis.
bool LogStatus(CommandFrame& frame, const char* sEntry, bool bPassed, unsigned short iStatus);

/// SendForStatus sends the request as built, then takes the status at the response's end and the values
/// before it (in wire order). True when the status is 0 and all values are there. When no response arrived,
/// or it is too short for a status, iStatus is 1 and the values stay unchanged. sEntry: as for LogStatus.
template <class... Values>
bool SendForStatus(CommandFrame& frame, const char* sEntry, unsigned short& iStatus, Values&... values) {
    iStatus = 1;
    const bool bTaken =
        frame.Send(0) && TakeBehindHeader(frame, iStatus) && TakeBehindHeader(frame, values...);
    return LogStatus(frame, sEntry, bTaken && iStatus == 0, iStatus);
}

/// SendSetting is for a command whose entry line shows all its fields: it logs the line, appends the fields,
/// and sends the request for a status alone.
template <class... Fields>
bool SendSetting(CommandFrame& frame, RequestBuilder& request, unsigned short& iStatus,
                 TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, request, entry, fields...);
    return SendForStatus(frame, entry.sFormat, iStatus);
}

/// TakePiece takes a piece of longer data from a response. After the header come its offset (32 bits), its
/// size (16 bits), its bytes, and iTail more bytes.
///   iOffset  the requested offset; a piece at another offset is refused
///   iSize    in: the requested size, and the room in piData; out: the size of the piece, which may be
///            smaller
///
/// False, with both out-values unchanged, when the piece is larger than requested or incomplete.
bool TakePiece(CommandFrame& frame, DWORD iOffset, unsigned short& iSize, unsigned char* piData,
               size_t iTail);
