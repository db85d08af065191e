// Pseudo consoles are younger than the systems that the product runs on.
#undef _WIN32_WINNT
#define _WIN32_WINNT 0x0A00
#define NTDDI_VERSION 0x0A000006

#include "tests/support/ChildProcess.h"

#include "platform/Handles.h"
#include "platform/WideText.h"
#include "tests/support/CommandLine_win.h"
#include "tests/support/PseudoConsole_win.h"

namespace {

std::wstring wide(const std::string& text)
{
    std::wstring result;
    static_cast<void>(zmr::to_wide(text, result));  // the tests' words are UTF-8
    return result;
}

SECURITY_ATTRIBUTES inherited()
{
    return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
}

zmr::OwnedKernelHandle output_file(const std::string& name)
{
    SECURITY_ATTRIBUTES security = inherited();
    const HANDLE file = ::CreateFileW(wide(name).c_str(), GENERIC_WRITE, FILE_SHARE_READ, &security,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    return zmr::OwnedKernelHandle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

// The test's own error output, to be given away; null when it has none.
zmr::OwnedKernelHandle own_errors()
{
    HANDLE copy = nullptr;
    if (!::DuplicateHandle(::GetCurrentProcess(), ::GetStdHandle(STD_ERROR_HANDLE),
                           ::GetCurrentProcess(), &copy, 0, TRUE, DUPLICATE_SAME_ACCESS))
        return {};
    return zmr::OwnedKernelHandle(copy);
}

enum class Inherited { Reader, Writer };

// One end of the pipe is for the child.
bool make_pipe(zmr::OwnedKernelHandle& reader, zmr::OwnedKernelHandle& writer, Inherited end)
{
    HANDLE read = nullptr;
    HANDLE write = nullptr;
    if (!::CreatePipe(&read, &write, nullptr, 0))
        return false;
    reader.reset(read);
    writer.reset(write);
    return ::SetHandleInformation(end == Inherited::Reader ? read : write, HANDLE_FLAG_INHERIT,
                                  HANDLE_FLAG_INHERIT);
}

// What a process is started with beside its streams.
class Attributes {
public:
    Attributes()
    {
        SIZE_T size = 0;
        ::InitializeProcThreadAttributeList(nullptr, kCount, 0, &size);
        memory_.resize(size);
        ready_ = ::InitializeProcThreadAttributeList(list(), kCount, 0, &size);
    }
    ~Attributes()
    {
        if (ready_)
            ::DeleteProcThreadAttributeList(list());
    }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    [[nodiscard]] bool set(DWORD_PTR attribute, void* value, SIZE_T size)
    {
        return ready_ &&
               ::UpdateProcThreadAttribute(list(), 0, attribute, value, size, nullptr, nullptr);
    }
    LPPROC_THREAD_ATTRIBUTE_LIST list()
    {
        return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    }

private:
    static constexpr DWORD kCount = 2;
    std::vector<char> memory_;
    bool ready_ = false;
};

}  // namespace

struct ChildProcess::System {
    zmr::OwnedKernelHandle process;
    zmr::OwnedKernelHandle in;
    zmr::OwnedKernelHandle out;
    PseudoConsole console;
    bool killed = false;
};

ChildProcess::ChildProcess(std::unique_ptr<System> system) : system_(std::move(system)) {}

ChildProcess::~ChildProcess()
{
    kill();
}

std::unique_ptr<ChildProcess> ChildProcess::Start(const ChildStart& start, std::string& reason)
{
    const auto refuse = [&reason] {
        reason = "error " + std::to_string(::GetLastError());
        return nullptr;
    };
    auto system = std::make_unique<System>();
    zmr::OwnedKernelHandle child_in;
    zmr::OwnedKernelHandle child_out;
    if (!make_pipe(child_in, system->in, Inherited::Reader))
        return refuse();
    if (!start.out_file.empty())
        child_out = output_file(start.out_file);
    else if (!make_pipe(system->out, child_out, Inherited::Writer))
        return refuse();
    const zmr::OwnedKernelHandle child_err =
        start.err_file.empty() ? own_errors() : output_file(start.err_file);
    if (!child_out || (!start.err_file.empty() && !child_err))
        return refuse();

    // The child gets these and no others: an end of another child's pipe would keep that open.
    std::vector<HANDLE> given{child_in.get(), child_out.get()};
    if (child_err)
        given.push_back(child_err.get());
    Attributes attributes;
    if (!attributes.set(PROC_THREAD_ATTRIBUTE_HANDLE_LIST, given.data(),
                        given.size() * sizeof(HANDLE)))
        return refuse();
    std::vector<std::wstring> words;
    if (start.terminal != ChildTerminal::None) {
        if (!system->console.open() || !attributes.set(PROC_THREAD_ATTRIBUTE_PSEUDOCONSOLE,
                                                       system->console.handle(), sizeof(void*)))
            return refuse();
        words = {wide(ZMR_CONSOLE_RELAY),
                 start.terminal == ChildTerminal::ForErrors ? L"errors" : L"aside"};
    }
    words.push_back(wide(start.program));
    for (const std::string& word : start.words)
        words.push_back(wide(word));

    STARTUPINFOEXW info = {};
    info.StartupInfo.cb = sizeof(info);
    info.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    info.StartupInfo.hStdInput = child_in.get();
    info.StartupInfo.hStdOutput = child_out.get();
    info.StartupInfo.hStdError = child_err.get();
    info.lpAttributeList = attributes.list();
    PROCESS_INFORMATION process = {};
    if (!start_process(command_line_of(words), EXTENDED_STARTUPINFO_PRESENT, info.StartupInfo,
                       process))
        return refuse();
    system->process.reset(process.hProcess);
    const zmr::OwnedKernelHandle thread(process.hThread);
    return std::unique_ptr<ChildProcess>(new ChildProcess(std::move(system)));
}

bool ChildProcess::write_line(std::string_view line)
{
    std::string bytes(line);
    bytes += '\n';
    DWORD count = 0;
    return ::WriteFile(system_->in.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                       nullptr) &&
           count == bytes.size();
}

std::size_t ChildProcess::read_out(char* bytes, std::size_t size)
{
    DWORD count = 0;
    if (!::ReadFile(system_->out.get(), bytes, static_cast<DWORD>(size), &count, nullptr))
        return 0;  // the pipe is broken: the other end is gone
    return count;
}

bool ChildProcess::runs()
{
    return ::WaitForSingleObject(system_->process.get(), 0) == WAIT_TIMEOUT;
}

void ChildProcess::kill()
{
    if (runs()) {
        system_->killed = true;
        // On a console this is the relay, which ends the program when its input ends.
        if (system_->console.handle() != nullptr)
            system_->in.reset();
        else
            ::TerminateProcess(system_->process.get(), 1);
    }
    wait();
}

void ChildProcess::interrupt()
{
    static_cast<void>(!write_line("interrupt"));
}

ChildEnd ChildProcess::wait()
{
    ChildEnd end;
    DWORD code = 0;
    if (::WaitForSingleObject(system_->process.get(), INFINITE) == WAIT_OBJECT_0 &&
        ::GetExitCodeProcess(system_->process.get(), &code) && !system_->killed)
        end.code = static_cast<int>(code);
    system_->console.close();
    return end;
}

std::string ChildProcess::terminal_text() const
{
    return system_->console.text();
}
