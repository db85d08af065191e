#include "settings/GHelp.h"

#include "settings/HelpCommands.h"
#include "settings/HelpEngine.h"

bool GHelp::gUseHTML = true;

namespace {

constexpr WORD kHtmlHelpEntry = 14;  // HtmlHelpA

HWND pointed_window = nullptr;

zmr::HelpEngine& html_engine()
{
    static zmr::HelpEngine engine("hhctrl.ocx", kHtmlHelpEntry);
    return engine;
}

}  // namespace

HWND GHelp::PointedWindow()
{
    return pointed_window;
}

void GHelp::PointedWindow(HWND window)
{
    pointed_window = window;
}

unsigned int GHelp::TranslateWinHelpCmdToHTMLHelpCmd(unsigned int command)
{
    return zmr::html_help_command(command);
}

bool GHelp::CallHelp(HWND window, const char* file, unsigned int command, DWORD_PTR data)
{
    if (!gUseHTML)
        return ::WinHelpA(window, file, command, data) != FALSE;
    return html_engine().call(window, file, command, data);
}
