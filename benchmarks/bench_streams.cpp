// A graph of 100,000 small objects of 4 classes with 20,000 references between them, written to
// memory and read back, beside QDataStream with the same graph handled by hand: a class number, the
// fields, and for shared objects a number by a QHash. Ours carry a version byte and the base part.

#include "foundation/GString.h"
#include "foundation/mpstream.h"

#include <QByteArray>
#include <QDataStream>
#include <QHash>
#include <QIODevice>
#include <QVector>

#include <malloc.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kObjects = 100'000;
constexpr int kReferenceEvery = 5;
constexpr int kRepetitions = 41;

// The fields of the four classes, the same for both contestants.
struct PointFields {
    double x = 0, y = 0, z = 0;
};
struct ColourFields {
    float red = 0, green = 0, blue = 0, alpha = 0;
    std::uint32_t flags = 0;
};
struct LinkFields {
    std::int32_t from = 0, to = 0;
    double weight = 0;
};

}  // namespace

/// Base of the four classes: each can refer to another object.
class BenchObject : public GStreamable {
    G_DECLARE_CLASS(BenchObject)

public:
    void read(ipstream& in) override
    {
        version_ = in.readByte();
        GStreamable::read(in);
        other = in.read_pointer<BenchObject>();
    }
    void write(opstream& out) override
    {
        out.writeByte(1);
        GStreamable::write(out);
        out.writePointer(other);
    }

    BenchObject* other = nullptr;

private:
    unsigned char version_ = 1;
};

class BenchPoint : public BenchObject, public PointFields {
    G_DECLARE_CLASS(BenchPoint)

public:
    void read(ipstream& in) override
    {
        BenchObject::read(in);
        in >> x >> y >> z;
    }
    void write(opstream& out) override
    {
        BenchObject::write(out);
        out << x << y << z;
    }
};

class BenchColour : public BenchObject, public ColourFields {
    G_DECLARE_CLASS(BenchColour)

public:
    void read(ipstream& in) override
    {
        BenchObject::read(in);
        in >> red >> green >> blue >> alpha >> flags;
    }
    void write(opstream& out) override
    {
        BenchObject::write(out);
        out << red << green << blue << alpha << flags;
    }
};

class BenchLink : public BenchObject, public LinkFields {
    G_DECLARE_CLASS(BenchLink)

public:
    void read(ipstream& in) override
    {
        BenchObject::read(in);
        in >> from >> to >> weight;
    }
    void write(opstream& out) override
    {
        BenchObject::write(out);
        out << from << to << weight;
    }
};

class BenchNamed : public BenchObject {
    G_DECLARE_CLASS(BenchNamed)

public:
    void read(ipstream& in) override
    {
        BenchObject::read(in);
        in.read_text(name);
        in >> value;
    }
    void write(opstream& out) override
    {
        BenchObject::write(out);
        out.write_text(name.view());
        out << value;
    }

    GString name;
    double value = 0;
};

G_DEFINE_CLASS(BenchObject, GStreamable);
G_DEFINE_CLASS(BenchPoint, BenchObject);
G_DEFINE_CLASS(BenchColour, BenchObject);
G_DEFINE_CLASS(BenchLink, BenchObject);
G_DEFINE_CLASS(BenchNamed, BenchObject);

