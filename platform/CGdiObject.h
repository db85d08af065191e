#pragma once

#include "platform/CObject.h"
#include "platform/Windows.h"

/// A drawing object of the system: base of pens, brushes, fonts, bitmaps and regions. An object
/// that made or attached its handle deletes it at its end; the system refuses that while the handle
/// is selected into a device context, so put the former one back first. An object serves the thread
/// that attached its handle.
class ZMR_GV_API CGdiObject : public CObject {
    DECLARE_DYNCREATE(CGdiObject)

public:
    CGdiObject() = default;
    ~CGdiObject() override;

    /// Takes `object` over. FALSE, with nothing changed, when it is null or this object has one.
    BOOL Attach(HGDIOBJ object);
    /// Gives the handle up to the caller.
    HGDIOBJ Detach();
    /// Ends the handle. FALSE when there was none or it could not be deleted; it is let go anyhow.
    BOOL DeleteObject();
    /// The object of the handle: the one that attached it in this thread, else a temporary one of
    /// the class that fits its kind, which lives until the thread's next idle turn and never
    /// deletes it. Null for null.
    [[nodiscard]] static CGdiObject* FromHandle(HGDIOBJ object);

    /// One of the system's own objects, by its code: BLACK_PEN, DEFAULT_GUI_FONT ...; never
    /// deleted.
    BOOL CreateStockObject(int code);
    /// Copies at most `size` bytes of the object's description; their number, 0 on failure.
    int GetObject(int size, LPVOID description) const
    {
        return ::GetObject(m_hObject, size, description);
    }
    /// OBJ_PEN, OBJ_BRUSH ...; 0 when there is none.
    [[nodiscard]] UINT GetObjectType() const { return ::GetObjectType(m_hObject); }
    /// Null also when called on a null pointer.
    [[nodiscard]] HGDIOBJ GetSafeHandle() const;
    [[nodiscard]] operator HGDIOBJ() const { return m_hObject; }
    friend bool operator==(const CGdiObject& a, const CGdiObject& b)
    {
        return a.m_hObject == b.m_hObject;
    }

    HGDIOBJ m_hObject = nullptr;

protected:
    /// Takes over what was just made; deletes it when this object has a handle already.
    BOOL take(HGDIOBJ made);
    /// As FromHandle, for a kind's class: null when the handle is of another kind.
    template <class Kind>
    [[nodiscard]] static Kind* from_handle_of(HGDIOBJ object)
    {
        return dynamic_cast<Kind*>(CGdiObject::FromHandle(object));
    }
};
