#include "platform/CObject.h"

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), nullptr,
                                             nullptr};

CObject* CRuntimeClass::CreateObject() const
{
    return m_pfnCreateObject != nullptr ? m_pfnCreateObject() : nullptr;
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const
{
    for (const CRuntimeClass* at = this; at != nullptr; at = at->m_pBaseClass)
        if (at == base)
            return 1;
    return 0;
}

CObject* AfxDynamicDownCast(const CRuntimeClass* wanted, CObject* object)
{
    return object != nullptr && object->IsKindOf(wanted) ? object : nullptr;
}
