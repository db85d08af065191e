#pragma once

#include "foundation/Vector3D.h"
#include "platform/Export.h"
#include "platform/Windows.h"

class CWnd;

/// The one voice to the user: questions in boxes, and six status lines kept as texts that windows
/// of the host show. docs/messages-and-help.md has the table of flags and how a host wires the
/// lines. All of it is static.
///
/// Formats are printf's; texts are UTF-8. Nothing here throws for want of a window.
class ZMR_GV_API MsgBox {
public:
    MsgBox() = delete;

    // Boxes. From any thread: they show in the thread of the application's main window, while this
    // one waits. A byte 0x03 in the text is shown as a blank.

    /// Shows `text` (null: none) with the buttons and the icon that `flags` ask for. IDOK,
    /// IDCANCEL, IDYES or IDNO; IDCANCEL also when no box could be shown.
    static unsigned long message_box(const char* text, unsigned long flags);
    [[gnu::format(gnu_printf, 2, 3)]] static unsigned long message_box(unsigned long flags,
                                                                       const char* format, ...);

    // Status lines.

    enum InfoLineType : unsigned {
        InfoPrompt = 0,   ///< Of the tool under the cursor.
        InfoGeneral = 1,  ///< What PutInfo and put_information put.
        InfoX = 2,
        InfoY = 3,
        InfoZ = 4,
        InfoGrid = 5,  ///< The step of the grid.
    };

    /// The window that shows the line, borrowed; null before one was set. Of the thread that owns
    /// the window. Take it out before it goes. A line beyond the last has none.
    static void SetInfoLine(InfoLineType type, CWnd* window);
    [[nodiscard]] static CWnd* GetInfoLine(InfoLineType type);
    /// The window that is told of new texts by kUpdateMessage, borrowed. With null, the default:
    /// the main window of the calling thread's object, null where there is none. Take it out before
    /// it goes: from then on no thread uses it.
    static void SetStatusBarOwner(CWnd* owner);
    [[nodiscard]] static CWnd* GetStatusBarOwner();
    /// The line's text as it is now. Lent: it stays as it is until this thread asks for the same
    /// line again. Empty for a line beyond the last.
    [[nodiscard]] static const char* GetStatusInfo(InfoLineType type);

    /// The message that tells the owner that line `wParam` has a new text. The owner's handler
    /// answers what ProseedUpdateSBMessage(wParam) gives.
    static constexpr unsigned kUpdateMessage = 0x551;

    // Putting a text, from any thread: it is cut at 1,023 bytes, kept, and the owner is told. On
    // the owner's thread it is sent the message; from others the message is posted and nothing
    // waits. While a line's message is on its way to the owner, no second one is posted: the
    // handler takes the text that is there when it runs. Without an owner the text is kept for the
    // next telling. Lines beyond the last are ignored. A text format takes no memory from the heap.

    [[gnu::format(gnu_printf, 1, 2)]] static void PutInfo(const char* format, ...);
    static void PutInfo(unsigned int formatId, ...);
    static void PutInfo();
    [[gnu::format(gnu_printf, 2, 3)]] static void PutInfoSpecial(InfoLineType type,
                                                                 const char* format, ...);
    static void PutInfoSpecial(InfoLineType type, unsigned int formatId, ...);
    static void PutInfoSpecial(InfoLineType type);
    [[gnu::format(gnu_printf, 1, 2)]] static void put_information(const char* format, ...);
    static void put_information();
    /// Lines X, Y and Z.
    static void PutVectorInfo(const Vector3D& v);
    static void PutVectorInfo();
    static void PutGridInfo(double grid);
    static void PutGridInfo();

    /// Brings the window of line `type` up to date, and at once on the screen; an unchanged text
    /// touches nothing. 1 when the line is shown; 0 when it has no window, or the window is another
    /// thread's. (Its name is spelled so in the interface.)
    static long ProseedUpdateSBMessage(unsigned int type);
};

/// MsgBox::message_box under its short name.
[[gnu::format(gnu_printf, 2, 3)]] ZMR_GV_API unsigned long message_box(unsigned long flags,
                                                                       const char* format, ...);
/// The text is string `stringId`, as GString::loadString finds it.
ZMR_GV_API unsigned long message_box(unsigned int stringId, unsigned long flags);
[[gnu::format(gnu_printf, 2, 3)]] ZMR_GV_API unsigned long GMessageBox(unsigned long flags,
                                                                       const char* format, ...);
ZMR_GV_API unsigned long GMessageBox(unsigned long flags, unsigned int formatId, ...);
/// The format is of the module's string table; with a null module as above.
ZMR_GV_API unsigned long GMessageBox(unsigned long flags, HINSTANCE module, unsigned int formatId,
                                     ...);
