#include "controls/GMfcCommandEnabled.h"

#include "platform/CCmdUI.h"

namespace {

/// A place in the user interface that is nowhere: it only keeps what it is told.
class CommandProbe final : public CCmdUI {
public:
    explicit CommandProbe(unsigned int id) { m_nID = id; }

    void Enable(BOOL on) override
    {
        is_enabled_ = on != FALSE;
        m_bEnableChanged = TRUE;
    }
    [[nodiscard]] bool is_enabled() const { return is_enabled_; }

private:
    bool is_enabled_ = true;
};

}  // namespace

bool GMfcCommandEnabled(CCmdTarget& target, unsigned int id)
{
    CommandProbe probe(id);
    probe.DoUpdate(&target, TRUE);
    return probe.is_enabled();
}
