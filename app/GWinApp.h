#pragma once

#include "platform/CWinApp.h"

#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GFile.h"
#include "foundation/TGCollection.h"
#include "settings/RegistryManager.h"

#include <atomic>

/// The program of a host, which derives from it and has one object of its class with static life.
/// To the platform's application it adds: objects that are destroyed while a handler runs are freed
/// when it is over, idlers are called, accelerators of any window are translated, plug-in modules
/// are loaded, a GLibraryException or a processor fault in a handler ends in a message box and not
/// in the program's end, and message boxes may come from any thread. It makes no GEvents of the
/// window's messages: that is the host's part. User-interface thread, but for DoMessageBox.
/// See docs/application.md.
class ZMR_GV_API GWinApp : public CWinApp {
    DECLARE_DYNAMIC(GWinApp)

public:
    /// Takes the user's locale, with numbers as in C; from here on a failing `new` throws
    /// OutOfMemory_Exception, and GString finds the texts of the resource chain.
    GWinApp();
    ~GWinApp() override;

    /// Starts OLE, and help; allows deferred destruction. A host's own calls it first. FALSE when
    /// OLE does not start, after a message box.
    BOOL InitInstance() override;
    /// The message loop, until the main window is gone. A processor fault of this thread becomes a
    /// GLibraryException; one that a handler lets out is shown, and the loop goes on with the next
    /// message; behind one of an idle turn it waits for input first, so that an idler that always
    /// fails does not shut the user out. Any other exception goes to the caller.
    int Run() override;
    BOOL PreTranslateMessage(MSG* message) override;
    /// Frees what was destroyed. With `count` 0 it then runs the idlers and brings commands up to
    /// date, else it sleeps until there is input. Always TRUE: so the loop calls it twice for each
    /// idle period, and the second call takes no processor time.
    BOOL OnIdle(LONG count) override;
    /// Ends deferred destruction, help and OLE, and unloads the modules. What an ending module
    /// throws is dropped.
    int ExitInstance() override;

    /// Shows a message box and returns its answer. Any thread: from another one the box shows in
    /// the main window's thread, and the caller waits, so that it must hold no lock which that
    /// thread may need; IDCANCEL when the main window did not answer. While it shows, the thread's
    /// other windows are disabled, and idlers run. Before there is a main window it shows in the
    /// calling thread.
    int DoMessageBox(LPCTSTR text, UINT type, UINT help) override;

    /// Shows help: `command` and `data` are the classic engine's, translated for the HTML engine
    /// where that is in use; a command that it does not have shows nothing. Frames leave the help
    /// mode, menus and captures end. A failure is told in a message box.
    void WinHelpA(DWORD_PTR data, UINT command) override;

    /// Loads the modules whose file names match `mask`: from the program's directory, from its
    /// `subdirectory` with all below (null: none), and from the directories to which the mask is
    /// redirected. Those directories go in front of the PATH first. What cannot be loaded is left
    /// out without a message. The modules stay until ExitInstance.
    virtual void load_external_modules(const char* mask, const char* subdirectory);
    [[nodiscard]] const TGCollection<GDynamicLinkLibrary>& external_modules() const
    {
        return modules_;
    }

    /// Reads the list of recent files, which gets `count` places (0: no list), and the number of
    /// preview pages, through RegistryManager::get(). A former list goes.
    void LoadStdProfileSettings(unsigned int count);
    /// Writes both back; 0 preview pages are not written.
    void SaveStdProfileSettings();
    /// Puts the file at the front of the list and writes it. A text that can name no file is
    /// ignored.
    void AddToRecentFileList(const char* path) override;

    /// The translator of processor faults: throws a GLibraryException with text 10000, whatever the
    /// fault.
    static void SeTranslatorFunc(unsigned int code, EXCEPTION_POINTERS* pointers);

protected:
    DECLARE_MESSAGE_MAP()

    /// The help file for a window that asked for help, or for none (null). This one gives the
    /// program's, with the extension "chm" for the HTML engine. A host overrides it where modules
    /// have files of their own.
    [[nodiscard]] virtual GFile help_file_for_window(HWND window);

private:
    static LRESULT CALLBACK MsgBoxHook(int code, WPARAM wparam, LPARAM lparam);
    static LRESULT CALLBACK MsgBoxProc(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

    void watch_main_window();
    void leave_main_window();
    bool give_procedure_back();
    [[nodiscard]] HWND main_window_of_another_thread() const;
    [[nodiscard]] bool show_help(CWnd* main_window, const GFile& file, unsigned int command,
                                 DWORD_PTR data);

    HHOOK message_hook_ = nullptr;  ///< Waits for the main window; null once it was there.
    WNDPROC main_window_procedure_ = nullptr;     ///< The main window's own, behind MsgBoxProc.
    std::atomic<HWND> watched_window_ = nullptr;  ///< Has MsgBoxProc. Read by any thread.
    void (*former_new_handler_)() = nullptr;
    bool idle_work_failed_ = false;  ///< What Run caught came from an idle turn.
    TGCollection<GDynamicLinkLibrary> modules_{0, 4, 1};
    RegistryManager registry_;
};
