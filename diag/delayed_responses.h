// Commands that the phone answers twice: at once when it begins, later when it is done.
#pragma once

#include "platform/export.h"
#include "platform/types.h"

class CommandFrame;
struct QueueItem;

/// DelayedResponses: the first response must arrive within QMSL_TimeOut_SyncRequest, each delayed response
/// within QMSL_TimeOut_MultipleResponse. True when the first response announces delayed ones and all of these
/// arrive with status 0. Accepted delayed responses stay in the connection's delayed-response queue until the
/// next such command. Caller's thread. The frame must outlive it.
class QUILLET_API DelayedResponses {
public:
    explicit DelayedResponses(CommandFrame& frame) : m_frame(frame) {}

    /// DIAG_NV_CNV_DIAG_BACKUP_F makes the phone back up its NV items.
    bool DIAG_NV_CNV_DIAG_BACKUP_F();

    /// GPS_SET_TEST_MODE_PARAMS sets the parameters of the GPS test mode: five bytes and four numbers. The
    /// last number is sent twice.
    bool GPS_SET_TEST_MODE_PARAMS(unsigned char iByte1, unsigned char iByte2, unsigned char iByte3,
                                  unsigned char iByte4, unsigned char iByte5, DWORD iValue1, DWORD iValue2,
                                  DWORD iValue3, DWORD iValue4);

    /// HS_DISPLAY_CAPTURE_DELAYED_CMD makes the phone capture part of its display (in pixels) to a file. The
    /// picture itself is not fetched, which the log notes. False, with nothing sent, when the name does not
    /// fit in a request.
    bool HS_DISPLAY_CAPTURE_DELAYED_CMD(unsigned char iDisplayID, unsigned short iStartingRow,
                                        unsigned short iStartingCol, unsigned short iHeight,
                                        unsigned short iWidth, const char* sFileName);

protected:
    /// SendDiag2WithMultipleResponse sends the request as built, then waits for its response and for
    /// iNumResponses delayed responses. False at once when the first response is too short, has a status or a
    /// count other than 0, or has the id 0. A packet of the command-response queue is accepted when its id
    /// matches and its status is 0; all others are dropped during the wait. The second argument is not used.
    bool SendDiag2WithMultipleResponse(int iNumResponses, DWORD iUnused);

private:
    bool IsAnnounced(unsigned short& iResponseId);
    bool WaitForOne(unsigned short iResponseId);
    bool IsAwaited(const QueueItem& item, unsigned short iResponseId);

    CommandFrame& m_frame;
};
