#include "ftm/pmic_clock.h"

#include <cstdio>
#include <initializer_list>

#include "ftm/ftm_command.h"
#include "ftm/pmic_command.h"

namespace {

constexpr unsigned char kRead = 1;

/// The fields of a date and time, in wire order.
struct Moment {
    unsigned char& iTimeMode;
    unsigned char& iMonth;
    unsigned char& iDay;
    unsigned short& iYear;
    unsigned char& iHour;
    unsigned char& iMinute;
    unsigned char& iSecond;
};

/// A command that sets or reads a date and time. They are preceded by read/write and, for an alarm, its id.
struct MomentCommand {
    const char* sMethod;
    unsigned char iSubcommand;
    std::initializer_list<unsigned char> front;

    unsigned char ReadWrite() const { return *front.begin(); }
};

void LogMoment(CommandFrame& frame, const MomentCommand& command, const char* sStage, const Moment& moment) {
    char sAlarm[24] = "";
    if (command.front.size() > 1)
        std::snprintf(sAlarm, sizeof sAlarm, "iAlarmId = 0x%X, ", command.front.begin()[1]);
    LogLine(frame, LOG_FN,
            "QLIB_%s-%s( iReadWrite = 0x%X, %siTimeMode = 0x%X, iMonth = 0x%X, iDay = 0x%X, "
            "iYear = 0x%X, iHour = 0x%X, iMinute = 0x%X, iSecond = 0x%X)",
            command.sMethod, sStage, command.ReadWrite(), sAlarm, moment.iTimeMode, moment.iMonth,
            moment.iDay, moment.iYear, moment.iHour, moment.iMinute, moment.iSecond);
}

bool SetGetMoment(CommandFrame& frame, const MomentCommand& command, const Moment& moment) {
    LogMoment(frame, command, "start", moment);
    RequestBuilder& request = BeginPmic(frame, FTM_PMIC_CMD_CLOCK, command.iSubcommand);
    request.Bytes({command.front.begin(), command.front.size()});
    request.U8(moment.iTimeMode).U8(moment.iMonth).U8(moment.iDay).U16(moment.iYear);
    request.U8(moment.iHour).U8(moment.iMinute).U8(moment.iSecond);
    const bool bReads = command.ReadWrite() == kRead;
    if (!(bReads ? frame.SendForValues() : frame.Send(0)))
        return false;
    if (bReads)
        TakeValues(frame, moment.iTimeMode, moment.iMonth, moment.iDay, moment.iYear, moment.iHour,
                   moment.iMinute, moment.iSecond);
    LogMoment(frame, command, "finish", moment);
    return true;
}

} // namespace

bool PmicClock::FTM_PMIC_RTC_SET_GET_TIME(unsigned char iReadWrite, unsigned char& iTimeMode,
                                          unsigned char& iMonth, unsigned char& iDay, unsigned short& iYear,
                                          unsigned char& iHour, unsigned char& iMinute,
                                          unsigned char& iSecond) {
    return SetGetMoment(m_frame, {"FTM_PMIC_RTC_SET_GET_TIME", 0, {iReadWrite}},
                        {iTimeMode, iMonth, iDay, iYear, iHour, iMinute, iSecond});
}

bool PmicClock::FTM_PMIC_RTC_SET_GET_ALARM_TIME(unsigned char iReadWrite, unsigned char& iAlarmId,
                                                unsigned char& iTimeMode, unsigned char& iMonth,
                                                unsigned char& iDay, unsigned short& iYear,
                                                unsigned char& iHour, unsigned char& iMinute,
                                                unsigned char& iSecond) {
    return SetGetMoment(m_frame, {"FTM_PMIC_RTC_SET_GET_ALARM_TIME", 1, {iReadWrite, iAlarmId}},
                        {iTimeMode, iMonth, iDay, iYear, iHour, iMinute, iSecond});
}

bool PmicClock::FTM_PMIC_RTC_STOP() {
    return SendPmic(m_frame, FTM_PMIC_CMD_CLOCK, 2, "QLIB_FTM_PMIC_RTC_STOP( )");
}

bool PmicClock::FTM_PMIC_RTC_GET_ALARM_STATUS(unsigned char& iAlarmStatus) {
    LogLine(m_frame, LOG_FN, "QLIB_FTM_PMIC_RTC_GET_ALARM_STATUS( )");
    BeginPmic(m_frame, FTM_PMIC_CMD_CLOCK, 3).U8(iAlarmStatus);
    return m_frame.Send(0) &&
           TakeLogged(m_frame, "QLIB_FTM_PMIC_RTC_GET_ALARM_STATUS( iAlarmStatus = %d)", iAlarmStatus);
}

bool PmicClock::FTM_PMIC_RTC_DISABLE_ALARM(unsigned char iAlarmId) {
    return SendPmic(m_frame, FTM_PMIC_CMD_CLOCK, 4, "QLIB_FTM_PMIC_RTC_DISABLE_ALARM( iAlarmId = %d)",
                    iAlarmId);
}

bool PmicClock::FTM_PMIC_RTC_SET_GET_TIME_ADJUST(unsigned char iReadWrite, unsigned char& iTimeAdjust) {
    static constexpr char sLine[] =
        "QLIB_FTM_PMIC_RTC_SET_GET_TIME_ADJUST( iReadWrite = %d , iTimeAdjust = %d)";
    if (!SendPmic(m_frame, FTM_PMIC_CMD_CLOCK, 5, sLine, iReadWrite, iTimeAdjust))
        return false;
    return iReadWrite != kRead || TakeLogged(m_frame, sLine, std::tuple(iReadWrite), iTimeAdjust);
}
