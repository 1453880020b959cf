// Commands that answer in two stages: at once that they began, later that they ended.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
struct QueueItem;

/// DelayedResponses: the first answer is awaited within QMSL_TimeOut_SyncRequest, each delayed response
/// within QMSL_TimeOut_MultipleResponse. True when all of them came and none of those that count reported an
/// error. Accepted ones are left in the connection's delayed-response queue until the next such command.
/// Caller's thread. The frame must outlive it.
class QUILLET_API DelayedResponses {
public:
    explicit DelayedResponses(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_NV_CNV_DIAG_BACKUP_F makes the phone back up its NV items.
    bool DIAG_NV_CNV_DIAG_BACKUP_F();

    /// GPS_SET_TEST_MODE_PARAMS sets the parameters of the GPS test mode: five bytes and four numbers, of
    /// which the last is sent twice.
    bool GPS_SET_TEST_MODE_PARAMS(unsigned char iByte1, unsigned char iByte2, unsigned char iByte3,
                                  unsigned char iByte4, unsigned char iByte5, DWORD iValue1, DWORD iValue2,
                                  DWORD iValue3, DWORD iValue4);

    /// HS_DISPLAY_CAPTURE_DELAYED_CMD makes the phone capture a part of its display (in pixels) under a file
    /// name. The picture itself is not fetched; the log says so. A name that does not fit a request is not
    /// sent, and the result is false.
    bool HS_DISPLAY_CAPTURE_DELAYED_CMD(unsigned char iDisplayID, unsigned short iStartingRow,
                                        unsigned short iStartingCol, unsigned short iHeight,
                                        unsigned short iWidth, const char* sFileName);

protected:
    /// SendDiag2WithMultipleResponse sends the request as built and waits for its answer and for
    /// iNumResponses delayed responses. False at once when the first answer announces
    /// none: it is too short, carries a status or a count, or no id. Then packets of the command-response
    /// queue count whose id is the announced one and whose status is 0; all others are dropped while the wait
    /// goes on. The second argument is not used.
    bool SendDiag2WithMultipleResponse(int iNumResponses, DWORD iUnused);

private:
    bool IsAnnounced(unsigned short& iResponseId);
    bool WaitForOne(unsigned short iResponseId);
    bool IsAwaited(const QueueItem& item, unsigned short iResponseId);

    CommandFrame& m_frame;
};
