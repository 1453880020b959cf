#include "plugin/properties.h"

#include <chrono>
#include <cstdio>

#include "link/as_int.h"
#include "plugin/links.h"
#include "plugin/operation.h"
#include "plugin/phone_status.h"
#include "plugin/phone_time.h"
#include "plugin/reasons.h"
#include "qlib/call_layer.h"

namespace {

constexpr size_t kTextSize = 1024;

struct SpaceStatus {
    DWORD iErrorNo = 0;
    DWORD iFileSystemId = 0;
    DWORD iFileSystemType = 0;
    DWORD iBlockSize = 0;
    DWORD iTotalBlocks = 0;
    DWORD iAvailBlocks = 0;
    DWORD iFreeBlocks = 0;
    DWORD iMaxFileSize = 0;
    DWORD iFiles = 0;
    DWORD iMaxFiles = 0;

    // Queries the root's file system. Its error number is ignored.
    bool Query(Operation& operation) {
        return QLIB_EFS2_DIAG_STATFS(operation.Context(), "", &iErrorNo, &iFileSystemId, &iFileSystemType,
                                     &iBlockSize, &iTotalBlocks, &iAvailBlocks, &iFreeBlocks, &iMaxFileSize,
                                     &iFiles, &iMaxFiles);
    }
};

std::string TypeText(const PhoneStatus& status) {
    const char* const sFormat = status.IsReadableFile()     ? "<FILE> [%04X]"
                                : status.IsReadableFolder() ? "<DIR> [%04X]"
                                                            : "[%04X]";
    char sText[20];
    std::snprintf(sText, sizeof sText, sFormat, AsInt(status.iMode));
    return sText;
}

/// Returns "Thu Jan 01 00:00:00 1970" and a line feed.
std::string TimeText(DWORD iTime) {
    static constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                              "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    using namespace std::chrono;
    const sys_seconds moment{seconds(CalendarTime(iTime))};
    const sys_days day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss clock(moment - day);
    char sText[32];
    std::snprintf(sText, sizeof sText, "%s %s %02u %02d:%02d:%02d %04d\n", kDays[weekday(day).c_encoding()],
                  kMonths[unsigned(date.month()) - 1], unsigned(date.day()), int(clock.hours().count()),
                  int(clock.minutes().count()), int(clock.seconds().count()), int(date.year()));
    return sText;
}

} // namespace

std::string FormatThousands(DWORD iValue) {
    const std::string sDigits = std::to_string(iValue);
    std::string sText;
    for (size_t i = 0; i < sDigits.size(); ++i) {
        if (i > 0 && (sDigits.size() - i) % 3 == 0)
            sText += ' ';
        sText += sDigits[i];
    }
    return sText;
}

std::string PropertiesText(Operation& operation, const char* sPhonePath) {
    PhoneStatus status;
    SpaceStatus space;
    if (!status.Query(operation, sPhonePath) || !status.Exists() || !space.Query(operation))
        return operation.Fail(std::string("Uknown properties"), FailureReason(operation));
    const std::string sTarget = LinkTarget(operation, sPhonePath);
    std::string sLink;
    if (!sTarget.empty())
        sLink.append("Link to:\t\t").append(sTarget).append("\n");
    char sText[kTextSize];
    std::snprintf(
        sText, sizeof sText,
        "Name:\t\t%s\n%sType:\t\t%s\nSize:\t\t%s\nNo of links:\t%d\nAccess time:\t%sModify time:\t%s"
        "Creation time:\t%s\nFS ID:\t\t%d\nFS Type:\t\t%d\nBlock size:\t%d\nMax file size:\t%d\n"
        "Capacity:\t\t%s\nFree space:\t%s",
        sPhonePath, sLink.c_str(), TypeText(status).c_str(), FormatThousands(status.iSize).c_str(),
        AsInt(status.iLinkCount), TimeText(status.iAccessTime).c_str(), TimeText(status.iModifyTime).c_str(),
        TimeText(status.iCreateTime).c_str(), AsInt(space.iFileSystemId), AsInt(space.iFileSystemType),
        AsInt(space.iBlockSize), AsInt(space.iMaxFileSize),
        FormatThousands(space.iBlockSize * space.iTotalBlocks).c_str(),
        FormatThousands(space.iBlockSize * space.iAvailBlocks).c_str());
    return sText;
}
