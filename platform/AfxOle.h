#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

// The calling thread's part in OLE: drag and drop, the clipboard's data objects, pictures.

/// Starts OLE on the calling thread, which becomes an apartment of its own. TRUE also when this
/// has been done before; FALSE when the system refuses, for instance because the thread has joined
/// the apartment of free threads.
ZMR_GV_API BOOL AfxOleInit();
/// Ends what AfxOleInit started on the calling thread; without it does nothing. With `just_revoke`
/// only class factories would be taken back, of which there are none: OLE goes on.
ZMR_GV_API void AfxOleTerm(BOOL just_revoke = FALSE);
/// For hosts that call it at their start. There is no container of controls: it does nothing.
inline void AfxEnableControlContainer() {}
