#include "platform/CommonControls.h"

namespace zmr {

void load_common_controls()
{
    static const BOOL loaded = [] {
        INITCOMMONCONTROLSEX wanted{sizeof wanted, ICC_WIN95_CLASSES | ICC_BAR_CLASSES};
        return ::InitCommonControlsEx(&wanted);
    }();
    static_cast<void>(loaded);  // where it failed, making the control does
}

}  // namespace zmr
