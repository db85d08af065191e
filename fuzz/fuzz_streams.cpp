#include "foundation/GCollection.h"
#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/mpstream.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

// Typed reads and graphs of objects out of arbitrary bytes. What comes out is written and read
// again and must be equal. Objects that nobody owns are ended here; all others must have been freed
// by their owners exactly once.

namespace {

/// Keeps account of the objects that live.
class Counted : public GStreamable {
    G_DECLARE_CLASS(Counted)

public:
    Counted() { living.push_back(this); }
    ~Counted() override { std::erase(living, this); }

    bool has_owner = false;
    static inline std::vector<Counted*> living;

protected:
    /// An object that this one owns.
    template <class T>
    [[nodiscard]] static T* owned(ipstream& in)
    {
        T* object = in.read_owned<T>();
        if (object != nullptr)
            object->has_owner = true;
        return object;
    }
};

/// A name, a child that it owns, a peer that it does not.
class Link : public Counted {
    G_DECLARE_CLASS(Link)

public:
    ~Link() override { GStreamable::destroy(child_); }
    void read(ipstream& in) override
    {
        if (in.readByte() > 1)
            throw GStreamException("A link was written by a newer program.");
        GStreamable::read(in);
        in.read_text(name_);
        child_ = owned<Link>(in);
        peer_ = in.read_pointer<Counted>();
    }
    void write(opstream& out) override
    {
        out.writeByte(1);
        GStreamable::write(out);
        out.write_text(name_.view());
        out.writePointer(child_);
        out.writePointer(peer_);
    }

private:
    GString name_;
    Link* child_ = nullptr;
    Counted* peer_ = nullptr;
};

/// Any number of children.
class Branch : public Counted {
    G_DECLARE_CLASS(Branch)

public:
    ~Branch() override
    {
        for (Counted* child : children_)
            GStreamable::destroy(child);
    }
    void read(ipstream& in) override
    {
        GStreamable::read(in);
        for (unsigned left = in.readByte(); left > 0; --left)
            children_.push_back(owned<Counted>(in));
    }
    void write(opstream& out) override
    {
        GStreamable::write(out);
        out.writeByte(static_cast<unsigned char>(children_.size()));
        for (Counted* child : children_)
            out.writePointer(child);
    }

private:
    std::vector<Counted*> children_;
};

/// A second root, behind other data.
class Mark : public GStreamable {
    G_DECLARE_CLASS(Mark)
    using NotBuiltByName = Mark;

public:
    std::uint64_t mark = 7;
};
class MarkedLink : public Link, public Mark {
    G_DECLARE_CLASS(MarkedLink)

public:
    void shut_down() override { Link::shut_down(); }
    void read(ipstream& in) override
    {
        Link::read(in);
        mark = in.readQWord();
    }
    void write(opstream& out) override
    {
        Link::write(out);
        out.writeQWord(mark);
    }
    void enableSmartPointers(bool enable) override { Link::enableSmartPointers(enable); }
    GStreamable* clone(bool deep) override { return Link::clone(deep); }
};

G_DEFINE_CLASS(Counted, GStreamable);
G_DEFINE_CLASS(Link, Counted);
G_DEFINE_CLASS(Branch, Counted);
G_DEFINE_CLASS(Mark, GStreamable);
G_DEFINE_CLASS(MarkedLink, Link, Mark);

struct FreeText {
    void operator()(char* text) const { gfreestr(text); }
};

/// One typed operation, chosen by `choice`.
void read_value(ipstream& in, unsigned choice)
{
    switch (choice) {
        case 0:
            static_cast<void>(in.readWord());
            break;
        case 1:
            static_cast<void>(in.readDouble());
            break;
        case 2:
            static_cast<void>(std::unique_ptr<char, FreeText>(in.readString()));
            break;
        case 3: {
            GString text;
            in.read_text(text);
            break;
        }
        case 4: {
            const GMetaClass* metaclass = nullptr;
            in >> metaclass;
            break;
        }
        case 5:
            static_cast<void>(in.read_block(in.readDWord()));
            break;
        case 6:
            in.skipBytes(static_cast<std::int32_t>(in.readDWord()));
            break;
        default:
            static_cast<void>(
                in.seekg(static_cast<std::int32_t>(in.readDWord()), GIO::SeekCurrent));
            break;
    }
}

/// What was read is written, read and written again: the bytes must be the same.
void check_round_trip(GStreamable* object)
{
    ompstream first;
    first.writePointer(object);
    impstream in(first.bytes());
    auto* copy = in.read_pointer<Counted>();
    ompstream second;
    second.writePointer(copy);
    if (!std::ranges::equal(first.bytes(), second.bytes()))
        std::abort();
    GStreamable::destroy(copy);
}

/// Objects that no object owns. What they own must go with them.
void end_orphans()
{
    std::vector<Counted*> orphans;
    std::ranges::copy_if(Counted::living, std::back_inserter(orphans),
                         [](const Counted* object) { return !object->has_owner; });
    for (Counted* orphan : orphans)
        GStreamable::destroy(orphan);
    if (!Counted::living.empty())
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    impstream in(std::span<const unsigned char>(bytes, size));
    std::vector<std::unique_ptr<GCollection>> collections;  // until the stream has been read
    try {
        for (int step = 0; step < 1000; ++step) {  // seeking back could go on for ever
            const unsigned char choice = in.readByte();
            if (choice < 8) {
                read_value(in, choice);
            } else if (choice < 16) {
                static_cast<void>(in.read_pointer<Branch>());  // most objects are none
            } else if (choice < 24) {
                static_cast<void>(in.read_pointer<Mark>());
            } else if (choice < 32) {
                collections.emplace_back(in.read_owned<GCollection>());
            } else if (auto* object = in.read_pointer<Counted>()) {
                if (size < 4096)
                    check_round_trip(object);
            }
        }
    } catch (const GStreamException&) {
    }
    collections.clear();
    end_orphans();
    return 0;
}
