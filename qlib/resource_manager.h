// Library contexts: one per COM port, with the connection object that each owns; the lists of ports.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/export.h"
#include "platform/types.h"

class Diag_FTM;
class EFS;
class QpstServer;
class SoftwareDownload;

/// One entry of the table of contexts. It is free while bInUse is 0; its other fields then mean nothing.
struct QLib_ResourceContext {
    Diag_FTM* pDiag_FTM;     // owned; null until it is asked for
    LONG bInUse;             // 1 while the entry holds a live context
    void* hContext;          // the handle that callers have
    unsigned short iComPort; // unique among the entries in use
    LONG iRefCount;          // CreateContext calls without their DestroyContext
    // Owned, and null until they are asked for in port-server mode:
    QpstServer* pQpstServer;
    SoftwareDownload* pSoftwareDownload;
    EFS* pEFS;
};

/// A serial port of the machine, as the port list keeps it: numbers above 255 do not survive.
struct ComPortSettings_struct {
    unsigned char iComPortNumber;
    unsigned char iReserved; // always 0
};
static_assert(sizeof(ComPortSettings_struct) == 2);

/// A logical port number and the physical port that it stands for.
struct ComPortAlias_struct {
    unsigned short iLogicalPort;
    unsigned short iPhysicalPort;
};
static_assert(sizeof(ComPortAlias_struct) == 4);

/// QLib_ResourceManager owns the contexts of the process, at most 50 at a time. A context stands for one COM
/// port; its handle is a unique non-null value. It is shared by everyone who asks for that port and dies with
/// the last reference, with DestroyAll, or at the process's end (also when the library is unloaded).
///
/// There is no lock: calls come from one thread at a time. Nothing is ever thrown. A handle that has no
/// context gives null or false and changes nothing.
///
/// In port-server mode (SetIsUsingQpst) connections go through the port server that somebody supplied with
/// AttachPortServer, and both port lists are the server's. Without one, as at first, the getters return null
/// like in direct mode, no connection object can be made, and both lists report 0 ports and false. What a
/// context already has keeps the mode in which it was made, and dies with the context in either.
class QUILLET_API QLib_ResourceManager {
public:
    /// The port number that stands for "the first port on which a phone answers".
    static constexpr unsigned short kAnyPort = 0xFFFF;

    // --- Contexts -----------------------------------------------------------------------------------

    /// CreateContext returns the handle of the port's context, which is made or gets one reference more. Null
    /// when all entries are taken, when the system gives no handle, or when kAnyPort finds no phone (that
    /// search first destroys every live context, see GetAvailablePhonesPortList).
    static void* CreateContext(unsigned short iComPort);
    /// CreateContext_LogicalPort is CreateContext for the physical port of an alias; null without one.
    static void* CreateContext_LogicalPort(unsigned short iLogicalPort);
    /// DestroyContext drops one reference; with the last one, or with bForce, the context and its connection
    /// go away (which closes the port and waits for its threads).
    static void DestroyContext(void* hContext, bool bForce);
    /// DestroyAll destroys every live context, whatever its references, and the client behind the lists.
    static void DestroyAll();
    /// GetDiag_FTM returns the connection of a context, which stays its owner. The first call makes it,
    /// without opening the port; null when that fails, and the next call tries again.
    static Diag_FTM* GetDiag_FTM(void* hContext);
    /// HasDiag_FTM tells whether a context's connection was made already.
    static bool HasDiag_FTM(void* hContext);
    /// GetComPortNumber writes the port of a context; false, with *piComPort unchanged, without one.
    static bool GetComPortNumber(void* hContext, unsigned short* piComPort);

    // --- Port server --------------------------------------------------------------------------------

    /// SetIsUsingQpst chooses between port server (true) and serial port for what is made from now on.
    static void SetIsUsingQpst(bool bIsUsingQpst) { m_bIsUsingQpst = bIsUsingQpst; }
    static bool GetIsUsingQpst() { return m_bIsUsingQpst; }
    /// The port-server objects of a context, which stays their owner. The first call makes one and connects
    /// it to the context's port; null in direct mode and when that fails, and the next call tries again.
    static QpstServer* GetQpstServer(void* hContext);
    static EFS* GetEFS(void* hContext);
    static SoftwareDownload* GetSoftwareDownload(void* hContext);

    /// GetLibraryVersion writes the version text, at most 21 bytes with its zero.
    static void GetLibraryVersion(char* sVersion);

    // --- Ports --------------------------------------------------------------------------------------

    /// GetAllPortList writes the numbers of the machine's serial ports, in the system's order. *piCount in:
    /// how many piPorts holds; out: how many were written. False, with nothing written, when the list cannot
    /// be read.
    static bool GetAllPortList(unsigned short* piCount, unsigned short* piPorts);
    /// GetAvailablePhonesPortList is GetAllPortList for the ports on which a phone answers; ports among the
    /// iIgnored first ones of piIgnored are not opened. It opens one port after the other until *piCount are
    /// found, and DESTROYS EVERY LIVE CONTEXT first, so that no port is held by the library itself. True also
    /// when no phone was found.
    static bool GetAvailablePhonesPortList(unsigned short* piCount, unsigned short* piPorts,
                                           unsigned short iIgnored, unsigned short* piIgnored);

    /// AddPortAliasEntry appends an alias; of several for one logical port the first counts. False only
    /// without memory.
    static bool AddPortAliasEntry(unsigned short iLogicalPort, unsigned short iPhysicalPort);
    /// GetPortAliasEntry: false, with iPhysicalPort unchanged, when there is no such alias.
    static bool GetPortAliasEntry(unsigned short iLogicalPort, unsigned short& iPhysicalPort);
    /// ClearPortAliasList forgets all aliases. Always true.
    static bool ClearPortAliasList();

private:
    QLib_ResourceManager() = delete;

    static QLib_ResourceContext* GetResourceEntry(void* hContext);
    static QLib_ResourceContext* EntryOfPort(unsigned short iComPort);
    static bool TakeEntry(QLib_ResourceContext& entry, unsigned short iComPort);
    static void DestroyAllAtExit();
    static void DestroyEntry(QLib_ResourceContext& entry);
    static QLib_ResourceContext* GetServerEntry(void* hContext);
    static QpstServer* GetQpstInfoServer();
    static std::vector<std::string> ServerPortNames(bool bOnlyWithPhone);
    static unsigned short FindAnsweringPort();
    static bool PhoneAnswersOn(unsigned short iComPort);
    static bool QueryRegistryPortSettings();

    static std::array<QLib_ResourceContext, 50> aResourceList;
    static bool m_bIsUsingQpst;
    static QpstServer* m_pInfoServer;
    static unsigned m_iContextCounter;
    static std::vector<ComPortAlias_struct> m_vComPortAlias;
    static std::vector<ComPortSettings_struct> m_vComPortSettings;
};
