// The reasons of failures, in words for the host's log.
#pragma once

#include <string>

#include "diag/operation_failure.h"

class Operation;

/// Returns the reason why no phone answers, from the last attempt to connect, such as "no handset (port COM3
/// is held by another program)".
std::string NoHandsetReason(Operation& operation);

/// Returns why a request failed or was refused; without `failure`, why the last file-system request of the
/// operation did. If the phone has not answered since the connection was opened, returns NoHandsetReason.
std::string FailureReason(Operation& operation, const OperationFailure& failure);
std::string FailureReason(Operation& operation);

/// Returns the failure of the operation's last file-system request. Its kind is None when there is no
/// connection.
OperationFailure LastFailure(Operation& operation);

/// Returns true when the phone refused the operation's last file-system request.
bool IsRefused(Operation& operation);
