// settings_child ROLE NAME [...]: the other process of a test on the settings file NAME. It prints
// "ready" before it opens the file; anything that goes wrong is its last line.
//   write            writes ever new numbers, all entries of one section in one batch, and prints
//                    the number once it is kept
//   count KEY COUNT  adds 1 to the entries KEY 0 to KEY 9 by turns, each time in an update of its
//                    own, COUNT updates in all; "done". Who undoes one of them is found out.
//   read COUNT       reads the numbers that "write" writes that often; "whole"
#include "settings/IniStore.h"

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

// False when the test is gone.
bool say(const std::string& line)
{
    std::cout << line << std::endl;
    return static_cast<bool>(std::cout);
}

constexpr int kEntries = 20;

std::string write(zmr::IniStore& store)
{
    std::uint32_t number = 0;
    static_cast<void>(store.read_int("numbers", "entry 0", number));  // none yet: from 0
    while (true) {
        ++number;
        store.begin();
        for (int i = 0; i < kEntries; ++i)
            if (!store.write_int("numbers", ("entry " + std::to_string(i)).c_str(),
                                 static_cast<std::int32_t>(number)))
                return "number " + std::to_string(number) + " is refused";
        if (!store.commit())
            return "number " + std::to_string(number) + " is not kept";
        if (!say(std::to_string(number)))
            return "the test is gone";
    }
}

std::string count(zmr::IniStore& store, const std::string& key, int number)
{
    constexpr int kKeys = 10;
    for (int i = 0; i < number; ++i) {
        const std::string entry = key + " " + std::to_string(i % kKeys);
        std::uint32_t value = 0;
        static_cast<void>(store.read_int("counts", entry.c_str(), value));  // at first: from 0
        if (value != static_cast<std::uint32_t>(i / kKeys))
            return entry + " is " + std::to_string(value) + " before update " + std::to_string(i);
        if (!store.write_int("counts", entry.c_str(), static_cast<std::int32_t>(value + 1)))
            return entry + " is not kept";
    }
    return "done";
}

std::string read(zmr::IniStore& store, int times)
{
    std::uint32_t last = 0;
    for (int i = 0; i < times; ++i) {
        store.begin();
        std::uint32_t number = 0;
        std::uint32_t other = 0;
        const bool is_there = store.read_int("numbers", "entry 0", number);
        const bool is_whole =
            store.read_int("numbers", ("entry " + std::to_string(kEntries - 1)).c_str(), other);
        static_cast<void>(store.commit());  // nothing was written
        if (is_there != is_whole || number != other || number < last)
            return std::to_string(number) + " and " + std::to_string(other) + " behind " +
                   std::to_string(last);
        last = number;
    }
    return "whole";
}

}  // namespace

int main(int argument_count, char** words)
{
    if (argument_count < 3)
        return 2;
    const std::string role = words[1];
    zmr::IniStore store(zmr::FileSystemDevice::Real(), words[2]);
    say("ready");
    if (role == "write")
        say(write(store));
    else if (role == "count" && argument_count > 4)
        say(count(store, words[3], std::atoi(words[4])));
    else if (role == "read" && argument_count > 3)
        say(read(store, std::atoi(words[3])));
    else
        return 2;
    return 0;
}
