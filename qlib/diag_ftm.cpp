#include "qlib/diag_ftm.h"

#include "diag/command_frame.h"
#include "link/serial_line.h"
#include "portserver/server_line.h"

FrameOwner::FrameOwner(DiagConnection& connection) : m_pFrame(std::make_unique<CommandFrame>(connection)) {}

FrameOwner::~FrameOwner() = default;

Diag_FTM::Diag_FTM(int iComPort) : Diag_FTM(MakeLine(iComPort)) {}

Diag_FTM::Diag_FTM(QpstServer* pServer, int iComPort)
    : Diag_FTM(std::make_unique<ServerLine>(pServer, iComPort)) {}

Diag_FTM::Diag_FTM(std::unique_ptr<Transport> pLine)
    : DiagConnection(std::move(pLine)),
      FrameOwner(Self()),
      MessageText(Self()),
      LogPlayback(Self()),
      FrameCommands(Frame()),
      NvItems(Frame()),
      PhoneIdentity(Frame(), *this),
      PhoneState(Frame()),
      PhoneService(Frame()),
      PhoneMemory(Frame()),
      LogMasks(Frame()),
      PhoneQueues(Frame(), *this),
      KeyPresses(Frame(), *this),
      DelayedResponses(Frame()),
      DownloadGreeting(Frame()),
      FileAttributes(Frame()),
      Efs2Callbacks(Frame()),
      Efs2Metadata(Frame()),
      Efs2Directory(Frame(), *this),
      Efs2Transfer(Frame(), *this, *this),
      Efs2Names(Frame()),
      Efs2OpenDirectories(Frame()),
      Efs2OpenFiles(Frame()),
      RfControl(Frame()),
      RfReceiver(Frame()),
      TxSweep(Frame()),
      FtmLog(Frame(), *this),
      GsmRf(Frame(), *this),
      BroadcastRf(Frame()),
      CdmaApi2(Frame()),
      PmicClock(Frame()),
      PmicCharger(Frame()),
      PmicRegulator(Frame()),
      PmicSignals(Frame()),
      BroadcastReceiver(Frame()),
      BroadcastFlows(Frame()),
      BroadcastStatistics(Frame()),
      FtmAudio(Frame()),
      FtmCamera(Frame()),
      FtmGps(Frame()),
      FtmBluetooth(Frame(), *this),
      GsmTestRequests(Frame()),
      EgprsTestRequests(Frame()),
      WcdmaTestRequests(Frame()),
      HsdpaTestRequests(Frame()),
      GsmTestSession(Frame(), *this, *this, *this, *this, *this, *this),
      EgprsTestSession(Frame(), *this, *this, *this, *this),
      WcdmaTestSession(Frame(), *this, *this, *this, *this, *this),
      HsdpaTestSession(Frame(), *this, *this, *this) {
    StartUp();
}

Diag_FTM::~Diag_FTM() {
    ShutDown();
}

void Diag_FTM::OnPortOpened() {
    ResetBatch();
    EndRadioSessionsOfPort();
}
