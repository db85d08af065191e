// A program that ends badly, as its word says: what ends it is seen from outside. Prints "begin" in
// front of the deed, and "survived" if it comes behind it.
#include "app/GWinApp.h"
#include "app/GWinThread.h"
#include "platform/AfxState.h"
#include "platform/CFrameWnd.h"

#include <cstdio>
#include <stdexcept>
#include <string>

namespace {

std::string word;

void say(const char* text)
{
    std::puts(text);
    std::fflush(stdout);
}

/// Calls itself until the stack is full. The depth is looked at, so that each call has a frame.
[[gnu::noinline]] unsigned fill_stack(unsigned depth)
{
    volatile unsigned char frame[1024];
    frame[depth % sizeof frame] = static_cast<unsigned char>(depth);
    return depth == 0 ? 0 : fill_stack(depth + 1) + frame[depth % sizeof frame];
}

struct Foreign {
    int number;
};

unsigned do_it(void*)
{
    if (word.starts_with("overflow"))
        std::printf("%u\n", fill_stack(1));
    if (word == "int")
        throw 42;
    if (word == "exception")
        throw std::runtime_error("nobody catches this");
    if (word == "foreign")
        throw Foreign{7};
    return 0;
}

class ChildFrame : public CFrameWnd {
public:
    static constexpr UINT kRun = WM_APP + 1;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnRun(WPARAM, LPARAM)
    {
        say("begin");
        if (word == "overflow") {
            do_it(nullptr);
        } else {
            GWinThread worker(&do_it, nullptr, CREATE_SUSPENDED);
            worker.m_bAutoDelete = FALSE;
            worker.ResumeThread();
            ::WaitForSingleObject(worker.m_hThread, 30'000);
        }
        say("survived");
        ::PostQuitMessage(0);
        return 0;
    }
};

BEGIN_MESSAGE_MAP(ChildFrame, CFrameWnd)
    ON_MESSAGE(ChildFrame::kRun, &ChildFrame::OnRun)
END_MESSAGE_MAP()

class ChildHost : public GWinApp {
public:
    BOOL InitInstance() override
    {
        if (!GWinApp::InitInstance())
            return FALSE;
        auto* const frame = new ChildFrame;  // deletes itself behind its window
        m_pMainWnd = frame;
        return frame->Create(nullptr, "Child") && frame->PostMessage(ChildFrame::kRun);
    }
};

ChildHost host;

}  // namespace

int main(int count, char** words)
{
    word = count > 1 ? words[1] : "";
    return AfxWinMain(::GetModuleHandle(nullptr), nullptr, ::GetCommandLine(), SW_HIDE);
}
