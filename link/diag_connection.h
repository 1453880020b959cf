// The connection to one handset: its port, its threads, its queues, and the request primitive.
#pragma once

#include <memory>

#include "link/async_callback.h"
#include "link/text_log_callback.h"
#include "link/time_outs.h"
#include "platform/export.h"
#include "platform/port_error.h"
#include "platform/types.h"

class CQLibEvents_Filter;
class CQLibEvents_Listener;
class DataLogFileHandler;
class SerialControls;
class Transport;
struct ConnectionState;
struct LineRequest;

/// DiagConnection is the part of the connection object (`Diag_FTM`) that knows no command: it opens and
/// closes the COM port, sends one request and waits for the response that belongs to it, and keeps the
/// time-outs, the timers and the text log. It owns everything that talks to its port.
///
/// Threads: every operation is called from one application thread at a time and may block it for the
/// time-outs of its requests. Two more threads live inside: the receive thread while the port is open, and
/// the delivery thread, on which listeners and the asynchronous-message callback run. Both are joined
/// before the members that they use go away.
///
/// In server mode requests go through a port server and the connection has no thread of its own: packets that
/// the phone sends unasked arrive on a thread of the server's path, and what needs a serial line is refused
/// with false. A connection keeps the mode in which it was made.
///
/// Failure: false means that the exchange did not work; the reason stands in the text log.
class QUILLET_API DiagConnection {
public:
    /// A connection on COM port iComPort, which is not opened yet. Starts the delivery thread.
    explicit DiagConnection(int iComPort);
    /// A connection over a line of any kind (see Transport).
    explicit DiagConnection(std::unique_ptr<Transport> pLine);
    virtual ~DiagConnection();
    DiagConnection(const DiagConnection&) = delete;
    DiagConnection& operator=(const DiagConnection&) = delete;

    // --- The port -----------------------------------------------------------------------------------

    /// OpenPort opens the COM port, starts receiving, ends playback mode and empties both queues (the last
    /// two also when opening failed). True when the port is open.
    bool OpenPort();

    /// GetPortError says why the COM port could not be opened when that was last tried, by OpenPort or by an
    /// operation that opens it; None when it was opened, before the first try, and in server mode. On Windows
    /// a port without permission counts as held.
    PortError GetPortError() const;

    /// ClosePort closes the port, ends the receive thread (waiting at most 1000 ms) and stops the text
    /// log. True when the connection is closed afterwards; a connection that is not open does nothing.
    bool ClosePort();

    /// IsPhoneConnected tells whether a phone in diagnostic mode answers: a loopback and a version request,
    /// each bounded by QMSL_TimeOut_PhoneCheck. Opens the port when it is closed. A phone that answers
    /// neither is tried once in AT data mode when SetData2DiagSearch allows it (up to 400 ms more).
    bool IsPhoneConnected();

    /// DisconnectAndWaitForReconnection closes the port and opens it again, in server mode: iTimeOut_ms is
    /// the number of attempts, one right after the other. True when one succeeded. Over a serial port it
    /// returns false and leaves the port alone.
    bool DisconnectAndWaitForReconnection(int iTimeOut_ms);

    // --- Requests -----------------------------------------------------------------------------------

    /// SendSync sends one request packet and waits for the response with the same first byte. Packets
    /// that arrived before the request are discarded, those with another first byte are logged and
    /// discarded.
    ///   iRequestSize     bytes of the request, without framing; below 4094
    ///   piRequestBytes   the request; its first byte is the command code
    ///   piResponseSize   in: capacity of piResponseBytes; out: length of the response without its two
    ///                    FCS bytes, at most the capacity
    ///   piResponseBytes  receives the response and, as far as the capacity allows, its two FCS bytes
    ///   iExpectedCommand the response's first byte over a port server; not used over a serial port
    ///   iTimeout         ms to wait, counted from the end of the read delay
    ///   iReadDelay_ms    ms to sleep between writing the request and waiting
    /// Opens the port when it is closed (over a serial port; a port server refuses by itself). Over a port
    /// server the response comes without FCS bytes, and the read delay is not used. On false (also for an
    /// empty request), size and buffer are unchanged. In playback mode (LogPlayback) the port is not touched:
    /// the oldest packet of the command-response queue is the response, whatever its first byte, with its
    /// full length (0 when the queue is empty), and the result is true.
    bool SendSync(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                  unsigned short* piResponseSize, unsigned char* piResponseBytes,
                  unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms);

    /// SendASync writes one request packet and does not wait; a response lands in the command-response
    /// queue. iTimeout is only logged. bForceStartFlag puts a flag in front of this one frame. True when
    /// every byte went out.
    bool SendASync(unsigned short iRequestSize, const unsigned char* piRequestBytes, DWORD iTimeout,
                   bool bForceStartFlag);

    /// SendRAW is SendSync for text replies: the first packet that arrives is the reply, whatever its
    /// first byte, and the reported length is its full length. While it waits, replies in raw packet mode
    /// are cut at "OK" and "ERROR".
    bool SendRAW(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                 unsigned short* piResponseSize, unsigned char* piResponseBytes,
                 unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms);

