// store_child ROLE NAME [COUNT]: the other process of a test on the library NAME. It prints "ready"
// when the test may go on and waits for lines; anything that goes wrong is its last line.
//   write  commits for ever, packs now and then, and prints the number of each commit once it is
//          done; "ready" comes before the library is opened
//   hold   opens for writing and holds it
//   read   opens for reading, and looks at all of it when it gets a line; prints "whole"
//   turns  takes COUNT turns as the writer, waiting for another one to let go; adds 1 in each
#include "NumberedCommits.h"
#include "store/ProcessIdentity.h"

#include <cstdlib>
#include <iostream>
#include <thread>

namespace {

using zmr::LibraryAccess;
using zmr::LibraryFile;
using zmr::LibraryOpenStatus;
using zmr::NumberedCommits;

// False when the test is gone.
bool say(const std::string& line)
{
    std::cout << line << std::endl;
    return static_cast<bool>(std::cout);
}

bool wait_for_line()
{
    std::string line;
    return static_cast<bool>(std::getline(std::cin, line));
}

std::string write(const std::string& name)
{
    say("ready");
    LibraryFile file(zmr::FileSystemDevice::Real(), NumberedCommits::kSmall);
    if (file.open(name, LibraryAccess::Write, "writer").status != LibraryOpenStatus::Ok)
        return "it is not opened";
    for (std::uint64_t number = NumberedCommits::Last(file) + 1;; ++number) {
        // Looked at behind the scope's end, where a commit that it put off is done.
        if (!NumberedCommits::Put(file, number) || file.error())
            return "commit " + std::to_string(number) + " failed";
        if (!say(std::to_string(number)))
            return "the test is gone";
        if (number % 50 == 0 && !file.pack())
            return "pack failed";
    }
}

std::string hold(const std::string& name)
{
    LibraryFile file;
    if (file.open(name, LibraryAccess::Write, zmr::process_identity()).status !=
            LibraryOpenStatus::Ok ||
        !NumberedCommits::Put(file, NumberedCommits::Last(file) + 1) || file.error())
        return "it is not written";
    say("ready");
    wait_for_line();
    return "let go";
}

std::string read(const std::string& name)
{
    LibraryFile file(zmr::FileSystemDevice::Real(), NumberedCommits::kSmall);
    if (file.open(name, LibraryAccess::Read).status != LibraryOpenStatus::Ok)
        return "it is not opened";
    const std::uint64_t last = NumberedCommits::Last(file);
    say("ready");
    wait_for_line();
    if (NumberedCommits::Last(file) != last)
        return "another commit is seen";
    const std::string wrong = NumberedCommits::Check(file);
    return wrong.empty() ? "whole" : wrong;
}

std::string take_turns(const std::string& name, int count)
{
    say("ready");
    for (int turn = 0; turn < count;) {
        LibraryFile file;
        const auto opened = file.open(name, LibraryAccess::Write, zmr::process_identity());
        if (opened.status == LibraryOpenStatus::Locked) {
            std::this_thread::yield();
            continue;
        }
        if (opened.status != LibraryOpenStatus::Ok)
            return "it is not opened: " + opened.text;
        if (!NumberedCommits::Put(file, NumberedCommits::Last(file) + 1) || !file.close())
            return "it is not written";
        ++turn;
    }
    return "done";
}

}  // namespace

int main(int count, char** words)
{
    const std::string role = count > 2 ? words[1] : "";
    const std::string name = count > 2 ? words[2] : "";
    if (role == "write")
        say(write(name));
    else if (role == "hold")
        say(hold(name));
    else if (role == "read")
        say(read(name));
    else if (role == "turns" && count > 3)
        say(take_turns(name, std::atoi(words[3])));
    else
        return 2;
    return 0;
}
