// Library contexts, one per COM port, with the connection object that each owns; the lists of ports.
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

/// One entry of the table of contexts. It is free while bInUse is 0, and its other fields are then
/// meaningless.
struct QLib_ResourceContext {
    Diag_FTM* pDiag_FTM;     // owned; null until first requested
    LONG bInUse;             // 1 while the entry holds a live context
    void* hContext;          // the handle given out to callers
    unsigned short iComPort; // unique among the entries in use
    LONG iRefCount;          // CreateContext calls not yet matched by DestroyContext
    // Owned; null until first requested in port-server mode:
    QpstServer* pQpstServer;
    SoftwareDownload* pSoftwareDownload;
    EFS* pEFS;
};

/// A serial port in the port list. Only the low 8 bits of its number are kept.
struct ComPortSettings_struct {
    unsigned char iComPortNumber;
    unsigned char iReserved; // always 0
};
static_assert(sizeof(ComPortSettings_struct) == 2);

/// A logical port number and the physical port that it maps to.
struct ComPortAlias_struct {
    unsigned short iLogicalPort;
    unsigned short iPhysicalPort;
};
static_assert(sizeof(ComPortAlias_struct) == 4);

/// QLib_ResourceManager owns the contexts of the process, at most 50 at a time. A context represents one COM
/// port and is shared by all callers that ask for that port; its handle is a unique non-null value. It is
/// destroyed with the last reference, by DestroyAll, or at the end of the process (also when the library is
/// unloaded).
///
/// There is no lock: calls must come from one thread at a time. No function throws. With a handle that has no
/// context, a function returns null or false and changes nothing.
///
/// In port-server mode (SetIsUsingQpst) connections go through the port server that AttachPortServer
/// supplies, and both port lists come from it. Without a port server, as initially, the getters return null
/// as in direct mode, no connection object can be made, and both lists report 0 ports and false. Objects that
/// a context already has keep the mode in which they were made, and are destroyed with it.
class QUILLET_API QLib_ResourceManager {
public:
    /// The port number that means "the first port on which a phone answers".
    static constexpr unsigned short kAnyPort = 0xFFFF;

    // --- Contexts -----------------------------------------------------------------------------------

    /// CreateContext returns the handle of the port's context, which it makes or adds a reference to. Null
    /// when all entries are taken, when the system has no handle left, or when kAnyPort finds no phone (that
    /// search first destroys every live context, see GetAvailablePhonesPortList).
    static void* CreateContext(unsigned short iComPort);
    /// CreateContext_LogicalPort is CreateContext for the physical port of an alias; null when there is no
    /// such alias.
    static void* CreateContext_LogicalPort(unsigned short iLogicalPort);
    /// DestroyContext drops one reference. With the last one, or with bForce, it destroys the context and its
    /// connection (which closes the port and waits for its threads).
    static void DestroyContext(void* hContext, bool bForce);
    /// DestroyAll destroys every live context, whatever its references, and the client that reads the
    /// server's lists.
    static void DestroyAll();
    /// GetDiag_FTM returns the connection of a context, which keeps its ownership. The first call makes it
    /// without opening the port. Null when that fails; the next call tries again.
    static Diag_FTM* GetDiag_FTM(void* hContext);
    /// HasDiag_FTM: true when a context's connection has already been made.
    static bool HasDiag_FTM(void* hContext);
    /// GetComPortNumber writes the port of a context; false, with *piComPort unchanged, when there is none.
    static bool GetComPortNumber(void* hContext, unsigned short* piComPort);

    // --- Port server --------------------------------------------------------------------------------

    /// SetIsUsingQpst selects port server (true) or serial port for objects made from now on,
    /// GetIsUsingQpst returns the selection.
    static void SetIsUsingQpst(bool bIsUsingQpst) { m_bIsUsingQpst = bIsUsingQpst; }
    static bool GetIsUsingQpst() { return m_bIsUsingQpst; }
    /// GetQpstServer, GetEFS, GetSoftwareDownload return the port-server objects of a context, which keeps
    /// their ownership. The first call makes one and connects it to the context's port. Null in direct mode
    /// and on failure; the next call tries again.
    static QpstServer* GetQpstServer(void* hContext);
    static EFS* GetEFS(void* hContext);
    static SoftwareDownload* GetSoftwareDownload(void* hContext);

    /// GetLibraryVersion writes the version text, at most 21 bytes with its zero.
    static void GetLibraryVersion(char* sVersion);

    // --- Ports --------------------------------------------------------------------------------------

    /// GetAllPortList writes the numbers of the machine's serial ports, in the system's order. *piCount in:
    /// the room in piPorts; out: how many were written. False, with nothing written, when the list cannot be
    /// read.
    static bool GetAllPortList(unsigned short* piCount, unsigned short* piPorts);
    /// GetAvailablePhonesPortList is GetAllPortList for the ports on which a phone answers. The first
    /// iIgnored ports in piIgnored are not opened. It opens one port after another until *piCount are found,
    /// and DESTROYS EVERY LIVE CONTEXT first, so that the library itself holds no port. True also when no
    /// phone was found.
    static bool GetAvailablePhonesPortList(unsigned short* piCount, unsigned short* piPorts,
                                           unsigned short iIgnored, unsigned short* piIgnored);

    /// AddPortAliasEntry appends an alias. The first alias of a logical port is used. False only when memory
    /// runs out.
    static bool AddPortAliasEntry(unsigned short iLogicalPort, unsigned short iPhysicalPort);
    /// GetPortAliasEntry: false, with iPhysicalPort unchanged, when there is no such alias.
    static bool GetPortAliasEntry(unsigned short iLogicalPort, unsigned short& iPhysicalPort);
    /// ClearPortAliasList removes all aliases. Always true.
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
