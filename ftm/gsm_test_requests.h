// The requests of the GSM bit-error-rate test.
#pragma once

#include "platform/export.h"

class CommandFrame;

/// The data that the phone loops back, by the phone's numbers.
enum FTM_GSM_BER_LoopbackType_Enum : int {};
/// The kind of traffic channel, by the phone's numbers.
enum FTM_GSM_BER_Channel_Modes_Enum : int {};

/// GsmTestRequests: one request each. True means that the phone answered. iStatus is its status (0:
/// accepted), see ExchangeTest. The test sessions call them in order. Caller's thread. The frame must outlive
/// it.
class QUILLET_API GsmTestRequests {
public:
    explicit GsmTestRequests(CommandFrame& frame) : m_frame(frame) {}

    /// FTM_GSM_START_MODE_REQ starts the GSM test mode.
    bool FTM_GSM_START_MODE_REQ(unsigned char& iStatus);
    /// FTM_GSM_SELECT_SPECIFIC_BCCH_REQ makes the phone search for a broadcast channel.
    bool FTM_GSM_SELECT_SPECIFIC_BCCH_REQ(unsigned short iChannel, unsigned char iBand,
                                          unsigned char& iStatus);
    /// FTM_GSM_START_IDLE_MODE_REQ makes the phone camp on the channel that it found.
    bool FTM_GSM_START_IDLE_MODE_REQ(unsigned char& iStatus);
    /// FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ sets which data the phone loops back.
    bool FTM_GSM_CONFIG_LOOPBACK_TYPE_REQ(FTM_GSM_BER_LoopbackType_Enum iLoopbackType,
                                          unsigned char& iStatus);
    /// FTM_GSM_CHANNEL_ASSIGN_REQ assigns a traffic channel.
    bool FTM_GSM_CHANNEL_ASSIGN_REQ(unsigned char iSlot, FTM_GSM_BER_Channel_Modes_Enum eMode,
                                    unsigned char& iStatus);
    /// FTM_GSM_CHANNEL_RELEASE_REQ releases it.
    bool FTM_GSM_CHANNEL_RELEASE_REQ(unsigned char& iStatus);
    /// FTM_GSM_STOP_GSM_MODE_REQ ends the GSM test mode.
    bool FTM_GSM_STOP_GSM_MODE_REQ(unsigned char& iStatus);
    /// FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ moves to another traffic channel. iTSC is its training sequence.
    bool FTM_GSM_BER_CHANNEL_ASSIGN_V2_REQ(unsigned short iChannel, unsigned char iBand, unsigned char iTSC,
                                           unsigned char iSlot, FTM_GSM_BER_Channel_Modes_Enum eMode,
                                           unsigned char iPowerLevel, unsigned char& iStatus);

private:
    CommandFrame& m_frame;
};
