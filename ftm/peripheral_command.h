// What the commands of audio and camera share: an answer that ends with a status, data in pieces.
#pragma once

#include <span>

#include "ftm/ftm_command.h"

/// The header of their requests and answers, in bytes.
constexpr size_t kPeripheralHeader = 10;
/// The length of a response that carries a status alone.
constexpr unsigned short kStatusResponse = kPeripheralHeader + 2;
/// The longest answer, without its FCS.
constexpr unsigned short kLongestAnswer = 4094;

/// TakeBehindHeader takes values from the end of the answer, as TakeValues does, but all or none: false, with
/// all of them as they were, when they do not lie behind the header.
template <class... Values>
bool TakeBehindHeader(CommandFrame& frame, Values&... values) {
    const size_t iPosition = frame.Buffer().ReadPosition();
    const size_t iEnd = iPosition == 0 ? frame.Response().Size() : iPosition;
    return iEnd >= kPeripheralHeader + (sizeof values + ... + 0) && TakeValues(frame, values...);
}

/// LogStatus writes the result line of a command and returns bPassed. sEntry begins with the command's name
/// and a bracket, as its entry line does.
bool LogStatus(CommandFrame& frame, const char* sEntry, bool bPassed, unsigned short iStatus);

/// SendForStatus sends the request as built and takes the status at the answer's end, then the values in
/// front of it (in the order of the layout). True when the status is 0 and all values are there. iStatus is 1
/// when no answer came or it ends too early for a status; the values then stay as they were. sEntry: as for
/// LogStatus.
template <class... Values>
bool SendForStatus(CommandFrame& frame, const char* sEntry, unsigned short& iStatus, Values&... values) {
    iStatus = 1;
    const bool bTaken =
        frame.Send(0) && TakeBehindHeader(frame, iStatus) && TakeBehindHeader(frame, values...);
    return LogStatus(frame, sEntry, bTaken && iStatus == 0, iStatus);
}

/// SendSetting logs the entry line of a command that shows all its fields, appends them to its request, and
/// sends that for a status alone.
template <class... Fields>
bool SendSetting(CommandFrame& frame, RequestBuilder& request, unsigned short& iStatus,
                 TextFor<Fields...> entry, Fields... fields) {
    AppendLogged(frame, request, entry, fields...);
    return SendForStatus(frame, entry.sFormat, iStatus);
}

/// TakePiece takes a piece of something longer out of an answer: behind the header stand its offset (32
/// bits), its size (16 bits) and its bytes; iTail bytes more follow.
///   iOffset  where the piece was asked for; a piece of another place is refused
///   iSize    in: the size asked for and the room in piData; out: the size of the piece, which may be smaller
/// False, with both out-values as they were, when the piece is larger than asked for or not all there.
bool TakePiece(CommandFrame& frame, DWORD iOffset, unsigned short& iSize, unsigned char* piData,
               size_t iTail);