namespace {

using Objects = std::vector<std::unique_ptr<BenchObject>>;

// The peer's objects.
struct PeerObject {
    virtual ~PeerObject() = default;
    virtual quint8 kind() const = 0;
    virtual void write(QDataStream& out) const = 0;
    virtual void read(QDataStream& in) = 0;
    PeerObject* other = nullptr;
};
struct PeerPoint final : PeerObject, PointFields {
    quint8 kind() const override { return 0; }
    void write(QDataStream& out) const override { out << x << y << z; }
    void read(QDataStream& in) override { in >> x >> y >> z; }
};
struct PeerColour final : PeerObject, ColourFields {
    quint8 kind() const override { return 1; }
    void write(QDataStream& out) const override { out << red << green << blue << alpha << flags; }
    void read(QDataStream& in) override { in >> red >> green >> blue >> alpha >> flags; }
};
struct PeerLink final : PeerObject, LinkFields {
    quint8 kind() const override { return 2; }
    void write(QDataStream& out) const override { out << from << to << weight; }
    void read(QDataStream& in) override { in >> from >> to >> weight; }
};
struct PeerNamed final : PeerObject {
    quint8 kind() const override { return 3; }
    void write(QDataStream& out) const override { out << name << value; }
    void read(QDataStream& in) override { in >> name >> value; }
    QByteArray name;
    double value = 0;
};
using PeerObjects = std::vector<std::unique_ptr<PeerObject>>;

PeerObject* make_peer(quint8 kind)
{
    switch (kind) {
        case 0:
            return new PeerPoint;
        case 1:
            return new PeerColour;
        case 2:
            return new PeerLink;
        case 3:
            return new PeerNamed;
        default:
            std::abort();
    }
}

Objects make_ours()
{
    Objects objects;
    for (int number = 0; number < kObjects; ++number) {
        if (number % 4 == 0) {
            auto point = std::make_unique<BenchPoint>();
            point->x = number;
            point->z = -number;
            objects.push_back(std::move(point));
        } else if (number % 4 == 1) {
            auto colour = std::make_unique<BenchColour>();
            colour->red = static_cast<float>(number);
            objects.push_back(std::move(colour));
        } else if (number % 4 == 2) {
            auto link = std::make_unique<BenchLink>();
            link->from = number;
            link->weight = 0.5;
            objects.push_back(std::move(link));
        } else {
            auto named = std::make_unique<BenchNamed>();
            named->name = ("object number " + std::to_string(number)).c_str();
            named->value = number;
            objects.push_back(std::move(named));
        }
        if (number % kReferenceEvery == kReferenceEvery - 1)
            objects.back()->other = objects[objects.size() / 2].get();
    }
    return objects;
}

PeerObjects make_peers()
{
    PeerObjects objects;
    for (int number = 0; number < kObjects; ++number) {
        if (number % 4 == 0) {
            auto point = std::make_unique<PeerPoint>();
            point->x = number;
            point->z = -number;
            objects.push_back(std::move(point));
        } else if (number % 4 == 1) {
            auto colour = std::make_unique<PeerColour>();
            colour->red = static_cast<float>(number);
            objects.push_back(std::move(colour));
        } else if (number % 4 == 2) {
            auto link = std::make_unique<PeerLink>();
            link->from = number;
            link->weight = 0.5;
            objects.push_back(std::move(link));
        } else {
            auto named = std::make_unique<PeerNamed>();
            named->name = QByteArray("object number ") + QByteArray::number(number);
            named->value = number;
            objects.push_back(std::move(named));
        }
        if (number % kReferenceEvery == kReferenceEvery - 1)
            objects.back()->other = objects[objects.size() / 2].get();
    }
    return objects;
}

void write_ours(const Objects& objects, ompstream& out)
{
    out.writeDWord(kObjects);
    for (const auto& object : objects)
        out.writePointer(object.get());
}

Objects read_ours(const ompstream& data)
{
    impstream in(data.bytes());
    Objects objects(in.readDWord());
    for (auto& object : objects)
        object.reset(in.read_owned<BenchObject>());
    return objects;
}

constexpr quint32 kNull = 0xFFFFFFFF;

/// A pointer by hand: the object's number; behind a new one its kind and its fields.
void write_peer(PeerObject* object, QDataStream& out, QHash<const PeerObject*, quint32>& numbers)
{
    if (object == nullptr) {
        out << kNull;
        return;
    }
    const auto known = numbers.constFind(object);
    if (known != numbers.constEnd()) {
        out << *known;
        return;
    }
    const auto number = static_cast<quint32>(numbers.size());
    numbers.insert(object, number);
    out << number << object->kind();
    write_peer(object->other, out, numbers);
    object->write(out);
}

QByteArray write_peers(const PeerObjects& objects)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    QHash<const PeerObject*, quint32> numbers;
    out << quint32{kObjects};
    for (const auto& object : objects)
        write_peer(object.get(), out, numbers);
    return bytes;
}

PeerObject* read_peer(QDataStream& in, QVector<PeerObject*>& met)
{
    quint32 number = 0;
    in >> number;
    if (number == kNull)
        return nullptr;
    if (number < static_cast<quint32>(met.size()))
        return met[static_cast<qsizetype>(number)];
    quint8 kind = 0;
    in >> kind;
    PeerObject* object = make_peer(kind);
    met.push_back(object);
    object->other = read_peer(in, met);
    object->read(in);
    return object;
}

