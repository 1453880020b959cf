// The real-time clock of the power-management chip, and its alarms.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// PmicClock: every command is one request and its response, within QMSL_TimeOut_SyncRequest. True means that
/// the phone answered, in any system mode. Values are chip-specific and passed on unchanged. The caller's
/// values are always sent. With iReadWrite 1 they are then replaced by those at the response's end. A
/// truncated response is read the same way, so other bytes of it may be returned; one that ends within its
/// header (11 bytes) makes the result false. With any other iReadWrite no value changes. Caller's thread. The
/// frame must outlive it.
class QUILLET_API PmicClock {
public:
    explicit PmicClock(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_PMIC_RTC_SET_GET_TIME sets the clock, or reads it (iReadWrite 1).
    bool FTM_PMIC_RTC_SET_GET_TIME(unsigned char iReadWrite, unsigned char& iTimeMode, unsigned char& iMonth,
                                   unsigned char& iDay, unsigned short& iYear, unsigned char& iHour,
                                   unsigned char& iMinute, unsigned char& iSecond);
    /// FTM_PMIC_RTC_SET_GET_ALARM_TIME: the same for the alarm iAlarmId, which is not changed.
    bool FTM_PMIC_RTC_SET_GET_ALARM_TIME(unsigned char iReadWrite, unsigned char& iAlarmId,
                                         unsigned char& iTimeMode, unsigned char& iMonth, unsigned char& iDay,
                                         unsigned short& iYear, unsigned char& iHour, unsigned char& iMinute,
                                         unsigned char& iSecond);
    /// FTM_PMIC_RTC_STOP stops the clock.
    bool FTM_PMIC_RTC_STOP();
    /// FTM_PMIC_RTC_GET_ALARM_STATUS reads the status of the alarms.
    bool FTM_PMIC_RTC_GET_ALARM_STATUS(unsigned char& iAlarmStatus);
    /// FTM_PMIC_RTC_DISABLE_ALARM switches an alarm off.
    bool FTM_PMIC_RTC_DISABLE_ALARM(unsigned char iAlarmId);
    /// FTM_PMIC_RTC_SET_GET_TIME_ADJUST: the correction of the clock rate.
    bool FTM_PMIC_RTC_SET_GET_TIME_ADJUST(unsigned char iReadWrite, unsigned char& iTimeAdjust);

private:
    CommandFrame& m_frame;
};
