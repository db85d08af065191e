// odb_child OWN OTHER: one of two processes that each write a library which refers to the other's.
// For each line that it gets it opens its own, adds an object (every third in a file of its own)
// and a reference to what the other one added before, reads all, closes, and prints "round N"; what
// goes wrong is its last line. It ends at the line "end".
//
// odb_child hold FILE: opens the library for writing, prints "held" and lets go at the next line.
//
// odb_child across FIRST SECOND: makes two libraries with a reference to each other and loads
// through both at once, each on a thread of its own that stops half-way until the other is there.
// Prints "loaded", or "stuck" when they wait for each other.
#include "TestObjects.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ReferenceToObject.h"
#include "store/ResourceFileServer.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <future>
#include <iostream>
#include <mutex>
#include <string>

namespace {

std::string entry(long number)
{
    return "entry " + std::to_string(number);
}

/// What went wrong; empty when nothing did.
std::string one_round(const std::string& own, const std::string& other, long& round)
{
    ObjectDatabase database(own.c_str(), GIO::OpenReadWrite);
    if (database.server == nullptr)
        return database.open_error().text;
    round = 0;
    while (database.object_exists(GString(entry(round))))
        ++round;
    TestNote note((own + " " + entry(round)).c_str());
    ODB_Mediator* const mediator =
        round % 3 == 2 ? new ODB_ExternalObject(static_cast<const char*>(nullptr)) : nullptr;
    database.append_object(&note, GString(entry(round)), mediator);
    if (round > 0) {
        const GResourceFullName target(GResourcePath(), GString(entry(round - 1)),
                                       ObjectDatabase::MediatorResourceType);
        database.append_object(nullptr, GString("to " + entry(round - 1)),
                               new ODB_ReferenceToObject(other.c_str(), target));
    }
    database.flush();
    for (long k = 0; k <= round; ++k) {
        if (OdbTest::note_of(database, entry(k).c_str()) != own + " " + entry(k))
            return "its own " + entry(k) + " is lost";
        if (k < round &&
            OdbTest::note_of(database, ("to " + entry(k)).c_str()) != other + " " + entry(k))
            return "the other's " + entry(k) + " is not read";
    }
    if (database.server->error() != 0)
        return database.server->error_text().text;
    return {};
}

/// Where two threads wait for each other.
class Meeting {
public:
    void arrive_and_wait()
    {
        std::unique_lock lock(mutex_);
        ++arrived_;
        both_are_there_.notify_all();
        both_are_there_.wait(lock, [this] { return arrived_ >= 2; });
    }

private:
    std::mutex mutex_;
    std::condition_variable both_are_there_;
    int arrived_ = 0;
};

/// A reference whose loading waits for the other thread before it goes to its host.
class MeetingReference : public ODB_ReferenceToObject {
public:
    MeetingReference(const std::string& file, const GResourceFullName& target, Meeting& meeting)
        : ODB_ReferenceToObject(file.c_str(), target), meeting_(meeting)
    {
    }

    [[nodiscard]] GStreamable* get_object() override
    {
        meeting_.arrive_and_wait();
        return ODB_ReferenceToObject::get_object();
    }

private:
    Meeting& meeting_;
};

int load_across(const std::array<std::string, 2>& files)
{
    constexpr auto kLongEnough = std::chrono::seconds(60);
    Meeting meeting;
    std::array<ObjectDatabase, 2> libraries;
    TestNote note("the other's");
    for (std::size_t i = 0; i < 2; ++i) {
        libraries[i].open(files[i].c_str(), GIO::OpenReadWrite);
        libraries[i].append_object(&note, GString("lamp"), nullptr);
        libraries[i].flush();
    }
    const GResourceFullName target(GResourcePath(), GString("lamp"),
                                   ObjectDatabase::MediatorResourceType);
    for (std::size_t i = 0; i < 2; ++i)
        libraries[i].append_object(nullptr, GString("to lamp"),
                                   new MeetingReference(files[1 - i], target, meeting));
    const auto load = [&libraries](std::size_t i) {
        return OdbTest::note_of(libraries[i], "to lamp") == "the other's";
    };
    auto first = std::async(std::launch::async, load, 0);
    auto second = std::async(std::launch::async, load, 1);
    for (const auto* const one : {&first, &second}) {
        if (one->wait_for(kLongEnough) == std::future_status::ready)
            continue;
        std::cout << "stuck" << std::endl;
        std::_Exit(1);  // the threads can't be waited for
    }
    const bool loaded = first.get() && second.get();
    std::cout << (loaded ? "loaded" : "not loaded") << std::endl;
    return loaded ? 0 : 1;
}

int hold(const char* file)
{
    const ObjectDatabase database(file, GIO::OpenReadWrite);
    if (database.server == nullptr) {
        std::cout << database.open_error().text << std::endl;
        return 1;
    }
    std::cout << "held" << std::endl;
    std::string line;
    return std::getline(std::cin, line) ? 0 : 1;
}

}  // namespace

int main(int count, char** words)
{
    if (count == 3 && words[1] == std::string("hold"))
        return hold(words[2]);
    if (count == 4 && words[1] == std::string("across"))
        return load_across({words[2], words[3]});
    if (count != 3)
        return 2;
    std::string line;
    while (std::getline(std::cin, line) && line != "end") {
        long round = 0;
        const std::string failure = one_round(words[1], words[2], round);
        std::cout << (failure.empty() ? "round " + std::to_string(round) : failure) << std::endl;
        if (!failure.empty())
            return 1;
    }
    return 0;
}
