#include "efs2/failure_text.h"

#include <algorithm>
#include <iterator>
#include <system_error>

namespace {

using Kind = OperationFailure::Kind;

struct ErrorWords {
    DWORD iErrorNo;
    const char* sWords;
};

constexpr ErrorWords kErrorWords[] = {
    {1, "operation not permitted"},
    {EFS2_ERROR_NOT_THERE, "no such file or folder"},
    {4, "interrupted"},
    {5, "the flash memory failed"},
    {6, "no such device"},
    {7, "too long a list"},
    {9, "the file is not open"},
    {11, "try again"},
    {12, "no memory left"},
    {13, "permission denied"},
    {14, "bad address"},
    {16, "in use"},
    {EFS2_ERROR_EXISTS, "exists already"},
    {18, "on another file system"},
    {19, "no such device"},
    {20, "not a folder"},
    {21, "is a folder"},
    {22, "invalid argument"},
    {23, "too many open files on the phone"},
    {24, "too many open files"},
    {26, "the file is in use"},
    {27, "file too large"},
    {28, "no space left"},
    {29, "invalid position"},
    {30, "read-only"},
    {31, "too many links"},
    {34, "out of range"},
    {36, "name too long"},
    {38, "not supported"},
    {39, "folder not empty"},
    {40, "too many links in the path"},
    {95, "not supported"},
    {110, "timed out"},
    {116, "the file is gone"},
};

std::string WithLocalReason(std::string sText, DWORD iErrno) {
    if (iErrno != 0)
        sText += ": " + std::generic_category().message(static_cast<int>(iErrno));
    return sText;
}

} // namespace

std::string EFS2_ErrorText(DWORD iErrorNo) {
    const auto* const pKnown =
        std::find_if(std::begin(kErrorWords), std::end(kErrorWords),
                     [&](const ErrorWords& words) { return words.iErrorNo == iErrorNo; });
    const std::string sWords = pKnown != std::end(kErrorWords) ? pKnown->sWords : "unknown error";
    return sWords + " (" + std::to_string(iErrorNo) + ")";
}

std::string EFS2_FailureText(const OperationFailure& failure) {
    switch (failure.eKind) {
        case Kind::NotSent:
            return "the path is too long for the phone";
        case Kind::NoResponse:
            return "the handset stopped answering";
        case Kind::Refused:
            return "the phone refused it: " + EFS2_ErrorText(failure.iErrorNo);
        case Kind::NoRoom:
            return "no space left on the phone";
        case Kind::LocalNotRead:
            return WithLocalReason("the local file cannot be read", failure.iErrorNo);
        case Kind::LocalNotWritten:
            return WithLocalReason("the local file cannot be written", failure.iErrorNo);
        case Kind::None:
        case Kind::UnusableResponse:
            break;
    }
    return "the handset's answer cannot be used";
}