PeerObjects read_peers(const QByteArray& bytes)
{
    QDataStream in(bytes);
    in.setByteOrder(QDataStream::LittleEndian);
    QVector<PeerObject*> met;
    quint32 count = 0;
    in >> count;
    PeerObjects objects(count);
    for (auto& object : objects)
        object.reset(read_peer(in, met));
    return objects;
}

/// Processor time of this thread, which other programs on the machine disturb least.
double now_ms()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

class Clock {
public:
    [[nodiscard]] double ms() const { return now_ms() - start_; }

private:
    double start_ = now_ms();
};

/// Lets the allocator join what was freed before: otherwise the next contestant that asks for a
/// large block would do it, for the objects of both.
void settle_heap()
{
    constexpr std::size_t kLarge = 100'000;
    const std::vector<char> large(kLarge);
    if (large.data() == nullptr)
        std::abort();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Both contestants must have read what they wrote.
void check(const Objects& ours, const PeerObjects& peers)
{
    for (std::size_t number = 0; number < ours.size(); ++number) {
        const bool refers = number % kReferenceEvery == kReferenceEvery - 1;
        const std::size_t other = (number + 1) / 2;
        if (ours[number]->other != (refers ? ours[other].get() : nullptr) ||
            peers[number]->other != (refers ? peers[other].get() : nullptr)) {
            std::fprintf(stderr, "object %zu was not read as it was written\n", number);
            std::exit(1);
        }
    }
    const auto* named = zmr::class_cast<BenchNamed>(ours[99'999].get());
    if (named == nullptr || !(named->name == "object number 99999") ||
        static_cast<const PeerNamed&>(*peers[99'999]).name != "object number 99999") {
        std::fprintf(stderr, "a name was not read as it was written\n");
        std::exit(1);
    }
}

/// Memory that was freed stays with the process. Otherwise its pages go back to the system and come
/// anew by the accident of which contestant freed last, at several times the cost of the work.
void keep_freed_memory()
{
    constexpr int kLargestBlock = 32 << 20;
    constexpr int kNever = std::numeric_limits<int>::max();
    if (::mallopt(M_MMAP_THRESHOLD, kLargestBlock) == 0 || ::mallopt(M_TRIM_THRESHOLD, kNever) == 0)
        std::abort();
}

}  // namespace

int main()
{
    keep_freed_memory();
    const Objects objects = make_ours();
    const PeerObjects peers = make_peers();
    std::vector<double> write_times;
    std::vector<double> read_times;
    std::vector<double> peer_write_times;
    std::vector<double> peer_read_times;
    long size = 0;
    long peer_size = 0;
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {  // interleaved
        settle_heap();
        const Clock write_clock;
        ompstream out;
        write_ours(objects, out);
        write_times.push_back(write_clock.ms());

        settle_heap();
        const Clock peer_write_clock;
        const QByteArray bytes = write_peers(peers);
        peer_write_times.push_back(peer_write_clock.ms());

        settle_heap();
        const Clock read_clock;
        const Objects back = read_ours(out);
        read_times.push_back(read_clock.ms());

        settle_heap();
        const Clock peer_read_clock;
        const PeerObjects peer_back = read_peers(bytes);
        peer_read_times.push_back(peer_read_clock.ms());

        check(back, peer_back);
        size = out.tellp();
        peer_size = static_cast<long>(bytes.size());
    }

    std::printf("write %.2f ms, QDataStream %.2f ms (medians of %d)\n", median(write_times),
                median(peer_write_times), kRepetitions);
    std::printf("read %.2f ms, QDataStream %.2f ms\n", median(read_times), median(peer_read_times));
    std::printf("size %ld, QDataStream %ld\n", size, peer_size);
    std::printf("ratio write %.2f (goal 2.5)\n", median(peer_write_times) / median(write_times));
    std::printf("ratio read %.2f (goal 4)\n", median(peer_read_times) / median(read_times));
    std::printf("ratio size %.2f (goal 1 or less)\n",
                static_cast<double>(size) / static_cast<double>(peer_size));
    return 0;
}
