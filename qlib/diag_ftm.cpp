#include "qlib/diag_ftm.h"

#include "portserver/qpst_server.h"

Diag_FTM::Diag_FTM(int iComPort) : Diag_FTM(ConnectionPort{iComPort}) {}

Diag_FTM::Diag_FTM(QpstServer* pServer, int iComPort) : Diag_FTM(ConnectionPort{iComPort, true, pServer}) {}

Diag_FTM::Diag_FTM(const ConnectionPort& port)
    : DiagConnection(port),
      CommandFrame(static_cast<DiagConnection&>(*this)),
      FileAttributes(static_cast<CommandFrame&>(*this)),
      Efs2Callbacks(static_cast<CommandFrame&>(*this)),
      Efs2Metadata(static_cast<CommandFrame&>(*this)),
      Efs2Directory(static_cast<CommandFrame&>(*this), static_cast<Efs2Callbacks&>(*this)),
      Efs2Transfer(static_cast<CommandFrame&>(*this), static_cast<Efs2Callbacks&>(*this),
                   static_cast<Efs2Metadata&>(*this)) {
    StartUp();
}

Diag_FTM::~Diag_FTM() {
    ShutDown();
}
