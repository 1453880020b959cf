#include "portserver/function_dispatcher.h"

#include "portserver/efs.h"
#include "portserver/qpst_server.h"
#include "portserver/software_download.h"

template class FunctionDispatcherHelper<EFS>;
template class FunctionDispatcherHelper<QpstServer>;
template class FunctionDispatcherHelper<SoftwareDownload>;

FunctionDispatcher::~FunctionDispatcher() = default;
