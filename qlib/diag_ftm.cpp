#include "qlib/diag_ftm.h"

#include "portserver/qpst_server.h"

Diag_FTM::Diag_FTM(int iComPort) : Diag_FTM(ConnectionPort{iComPort}) {}

Diag_FTM::Diag_FTM(QpstServer* pServer, int iComPort) : Diag_FTM(ConnectionPort{iComPort, true, pServer}) {}

Diag_FTM::Diag_FTM(const ConnectionPort& port)
    : DiagConnection(port),
      MessageText(static_cast<DiagConnection&>(*this)),
      LogPlayback(static_cast<DiagConnection&>(*this)),
      CommandFrame(static_cast<DiagConnection&>(*this)),
      NvItems(static_cast<CommandFrame&>(*this)),
      PhoneIdentity(static_cast<CommandFrame&>(*this), static_cast<NvItems&>(*this)),
      PhoneState(static_cast<CommandFrame&>(*this)),
      PhoneService(static_cast<CommandFrame&>(*this)),
      PhoneMemory(static_cast<CommandFrame&>(*this)),
      LogMasks(static_cast<CommandFrame&>(*this)),
      PhoneQueues(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this)),
      KeyPresses(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this)),
      DelayedResponses(static_cast<CommandFrame&>(*this)),
      DownloadGreeting(static_cast<CommandFrame&>(*this)),
      FileAttributes(static_cast<CommandFrame&>(*this)),
      Efs2Callbacks(static_cast<CommandFrame&>(*this)),
      Efs2Metadata(static_cast<CommandFrame&>(*this)),
      Efs2Directory(static_cast<CommandFrame&>(*this), static_cast<Efs2Callbacks&>(*this)),
      Efs2Transfer(static_cast<CommandFrame&>(*this), static_cast<Efs2Callbacks&>(*this),
                   static_cast<Efs2Metadata&>(*this)),
      Efs2Names(static_cast<CommandFrame&>(*this)),
      Efs2OpenDirectories(static_cast<CommandFrame&>(*this)),
      Efs2OpenFiles(static_cast<CommandFrame&>(*this)),
      RfControl(static_cast<CommandFrame&>(*this)),
      RfReceiver(static_cast<CommandFrame&>(*this)),
      TxSweep(static_cast<CommandFrame&>(*this)),
      FtmLog(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this)),
      GsmRf(static_cast<CommandFrame&>(*this), static_cast<FtmLog&>(*this)),
      BroadcastRf(static_cast<CommandFrame&>(*this)),
      CdmaApi2(static_cast<CommandFrame&>(*this)),
      PmicClock(static_cast<CommandFrame&>(*this)),
      PmicCharger(static_cast<CommandFrame&>(*this)),
      PmicRegulator(static_cast<CommandFrame&>(*this)),
      PmicSignals(static_cast<CommandFrame&>(*this)),
      BroadcastReceiver(static_cast<CommandFrame&>(*this)),
      BroadcastFlows(static_cast<CommandFrame&>(*this)),
      BroadcastStatistics(static_cast<CommandFrame&>(*this)),
      FtmAudio(static_cast<CommandFrame&>(*this)),
      FtmCamera(static_cast<CommandFrame&>(*this)),
      FtmGps(static_cast<CommandFrame&>(*this)),
      FtmBluetooth(static_cast<CommandFrame&>(*this), static_cast<FtmLog&>(*this)),
      GsmTestRequests(static_cast<CommandFrame&>(*this)),
      EgprsTestRequests(static_cast<CommandFrame&>(*this)),
      WcdmaTestRequests(static_cast<CommandFrame&>(*this)),
      HsdpaTestRequests(static_cast<CommandFrame&>(*this)),
      GsmTestSession(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this),
                     static_cast<FtmLog&>(*this), static_cast<GsmTestRequests&>(*this),
                     static_cast<EgprsTestRequests&>(*this), static_cast<WcdmaTestRequests&>(*this),
                     static_cast<RadioSessions&>(*this)),
      EgprsTestSession(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this),
                       static_cast<EgprsTestRequests&>(*this), static_cast<GsmTestSession&>(*this),
                       static_cast<RadioSessions&>(*this)),
      WcdmaTestSession(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this),
                       static_cast<FtmLog&>(*this), static_cast<WcdmaTestRequests&>(*this),
                       static_cast<GsmTestRequests&>(*this), static_cast<RadioSessions&>(*this)),
      HsdpaTestSession(static_cast<CommandFrame&>(*this), static_cast<LogMasks&>(*this),
                       static_cast<HsdpaTestRequests&>(*this), static_cast<RadioSessions&>(*this)) {
    StartUp();
}

Diag_FTM::~Diag_FTM() {
    ShutDown();
}

void Diag_FTM::OnPortOpened() {
    ResetBatch();
    EndRadioSessionsOfPort();
}
