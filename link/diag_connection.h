// The connection to one phone: its port, threads, queues and time-outs, and the exchange of packets.
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

/// DiagConnection is the part of the connection object (`Diag_FTM`) that knows no command. It opens and
/// closes the COM port, sends a request and waits for its response, and keeps the time-outs, the timers and
/// the text log. It owns everything that uses its port.
///
/// Threads: operations are called from one application thread at a time and may block it for the time-outs of
/// their requests. The connection has two threads of its own: the receive thread while the port is open, and
/// the delivery thread, which calls listeners and the asynchronous-message callback. Both are joined before
/// the members that they use are destroyed.
///
/// In server mode requests go through a port server, and the connection has no thread of its own: unsolicited
/// packets arrive on a thread of the server. Operations that need a serial line return false. The mode of a
/// connection is fixed when it is made.
///
/// Failure: false means that the operation failed. The text log holds the reason of a failed exchange.
class QUILLET_API DiagConnection {
public:
    /// Makes a connection on COM port iComPort and starts the delivery thread. The port is not opened yet.
    explicit DiagConnection(int iComPort);
    /// Makes a connection over any kind of line (see Transport).
    explicit DiagConnection(std::unique_ptr<Transport> pLine);
    virtual ~DiagConnection();
    DiagConnection(const DiagConnection&) = delete;
    DiagConnection& operator=(const DiagConnection&) = delete;

    // --- The port -----------------------------------------------------------------------------------

    /// OpenPort opens the COM port, starts receiving, ends playback mode and empties the phone-log and
    /// command-response queues (the last two even when opening fails). True when the port is open.
    bool OpenPort();

    /// GetPortError returns why the COM port could not be opened when that was last tried, by OpenPort or by
    /// an operation that opens it; None when it was opened, before the first try, and in server mode. On
    /// Windows a port without permission counts as held.
    PortError GetPortError() const;

    /// ClosePort closes the port, ends the receive thread (waiting at most 1000 ms) and stops the text log.
    /// Does nothing when the connection is closed. Always true.
    bool ClosePort();

    /// IsPhoneConnected returns whether a phone in diagnostic mode responds to a loopback or version request,
    /// each bounded by QMSL_TimeOut_PhoneCheck. Opens a closed port first; over a serial port it tries a
    /// second time when the first try fails. If the loopback gets no response and SetData2DiagSearch allows
    /// it, returns whether the phone could be switched from AT data mode (up to 400 ms more).
    bool IsPhoneConnected();

    /// DisconnectAndWaitForReconnection closes and reopens the port in server mode. iTimeOut_ms is the number
    /// of attempts, made without a pause. True when one succeeded. Over a serial port it returns false and
    /// does nothing.
    bool DisconnectAndWaitForReconnection(int iTimeOut_ms);

    // --- Requests -----------------------------------------------------------------------------------

    /// SendSync sends one request packet and waits for the response with the same first byte. Packets that
    /// arrived before the request are discarded; later ones with another first byte are logged and discarded.
    ///   iRequestSize     bytes of the request, without framing; below 4094
    ///   piRequestBytes   the request; its first byte is the command code
    ///   piResponseSize   in: capacity of piResponseBytes; out: length of the response without its two
    ///                    FCS bytes, at most the capacity
    ///   piResponseBytes  receives the response and, if the capacity allows, its two FCS bytes
    ///   iExpectedCommand first byte of the response over a port server; unused over a serial port
    ///   iTimeout         ms to wait after the read delay
    ///   iReadDelay_ms    ms to sleep between writing the request and waiting
    /// Over a serial port, opens the port when it is closed; a closed port server connection fails instead.
    /// Over a port server the response has no FCS bytes, and the read delay is not used. On false (also for
    /// an empty request) size and buffer are unchanged. In playback mode (LogPlayback) the port is not used:
    /// the response is the oldest packet of the command-response queue, whatever its first byte, with its
    /// full length (0 when the queue is empty), and the result is true.
    bool SendSync(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                  unsigned short* piResponseSize, unsigned char* piResponseBytes,
                  unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms);

    /// SendASync writes one request packet and does not wait; the response goes to the command-response
    /// queue. iTimeout is only logged. bForceStartFlag puts a flag in front of this one frame. True when
    /// every byte was written.
    bool SendASync(unsigned short iRequestSize, const unsigned char* piRequestBytes, DWORD iTimeout,
                   bool bForceStartFlag);

    /// SendRAW is SendSync for text replies: the first packet to arrive is the reply, whatever its first
    /// byte, and the reported length is its full length. While it waits in raw packet mode, replies are cut
    /// after "OK" and "ERROR". After a failure they continue to be cut until a later SendRAW succeeds.
    bool SendRAW(unsigned short iRequestSize, const unsigned char* piRequestBytes,
                 unsigned short* piResponseSize, unsigned char* piResponseBytes,
                 unsigned char iExpectedCommand, DWORD iTimeout, DWORD iReadDelay_ms);

