#include "portserver/function_dispatcher.h"

#include "portserver/efs.h"
#include "portserver/port_server.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"

template class FunctionDispatcherHelper<EFS>;
template class FunctionDispatcherHelper<QpstServer>;
template class FunctionDispatcherHelper<SoftwareDownload>;

FunctionDispatcher::~FunctionDispatcher() = default;

void FunctionDispatcher::Run(void* pArgument) noexcept {
    try {
        dispatch(pArgument);
    } catch (const ServerException& error) {
        m_sError = error.what();
    } catch (const ComException&) {
        m_sError = m_sOperation + " - COM exception thrown.";
    } catch (...) {
        m_sError = m_sOperation + " - Unknown exception thrown.";
    }
}
