#include "core/network.h"

NetRenderService* GetGlobalNetRenderService()
{
    return host::PartOf<host::Network>().service;
}

Bool NetRenderGetFileFromServer(NetRenderService* context, const Filename& sourcePathOrName, Filename& result,
                                BaseThread*)
{
    return context && context->fetch(sourcePathOrName, result);
}
