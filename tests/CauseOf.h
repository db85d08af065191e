#pragma once

/// The cause of the Exception* that `action` throws, a CFileException for instance; -1 when it
/// throws none.
template <class Exception, class Action>
int cause_of(const Action& action)
{
    try {
        action();
    } catch (Exception* failure) {
        const int cause = failure->m_cause;
        failure->Delete();
        return cause;
    }
    return -1;
}
