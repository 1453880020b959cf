// Compiled and never run: what quillet.h leaves in a program. The program's own names come before and after
// it; <syslog.h> and <windows.h> are full of macros.
#ifdef _WIN32
#include <windows.h>
#else
#include <syslog.h>
#endif

struct Clock {};
struct Milliseconds {};
struct Input {};
class Transport;
enum Conversion { kMiles, kPounds };
int AsInt;
int LogLine;
int LogText;
int SendFtm;
int AppendFields;
int TakeValues;
int TickCount_ms;
int ComputeCrc16;
int WithoutFcs;
int ParseExtendedMessage;
int DescribeExtendedMessage;
int ExpandFormat;
int MakePortServer;
int MakeLine;
int ReleaseUnneededPins;
int WaitWithMessages;

#include "quillet.h"

// What it does leave: the connection with all operations, the call layer, the clients of a port server.
static_assert(sizeof(Diag_FTM) > 0 && sizeof(QpstServer) > 0 && sizeof(EFS) > 0 &&
              sizeof(SoftwareDownload) > 0);
static_assert(sizeof(CQLibEventListener) > 0 && sizeof(CQLibMessageQueue) > 0 &&
              sizeof(DataLogFileHandler) > 0);
static_assert(LOG_FN == 0x0002 && LOG_RET == 0x0004);
static_assert(FTM_MODE_ID_GSM_BER == 13 && QMSL_TimeOut_PhoneCheck == 1);
#ifndef _WIN32
static_assert(LOG_ERR == 3, "the unscoped name is that of <syslog.h>");
#endif
