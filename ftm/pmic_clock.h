// The real-time clock of the power-management chip, and its alarms.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// PmicClock: every command is one request and its answer, within QMSL_TimeOut_SyncRequest; true means that
/// the handset answered, in whatever system mode. Values are the chip's and are passed on unchanged. The
/// caller's values are always sent. With iReadWrite 1 they are then replaced by the handset's, taken from the
/// answer's end: of an answer that stops between its values the bytes that there are pass for them; one that
/// ends within its header (11 bytes) has none, and the result is false. With any other iReadWrite nothing is
/// changed. Caller's thread. The frame must outlive it.
class QUILLET_API PmicClock {
public:
    explicit PmicClock(CommandFrame& frame) : m_frame(frame) {}

    bool FTM_PMIC_RTC_SET_GET_TIME(unsigned char iReadWrite, unsigned char& iTimeMode, unsigned char& iMonth,
                                   unsigned char& iDay, unsigned short& iYear, unsigned char& iHour,
                                   unsigned char& iMinute, unsigned char& iSecond);
    /// FTM_PMIC_RTC_SET_GET_ALARM_TIME: the same for the alarm iAlarmId, which stays as it is.
    bool FTM_PMIC_RTC_SET_GET_ALARM_TIME(unsigned char iReadWrite, unsigned char& iAlarmId,
                                         unsigned char& iTimeMode, unsigned char& iMonth, unsigned char& iDay,
                                         unsigned short& iYear, unsigned char& iHour, unsigned char& iMinute,
                                         unsigned char& iSecond);
    /// FTM_PMIC_RTC_STOP stops the clock.
    bool FTM_PMIC_RTC_STOP();
    bool FTM_PMIC_RTC_GET_ALARM_STATUS(unsigned char& iAlarmStatus);
    bool FTM_PMIC_RTC_DISABLE_ALARM(unsigned char iAlarmId);
    /// FTM_PMIC_RTC_SET_GET_TIME_ADJUST: the correction of the clock's speed.
    bool FTM_PMIC_RTC_SET_GET_TIME_ADJUST(unsigned char iReadWrite, unsigned char& iTimeAdjust);

private:
    CommandFrame& m_frame;
};
