#pragma once

#include "platform/Export.h"
#include "platform/PlatformTypes.h"

class CObject;

/// What is known of a class at run time. One record for each class, a static member of it, so that
/// its address is the class's identity across modules.
struct ZMR_GV_API CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    CObject* (*m_pfnCreateObject)();    ///< Null for a class that cannot be made by its record.
    const CRuntimeClass* m_pBaseClass;  ///< Null for CObject.

    /// A new object, owned by the caller; null for a class that cannot be made so.
    [[nodiscard]] CObject* CreateObject() const;
    /// True for the class itself and for all of its bases.
    [[nodiscard]] BOOL IsDerivedFrom(const CRuntimeClass* base) const;
};

/// Base of the platform's classes that are asked for their class at run time.
class ZMR_GV_API CObject {
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    [[nodiscard]] virtual const CRuntimeClass* GetRuntimeClass() const { return &classCObject; }
    [[nodiscard]] BOOL IsKindOf(const CRuntimeClass* wanted) const
    {
        return GetRuntimeClass()->IsDerivedFrom(wanted);
    }

    static const CRuntimeClass classCObject;

protected:
    CObject() = default;
};

/// `object` when it is of the class or one derived from it, else null; null for null.
[[nodiscard]] ZMR_GV_API CObject* AfxDynamicDownCast(const CRuntimeClass* wanted, CObject* object);

#define RUNTIME_CLASS(class_name) (&class_name::class##class_name)
#define DYNAMIC_DOWNCAST(class_name, object) \
    (static_cast<class_name*>(AfxDynamicDownCast(RUNTIME_CLASS(class_name), object)))

/// In the class: it has a record. The class's source has IMPLEMENT_DYNAMIC.
#define DECLARE_DYNAMIC(class_name)                                      \
public:                                                                  \
    static const CRuntimeClass class##class_name;                        \
    [[nodiscard]] const CRuntimeClass* GetRuntimeClass() const override; \
                                                                         \
private:

/// As DECLARE_DYNAMIC, for a class that its record can make.
#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
public:                               \
    static CObject* CreateObject();   \
                                      \
private:

#define ZMR_IMPLEMENT_RUNTIME_CLASS(class_name, base_name, maker)                            \
    const CRuntimeClass class_name::class##class_name = {                                    \
        #class_name, static_cast<int>(sizeof(class_name)), maker, RUNTIME_CLASS(base_name)}; \
    const CRuntimeClass* class_name::GetRuntimeClass() const                                 \
    {                                                                                        \
        return &class##class_name;                                                           \
    }
#define IMPLEMENT_DYNAMIC(class_name, base_name) \
    ZMR_IMPLEMENT_RUNTIME_CLASS(class_name, base_name, nullptr)
#define IMPLEMENT_DYNCREATE(class_name, base_name) \
    CObject* class_name::CreateObject()            \
    {                                              \
        return new class_name;                     \
    }                                              \
    ZMR_IMPLEMENT_RUNTIME_CLASS(class_name, base_name, &class_name::CreateObject)
