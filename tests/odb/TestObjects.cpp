#include "TestObjects.h"

#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <memory>

G_DEFINE_CLASS(TestNote, GStreamable);
G_DEFINE_CLASS(TestRating, ODB_ObjectAttribute);
G_DEFINE_CLASS(TestPhantom, ODB_Mediator);

std::atomic<int> TestNote::alive = 0;
std::atomic<int> TestNote::reads = 0;
std::atomic<int> TestRating::alive = 0;

void TestNote::read(ipstream& in)
{
    ++reads;
    static_cast<void>(in.readByte());
    GStreamable::read(in);
    in >> note_;
}

void TestNote::write(opstream& out)
{
    out.writeByte(0);
    GStreamable::write(out);
    out << note_;
}

void TestRating::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    ODB_ObjectAttribute::read(in);
    stars = in.readByte();
}

void TestRating::write(opstream& out)
{
    out.writeByte(0);
    ODB_ObjectAttribute::write(out);
    out.writeByte(static_cast<unsigned char>(stars));
}

std::string OdbTest::note_of(ObjectDatabase& from, const char* name)
{
    const std::unique_ptr<GStreamable> object(from.get_object(GString(name)));
    const auto* const note = zmr::class_cast<TestNote>(object.get());
    return note == nullptr ? "(none)" : note->note().text;
}
