// The connection object: one phone, all commands.
#pragma once

#include <memory>

#include "diag/delayed_responses.h"
#include "diag/download.h"
#include "diag/frame_commands.h"
#include "diag/identity.h"
#include "diag/key_presses.h"
#include "diag/log_masks.h"
#include "diag/memory.h"
#include "diag/nv_items.h"
#include "diag/phone_queues.h"
#include "diag/phone_state.h"
#include "diag/service.h"
#include "efs2/callbacks.h"
#include "efs2/directory.h"
#include "efs2/file_attributes.h"
#include "efs2/metadata.h"
#include "efs2/names.h"
#include "efs2/open_directories.h"
#include "efs2/open_files.h"
#include "efs2/transfer.h"
#include "ftm/audio.h"
#include "ftm/bluetooth.h"
#include "ftm/broadcast_flows.h"
#include "ftm/broadcast_receiver.h"
#include "ftm/broadcast_rf.h"
#include "ftm/broadcast_statistics.h"
#include "ftm/camera.h"
#include "ftm/cdma_api2.h"
#include "ftm/egprs_test_requests.h"
#include "ftm/egprs_test_session.h"
#include "ftm/ftm_log.h"
#include "ftm/gps.h"
#include "ftm/gsm_rf.h"
#include "ftm/gsm_test_requests.h"
#include "ftm/gsm_test_session.h"
#include "ftm/hsdpa_test_requests.h"
#include "ftm/hsdpa_test_session.h"
#include "ftm/pmic_charger.h"
#include "ftm/pmic_clock.h"
#include "ftm/pmic_regulator.h"
#include "ftm/pmic_signals.h"
#include "ftm/radio_sessions.h"
#include "ftm/rf_control.h"
#include "ftm/rf_receiver.h"
#include "ftm/tx_sweep.h"
#include "ftm/wcdma_test_requests.h"
#include "ftm/wcdma_test_session.h"
#include "link/diag_connection.h"
#include "link/log_playback.h"
#include "link/message_text.h"
#include "platform/export.h"

class CommandFrame;
class QpstServer;

/// FrameOwner owns the command frame that all command families of an object share.
class FrameOwner {
protected:
    explicit FrameOwner(DiagConnection& connection);
    ~FrameOwner();
    CommandFrame& Frame() { return *m_pFrame; }

private:
    const std::unique_ptr<CommandFrame> m_pFrame;
};

/// Diag_FTM is the class that programs use: a DiagConnection with the methods of every command family. Each
/// family's header describes its methods. The bases are listed in the order in which they depend on each
/// other.
///
/// One object uses one COM port, from one application thread at a time.
class QUILLET_API Diag_FTM : public DiagConnection,
                             private FrameOwner,
                             public MessageText,
                             public LogPlayback,
                             public FrameCommands,
                             public NvItems,
                             public PhoneIdentity,
                             public PhoneState,
                             public PhoneService,
                             public PhoneMemory,
                             public LogMasks,
                             public PhoneQueues,
                             public KeyPresses,
                             public DelayedResponses,
                             public DownloadGreeting,
                             public FileAttributes,
                             public Efs2Callbacks,
                             public Efs2Metadata,
                             public Efs2Directory,
                             public Efs2Transfer,
                             public Efs2Names,
                             public Efs2OpenDirectories,
                             public Efs2OpenFiles,
                             public RfControl,
                             public RfReceiver,
                             public TxSweep,
                             public FtmLog,
                             public GsmRf,
                             public BroadcastRf,
                             public CdmaApi2,
                             public PmicClock,
                             public PmicCharger,
                             public PmicRegulator,
                             public PmicSignals,
                             public BroadcastReceiver,
                             public BroadcastFlows,
                             public BroadcastStatistics,
                             public FtmAudio,
                             public FtmCamera,
                             public FtmGps,
                             public FtmBluetooth,
                             public RadioSessions,
                             public GsmTestRequests,
                             public EgprsTestRequests,
                             public WcdmaTestRequests,
                             public HsdpaTestRequests,
                             public GsmTestSession,
                             public EgprsTestSession,
                             public WcdmaTestSession,
                             public HsdpaTestSession {
public:
    /// A connection on COM port iComPort. OpenPort or the first request opens the port. The text log starts
    /// automatically when the current directory has a file "QMSL_auto_start_log.txt".
    explicit Diag_FTM(int iComPort);
    /// The same through a port server, in server mode (see DiagConnection). The server must outlive the
    /// object. With null every request fails.
    Diag_FTM(QpstServer* pServer, int iComPort);
    /// Closes the port and ends both threads before any family is destroyed.
    ~Diag_FTM() override;

private:
    explicit Diag_FTM(std::unique_ptr<Transport> pLine);
    void OnPortOpened() override;
};
