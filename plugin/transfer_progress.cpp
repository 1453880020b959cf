#include "plugin/transfer_progress.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "plugin/front_state.h"
#include "plugin/operation.h"
#include "qlib/call_layer.h"

namespace {

void Report(int iPercent) {
    if (!ReportProgress(iPercent))
        return;
    front.bAborted = true;
    QLIB_EFS2_DIAG_ABORT(front.ContextHandle);
}

} // namespace

Transfer::Transfer() : m_bClaimed(!std::exchange(front.bTransferRunning, true)) {
    if (m_bClaimed)
        front.bAborted = false;
}

Transfer::~Transfer() {
    if (!m_bClaimed)
        return;
    front.bTransferRunning = false;
    front.TransferSize = 0;
}

bool Transfer::Begin(DWORD iSize) {
    front.TransferSize = iSize;
    Report(0);
    return !front.bAborted;
}

bool Transfer::WasAborted() const {
    return front.bAborted;
}

unsigned char TransferProgress(char* const, char* const, int, int, DWORD iBytesDone, DWORD, void*) {
    if (front.TransferSize != 0)
        Report(static_cast<int>(std::min<uint64_t>(uint64_t{iBytesDone} * 100 / front.TransferSize, 100)));
    return 0;
}