    // --- Controls of the link -----------------------------------------------------------------------

    /// SetStartFlag makes every frame begin with a flag as well. Returns the setting before (false also
    /// when the port could not be opened).
    bool SetStartFlag(bool bStartFlag);

    /// SetPacketMode: 0 framed diagnostic mode, 1 the phone's AT data mode (raw bytes), 2 raw bytes
    /// without switching the phone. From 0 to 1 the phone is asked to enter data mode, from 1 to 0 it is
    /// switched back. False, with the mode unchanged, for another mode or when the phone does not follow.
    bool SetPacketMode(int iPacketMode);

    /// SetDTR_State, SetRTS_State set a modem line of the open port; true whatever the driver says.
    bool SetDTR_State(bool bSetDTR_High);
    bool SetRTS_State(bool bSetRTS_High);

    /// FlushRxBuffer discards what has been received of a packet that is not complete yet.
    bool FlushRxBuffer();

    /// SetData2DiagSearch says whether IsPhoneConnected may try to switch a silent phone from AT data
    /// mode to diagnostic mode (on at first). Always true.
    bool SetData2DiagSearch(bool bData2DiagSearch);

    // --- Time-outs and timers -----------------------------------------------------------------------

    /// ConfigureTimeOut sets a time-out in ms (any value, also 0). False for an unknown id.
    bool ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms);

    /// GetTimeOut returns a time-out in ms; 0 for an unknown id.
    DWORD GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId);

    /// StartTimer starts an elapsed-time timer; handles count up through the process from 1.
    DWORD StartTimer();
    /// GetTimerElapsed: ms since StartTimer; 0, with a log line, for an unknown handle.
    DWORD GetTimerElapsed(DWORD iTimerHandle);
    /// StopTimer: ms since StartTimer; 0 for an unknown handle. The timer goes on counting.
    DWORD StopTimer(DWORD iTimerHandle);
    /// PrintTimer: GetTimerElapsed, and a log line of sPrefix and the result when both are there.
    DWORD PrintTimer(DWORD iTimerHandle, const char* sPrefix);

    // --- Observers ----------------------------------------------------------------------------------

    /// AddEventListener lets pListener see every received packet that pFilter (may be null) accepts, on
    /// the delivery thread, after the connection's own listener. Both must live until
    /// RemoveEventListener, which must not be called from inside the listener. False in server mode.
    bool AddEventListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter);
    void RemoveEventListener(CQLibEvents_Listener* pListener);

    /// ConfigureAsyncMessageCallBack registers a function that sees every received packet of at least two
    /// bytes, on the delivery thread; null switches it off. In server mode that is the server's thread, and
    /// the function must not open or close the port.
    void ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack);

    // --- Text log -----------------------------------------------------------------------------------

    /// StartLogging opens (and empties) the log file and switches its output on; names are cut to 202
    /// characters. Always true: a file that cannot be opened drops its lines silently.
    bool StartLogging(const char* sFileName);
    /// StopLogging closes the log file; the callback keeps receiving messages. Always true.
    bool StopLogging();
    /// SetLogFlags sets the mask of log categories. Always true.
    bool SetLogFlags(unsigned int uiLogFlags);
    /// ConfigureLibraryTextLogCallBack registers a receiver of every log message; null switches it off.
    void ConfigureLibraryTextLogCallBack(void* pUserData, TextLogCallBack pfnCallBack);
    /// AddUserMessageToTextLog writes sText under a category, and to standard output on request.
    bool AddUserMessageToTextLog(unsigned int iCategory, const char* sText, bool bToStdout);
    /// GetDataLogFileHandler: the connection's log; it lives as long as the connection.
    DataLogFileHandler* GetDataLogFileHandler();

protected:
    /// OnPortOpened resets what a family keeps for one opening of the port. Called by OpenPort, whether or
    /// not the port could be opened.
    virtual void OnPortOpened() {}

    /// StartUp ends the construction of the whole object: the automatic text log, then the default
    /// time-outs (whose log lines are to be found in that log). Called once, last.
    void StartUp();

    /// ShutDown closes the port and stops the delivery, so that what runs on the other threads no longer
    /// touches members of derived classes. Called first in the most derived destructor; once is enough.
    void ShutDown();

    /// Self is this connection, for the constructors of derived classes.
    DiagConnection& Self() { return *this; }

private:
    friend class ConnectionAccess;

    bool VerifyConnectionIsValid();
    bool Exchange(const LineRequest& request, unsigned short* piResponseSize, unsigned char* piResponseBytes);
    void AnswerFromRecording(const LineRequest& request, unsigned short* piResponseSize,
                             unsigned char* piResponseBytes);
    SerialControls* SerialFor(const char* sOperation);
    SerialControls* OpenSerialFor(const char* sOperation);
    bool SwitchPhoneToDataMode();
    void DIAG_FTM_CheckAutoTextLog();
    void InitTimeOuts();

    const std::unique_ptr<ConnectionState> m_pState;
};
