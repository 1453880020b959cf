// Why the phone did not do what was asked, in words for the host's log.
#pragma once

#include <string>

#include "diag/operation_failure.h"

class Operation;

/// NoHandsetReason says what stands between the plug-in and a handset that answers, such as "no handset (port
/// COM3 is held by another program)", by what the last attempt to connect found.
std::string NoHandsetReason(Operation& operation);

/// FailureReason says why a request failed or was refused; without one, why the operation's last file-system
/// request did. A handset that has not answered since the connection was opened is no handset.
std::string FailureReason(Operation& operation, const OperationFailure& failure);
std::string FailureReason(Operation& operation);

/// LastFailure returns what failed in the operation's last file-system request; kind None without a
/// connection.
OperationFailure LastFailure(Operation& operation);

/// IsRefused tells whether the phone refused the operation's last file-system request.
bool IsRefused(Operation& operation);
