#include "platform/CRgn.h"

IMPLEMENT_DYNCREATE(CRgn, CGdiObject)

int CRgn::CombineRgn(const CRgn* a, const CRgn* b, int how)
{
    return ::CombineRgn(*this, static_cast<HRGN>(a->m_hObject),
                        b != nullptr ? static_cast<HRGN>(b->m_hObject) : nullptr, how);
}

int CRgn::CopyRgn(const CRgn* source)
{
    return CombineRgn(source, nullptr, RGN_COPY);
}

BOOL CRgn::EqualRgn(const CRgn* other) const
{
    return ::EqualRgn(*this, *other);
}
