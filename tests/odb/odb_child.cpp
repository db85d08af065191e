// odb_child OWN OTHER: one of two processes that each write a library which refers to the other's.
// For each line that it gets it opens its own, adds an object (every third in a file of its own)
// and a reference to what the other one added before, reads all, closes, and prints "round N"; what
// goes wrong is its last line. It ends at the line "end".
#include "TestObjects.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ReferenceToObject.h"
#include "store/ResourceFileServer.h"

#include <iostream>
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

}  // namespace

int main(int count, char** words)
{
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
