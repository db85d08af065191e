#include "platform/CGdiObject.h"

#include "platform/CBitmap.h"
#include "platform/CBrush.h"
#include "platform/CFont.h"
#include "platform/CPen.h"
#include "platform/CRgn.h"
#include "platform/HandlesGdi.h"
#include "platform/ThreadState.h"

#include <utility>

IMPLEMENT_DYNCREATE(CGdiObject, CObject)

CGdiObject::~CGdiObject()
{
    DeleteObject();
}

BOOL CGdiObject::Attach(HGDIOBJ object)
{
    if (object == nullptr || m_hObject != nullptr)
        return FALSE;
    zmr::ThreadState::current().drawing_objects.set_permanent(object, this);
    m_hObject = object;
    return TRUE;
}

HGDIOBJ CGdiObject::Detach()
{
    if (m_hObject != nullptr)
        zmr::ThreadState::current().drawing_objects.remove_permanent(m_hObject);
    return std::exchange(m_hObject, nullptr);
}

BOOL CGdiObject::DeleteObject()
{
    const HGDIOBJ object = Detach();
    return object != nullptr && ::DeleteObject(object);
}

CGdiObject* CGdiObject::FromHandle(HGDIOBJ object)
{
    auto& objects = zmr::ThreadState::current().drawing_objects;
    switch (::GetObjectType(object)) {
        case OBJ_PEN:
        case OBJ_EXTPEN:
            return objects.from_handle<&CGdiObject::m_hObject, CPen>(object);
        case OBJ_BRUSH:
            return objects.from_handle<&CGdiObject::m_hObject, CBrush>(object);
        case OBJ_FONT:
            return objects.from_handle<&CGdiObject::m_hObject, CFont>(object);
        case OBJ_BITMAP:
            return objects.from_handle<&CGdiObject::m_hObject, CBitmap>(object);
        case OBJ_REGION:
            return objects.from_handle<&CGdiObject::m_hObject, CRgn>(object);
        default:
            return objects.from_handle<&CGdiObject::m_hObject>(object);
    }
}

BOOL CGdiObject::CreateStockObject(int code)
{
    return Attach(::GetStockObject(code));
}

HGDIOBJ CGdiObject::GetSafeHandle() const
{
    return this == nullptr ? nullptr : m_hObject;
}

BOOL CGdiObject::take(HGDIOBJ made)
{
    zmr::OwnedGdiObject object(made);
    if (!Attach(object.get()))
        return FALSE;
    static_cast<void>(object.release());
    return TRUE;
}
