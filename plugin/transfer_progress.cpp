#include "plugin/transfer_progress.h"

#include <algorithm>
#include <cstdint>

#include "plugin/front.h"
#include "plugin/operation.h"
#include "qlib/call_layer.h"

Transfer::Transfer(Operation& operation) : m_operation(operation), m_bClaimed(!operation.State().pTransfer) {
    if (m_bClaimed)
        operation.State().pTransfer = this;
}

Transfer::~Transfer() {
    if (m_bClaimed)
        m_operation.State().pTransfer = nullptr;
}

bool Transfer::Begin(DWORD iSize) {
    m_iSize = iSize;
    Report(0);
    return !m_bAborted;
}

void Transfer::OnBlock(DWORD iBytesDone) {
    m_iBytesDone = iBytesDone;
    if (m_iSize != 0)
        Report(static_cast<int>(std::min<uint64_t>(uint64_t{iBytesDone} * 100 / m_iSize, 100)));
}

void Transfer::Report(int iPercent) {
    if (!m_operation.ReportProgress(iPercent))
        return;
    m_bAborted = true;
    QLIB_EFS2_DIAG_ABORT(m_operation.Context());
}

unsigned char TransferProgress(char* const, char* const, int, int, DWORD iBytesDone, DWORD, void*) {
    if (Transfer* const pTransfer = TheFront().state.pTransfer)
        pTransfer->OnBlock(iBytesDone);
    return 0;
}
