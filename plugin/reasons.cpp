#include "plugin/reasons.h"

#include "efs2/failure_text.h"
#include "link/port_error_text.h"
#include "plugin/operation.h"
#include "qlib/call_layer.h"

namespace {

using Kind = OperationFailure::Kind;

/// Describes the result of a search for phones, whose port was opened, or not, with eError.
std::string SearchReason(const PhoneSearch& search, PortError eError) {
    if (search.iPhones == 0)
        return "none is attached";
    std::string sReason;
    if (search.iPort != 0)
        sReason = PortErrorText(eError, "port COM" + std::to_string(search.iPort));
    else if (search.iPortAbove255 != 0)
        sReason = "diagnostic port COM" + std::to_string(search.iPortAbove255) + " is above COM255";
    else
        sReason = "attached, but without a usable diagnostic port";
    if (search.iPhones > 1)
        sReason += "; " + std::to_string(search.iPhones) + " handsets are attached";
    return sReason;
}

} // namespace

std::string NoHandsetReason(Operation& operation) {
    const auto& search = operation.State().search;
    // Without a context, the port was not tried.
    const PortError eError = operation.Context() ? QLIB_GetPortError(operation.Context()) : PortError::Other;
    return "no handset (" + (search ? SearchReason(*search, eError) : "not connected") + ")";
}

std::string FailureReason(Operation& operation, const OperationFailure& failure) {
    const bool bHasAnswered =
        operation.State().bPhoneAnswered && QLIB_GetPortError(operation.Context()) == PortError::None;
    if (!operation.Context() || (failure.eKind == Kind::NoResponse && !bHasAnswered))
        return NoHandsetReason(operation);
    return EFS2_FailureText(failure);
}

std::string FailureReason(Operation& operation) {
    return FailureReason(operation, LastFailure(operation));
}

OperationFailure LastFailure(Operation& operation) {
    OperationFailure failure;
    QLIB_EfsLastFailure(operation.Context(), &failure);
    return failure;
}

bool IsRefused(Operation& operation) {
    return LastFailure(operation).eKind == Kind::Refused;
}