    // --- Controls of the link -----------------------------------------------------------------------

    /// SetStartFlag puts a flag in front of every frame as well. Returns the previous setting, or false when
    /// the port could not be opened.
    bool SetStartFlag(bool bStartFlag);

    /// SetPacketMode: 0 framed diagnostic mode, 1 the phone's AT data mode (raw bytes), 2 raw bytes without
    /// switching the phone. Going from 0 to 1 asks the phone to enter data mode, from 1 to 0 switches it
    /// back. Also sets SetData2DiagSearch: on for 0, else off. False, with nothing changed, for any other
    /// mode or when the phone does not switch.
    bool SetPacketMode(int iPacketMode);

    /// SetDTR_State, SetRTS_State set a modem line of the open port. True even when the driver refuses.
    bool SetDTR_State(bool bSetDTR_High);
    bool SetRTS_State(bool bSetRTS_High);

    /// FlushRxBuffer discards the bytes of a partly received packet.
    bool FlushRxBuffer();

    /// SetData2DiagSearch sets whether IsPhoneConnected may try to switch a silent phone from AT data mode to
    /// diagnostic mode (initially true). Always true.
    bool SetData2DiagSearch(bool bData2DiagSearch);

    // --- Time-outs and timers -----------------------------------------------------------------------

    /// ConfigureTimeOut sets a time-out in ms; 0 is allowed. False for an unknown id.
    bool ConfigureTimeOut(QMSL_TimeOutType_Enum eTimeOutId, DWORD iNewValue_ms);

    /// GetTimeOut returns a time-out in ms; 0 for an unknown id.
    DWORD GetTimeOut(QMSL_TimeOutType_Enum eTimeOutId);

    /// StartTimer starts an elapsed-time timer. Handles count up from 1, across the process.
    DWORD StartTimer();
    /// GetTimerElapsed returns the ms since StartTimer, or 0 and a log line for an unknown handle.
    DWORD GetTimerElapsed(DWORD iTimerHandle);
    /// StopTimer returns the ms since StartTimer, or 0 for an unknown handle. The timer keeps running.
    DWORD StopTimer(DWORD iTimerHandle);
    /// PrintTimer returns GetTimerElapsed and logs it after sPrefix, unless it is 0 or sPrefix is null.
    DWORD PrintTimer(DWORD iTimerHandle, const char* sPrefix);

    // --- Observers ----------------------------------------------------------------------------------

    /// AddEventListener registers pListener for every received packet that pFilter (may be null) accepts. It
    /// is called on the delivery thread, after the connection's own listener. Both must live until
    /// RemoveEventListener, which the listener itself must not call. False in server mode.
    bool AddEventListener(CQLibEvents_Listener* pListener, CQLibEvents_Filter* pFilter);
    void RemoveEventListener(CQLibEvents_Listener* pListener);

    /// ConfigureAsyncMessageCallBack registers a callback for every received packet of at least two bytes,
    /// called on the delivery thread; null removes it. In server mode it is called on a thread of the server,
    /// and must not open or close the port.
    void ConfigureAsyncMessageCallBack(void* pUserData, AsyncMessageCallBack pfnCallBack);

    // --- Text log -----------------------------------------------------------------------------------

    /// StartLogging opens and empties the log file and enables output; names are cut to 202 characters.
    /// Always true: if the file cannot be opened, lines are dropped silently.
    bool StartLogging(const char* sFileName);
    /// StopLogging closes the log file; the callback still receives messages. Always true.
    bool StopLogging();
    /// SetLogFlags sets the mask of log categories. Always true.
    bool SetLogFlags(unsigned int uiLogFlags);
    /// ConfigureLibraryTextLogCallBack registers a receiver of every log message; null removes it.
    void ConfigureLibraryTextLogCallBack(void* pUserData, TextLogCallBack pfnCallBack);
    /// AddUserMessageToTextLog logs sText under a category and, if bToStdout, prints it. Always true.
    bool AddUserMessageToTextLog(unsigned int iCategory, const char* sText, bool bToStdout);
    /// GetDataLogFileHandler returns the connection's log, which lives as long as the connection.
    DataLogFileHandler* GetDataLogFileHandler();

protected:
    /// OnPortOpened resets what a family keeps for as long as the port is open. OpenPort calls it even when
    /// opening failed.
    virtual void OnPortOpened() {}

    /// StartUp completes the construction of the whole object: it starts the automatic text log, then sets
    /// the default time-outs, so that their log lines are in that log. Called once, last.
    void StartUp();

    /// ShutDown closes the port and stops the delivery, so that no other thread touches members of derived
    /// classes any more. Called first in the most derived destructor.
    void ShutDown();

    /// Self returns this connection, for the constructors of derived classes.
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
