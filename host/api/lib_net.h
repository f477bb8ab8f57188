// The service that fetches files of a scene from a render server.
#pragma once

#include "c4d_file.h"
#include "c4d_thread.h"

#define C4D_NETRENDER_LIBRARY_ID 1027247

class NetRenderService;

NetRenderService* GetGlobalNetRenderService(); // null if there is none
/// True if `result` was told where the file stands now.
Bool NetRenderGetFileFromServer(NetRenderService* context, const Filename& sourcePathOrName, Filename& result,
                                BaseThread* bt = nullptr);
