#include "foundation/BlockList.h"
#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/StreamFormat.h"
#include "foundation/ipstream.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::uint32_t kNobody = 0xFFFFFFFF;
constexpr std::ptrdiff_t kNotYet = -1;  ///< No sub-object lies there.

/// A class met in the data, and where the sub-objects lie in its instances, from the root
/// sub-object: equal for all of them, so that most objects need no cast.
struct MetClass {
    GMetaClass::Builder builder = nullptr;
    std::ptrdiff_t streamable_offset = kNotYet;
    const type_info* asked = nullptr;  ///< The class last asked for that the instances are of,
    std::ptrdiff_t asked_offset = 0;   ///< and where it lies.
};

/// An object met in the data, by its number.
struct MetObject {
    GRTTIObject* root = nullptr;  ///< Null when it is not given out any more.
    std::uint32_t owner = kNobody;
    std::uint16_t class_number = 0;
    std::uint16_t height : 12 = 0;  ///< Of the tree that it owns.
    std::uint16_t reading : 1 = 1;
    std::uint16_t owned : 1 = 0;
    std::uint16_t doomed : 1 = 0;  ///< Would go with the object that is being given up.
    std::uint16_t gone : 1 = 0;
};
static_assert(ipstream::kMaxDepth < 1 << 12);

/// A pointer that was handed to an object which was being read.
struct Reference {
    std::uint32_t from;
    std::uint32_t to;
};

template <class T>
[[nodiscard]] T* at_offset(GRTTIObject* root, std::ptrdiff_t offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<char*>(root) + offset);
}

[[noreturn, gnu::noinline]] void refuse(const char* why)
{
    throw GStreamException(why);
}

[[nodiscard]] std::ptrdiff_t offset_of(GRTTIObject* root, const void* part)
{
    return static_cast<const char*>(part) - reinterpret_cast<const char*>(root);
}

}  // namespace

// Every object passes here: what is seldom is in functions of its own, so that the others save few
// registers. They are inline, because as members of an exported class they would be called through
// the table by which other modules could replace them.

struct ipstream::Graph {
    zmr::BlockList<MetClass, 32> classes;
    zmr::BlockList<MetObject, 64> objects;
    std::vector<std::uint32_t> claims;  ///< Made inside objects that are being read, in order.
    std::vector<Reference> references;  ///< The same for pointers handed out.
    std::uint32_t current = kNobody;    ///< The innermost object that is being read.
    std::uint32_t last = kNobody;       ///< What the last readPointer gave.
    std::uint32_t tagged_classes = 0;   ///< How many of `classes` have a tag of their own.
    int depth = 0;

    static void* cast(MetClass& known, GRTTIObject* root, const type_info& type);
    static GStreamable* streamable(MetClass& known, GRTTIObject* root);
    void* hand_out(std::uint32_t number, void* part);
    void claim_within(MetObject& claimed);
    void forget_order();
    bool give_up(std::uint32_t number);

private:
    /// How long the two lists were when the reading of an object began.
    struct Mark {
        std::size_t claims;
        std::size_t references;
    };

    static void* ask(MetClass& known, GRTTIObject* root, const type_info& type);
    static void locate_streamable(MetClass& known, GRTTIObject* root);
    void add_reference(Reference reference);
    Mark mark_of(std::uint32_t number) const;
    bool doom(std::uint32_t number, Mark mark);
    bool is_held_by_survivor(Mark mark) const;
    void pardon(std::uint32_t number, Mark mark);
    void bury(std::uint32_t number, Mark mark);
};

/// The object as the asked class, or null. Its class has given the same answer before, mostly.
inline void* ipstream::Graph::cast(MetClass& known, GRTTIObject* root, const type_info& type)
{
    if (known.asked == &type) [[likely]]
        return at_offset<void>(root, known.asked_offset);
    return ask(known, root, type);
}

[[gnu::noinline]] void* ipstream::Graph::ask(MetClass& known, GRTTIObject* root,
                                             const type_info& type)
{
    void* part = root->cast_to_(type);
    if (part != nullptr) {
        known.asked = &type;
        known.asked_offset = offset_of(root, part);
    }
    return part;
}

inline GStreamable* ipstream::Graph::streamable(MetClass& known, GRTTIObject* root)
{
    if (known.streamable_offset == kNotYet) [[unlikely]]
        locate_streamable(known, root);
    return at_offset<GStreamable>(root, known.streamable_offset);
}

[[gnu::noinline]] void ipstream::Graph::locate_streamable(MetClass& known, GRTTIObject* root)
{
    known.streamable_offset = offset_of(root, root->cast_to_(GStreamable::gTypeInfo_));
}

/// Notes that the object that is being read has got the pointer, which may be null.
inline void* ipstream::Graph::hand_out(std::uint32_t number, void* part)
{
    last = part == nullptr ? kNobody : number;
    if (part != nullptr && current != kNobody)
        add_reference({current, number});
    return part;
}

[[gnu::noinline]] void ipstream::Graph::add_reference(Reference reference)
{
    references.push_back(reference);
}

/// For when no object is being read any more: the two lists are of use only within one.
inline void ipstream::Graph::forget_order()
{
    claims.clear();
    references.clear();
}

/// Makes the object that is being read the owner of the last one.
[[gnu::noinline]] void ipstream::Graph::claim_within(MetObject& claimed)
{
    MetObject& owner = objects[current];
    const int height = std::max(int{owner.height}, claimed.height + 1);
    if (height > kMaxDepth)
        refuse("The objects in a stream are nested too deeply.");
    claims.push_back(last);
    owner.height = static_cast<std::uint16_t>(height & 0xFFF);
    claimed.owner = current;
    claimed.owned = 1;
}

/// True when the object can be destroyed with all that it owns: then none of these is given out any
/// more. False when that would leave a dangling pointer in an object that lives on.
bool ipstream::Graph::give_up(std::uint32_t number)
{
    const Mark mark = mark_of(number);
    const bool all_within = doom(number, mark);
    if (!all_within || is_held_by_survivor(mark)) {
        pardon(number, mark);
        return false;
    }
    bury(number, mark);
    return true;
}

/// Everything in the two lists since then is by this object or by one within it, which have higher
/// numbers than those before.
ipstream::Graph::Mark ipstream::Graph::mark_of(std::uint32_t number) const
{
    const auto claimed_before = [&](std::uint32_t claimed) {
        return objects[claimed].owner < number;
    };
    const auto given_before = [&](const Reference& reference) { return reference.from < number; };
    const auto claim = std::partition_point(claims.begin(), claims.end(), claimed_before);
    const auto reference = std::partition_point(references.begin(), references.end(), given_before);
    return {static_cast<std::size_t>(claim - claims.begin()),
            static_cast<std::size_t>(reference - references.begin())};
}

/// Marks the object and what it owns, through any owner. False when an object is among them that
/// was met before this one, and so is known outside. Claims are looked through backwards, because
/// an object is claimed after what it has claimed itself.
bool ipstream::Graph::doom(std::uint32_t number, Mark mark)
{
    bool all_within = true;
    objects[number].doomed = 1;
    for (std::size_t at = claims.size(); at > mark.claims; --at) {
        MetObject& object = objects[claims[at - 1]];
        if (objects[object.owner].doomed == 0)
            continue;
        object.doomed = 1;
        all_within = all_within && claims[at - 1] > number;
    }
    return all_within;
}

bool ipstream::Graph::is_held_by_survivor(Mark mark) const
{
    const auto holds = [this](const Reference& reference) {
        const MetObject& from = objects[reference.from];
        return objects[reference.to].doomed != 0 && from.doomed == 0 && from.gone == 0;
    };
    return std::any_of(references.begin() + static_cast<std::ptrdiff_t>(mark.references),
                       references.end(), holds);
}

void ipstream::Graph::pardon(std::uint32_t number, Mark mark)
{
    objects[number].doomed = 0;
    for (std::size_t at = mark.claims; at < claims.size(); ++at)
        objects[claims[at]].doomed = 0;
}

void ipstream::Graph::bury(std::uint32_t number, Mark mark)
{
    const auto is_doomed = [this](std::uint32_t claimed) { return objects[claimed].doomed != 0; };
    const auto end = [this](std::uint32_t doomed) {
        MetObject& object = objects[doomed];
        object.root = nullptr;
        object.gone = 1;
    };
    end(number);
    for (std::size_t at = mark.claims; at < claims.size(); ++at) {
        if (is_doomed(claims[at]))
            end(claims[at]);
    }
    const auto first_claim = claims.begin() + static_cast<std::ptrdiff_t>(mark.claims);
    claims.erase(std::remove_if(first_claim, claims.end(), is_doomed), claims.end());
    const auto first = references.begin() + static_cast<std::ptrdiff_t>(mark.references);
    references.erase(std::remove_if(first, references.end(),
                                    [&](const Reference& reference) {
                                        return is_doomed(reference.from) || is_doomed(reference.to);
                                    }),
                     references.end());
}

ipstream::ipstream() : in_(ClosedBuffer()) {}

ipstream::~ipstream() = default;

ipstream::Graph& ipstream::graph()
{
    if (graph_ == nullptr)
        graph_ = std::make_unique<Graph>();
    return *graph_;
}

void* ipstream::readPointer(const type_info& type)
{
    if (in_->holds(1)) [[likely]]
        return read_tagged(*in_->pass(1), type);
    return read_pointer_beyond_window(type);
}

[[gnu::noinline]] void* ipstream::read_pointer_beyond_window(const type_info& type)
{
    const unsigned char tag = readByte();
    return read_tagged(tag, type);
}

/// What follows a pointer's first byte. Most are new objects of a class that was met before.
inline void* ipstream::read_tagged(unsigned char tag, const type_info& type)
{
    Graph* met = graph_.get();
    const std::uint32_t class_number = std::uint32_t{tag} - zmr::kFirstClassTag;
    if (met != nullptr && class_number < met->tagged_classes) [[likely]]
        return read_object(class_number, type);
    if (tag == zmr::kKnownObject)
        return read_reference(type);
    if (tag != zmr::kNullPointer)
        return read_object_of_class(tag, type);
    if (met != nullptr)
        met->last = kNobody;
    return nullptr;
}

[[gnu::noinline]] void* ipstream::read_object_of_class(unsigned char tag, const type_info& type)
{
    return read_object(read_class(tag), type);
}

void* ipstream::read_reference(const type_info& type)
{
    Graph& met = graph();
    const std::uint32_t number = read_value<std::uint32_t>();
    if (number >= met.objects.size())
        refuse("A stream refers to an object that it does not hold.");
    const MetObject& object = met.objects[number];
    if (object.root == nullptr)
        return met.hand_out(number, nullptr);
    return met.hand_out(number, Graph::cast(met.classes[object.class_number], object.root, type));
}

/// The number in this stream of the class of a new object.
std::uint32_t ipstream::read_class(unsigned char tag)
{
    Graph& met = graph();
    if (tag != zmr::kNewClass) {
        const std::uint32_t number = tag == zmr::kWideClass
                                         ? read_value<std::uint16_t>()
                                         : std::uint32_t{tag} - zmr::kFirstClassTag;
        if (number >= met.classes.size())
            refuse("A stream refers to a class that it does not name.");
        return number;
    }
    GString name;
    read_text(name);
    if (name.length() > zmr::kMaxClassNameBytes || met.classes.size() >= zmr::kMaxClasses)
        refuse("A stream names too many classes, or one by too long a name.");
    const GMetaClass* metaclass =
        name.view().find('\0') == std::string_view::npos ? find_class(name.text) : nullptr;
    if (metaclass == nullptr || metaclass->getBuilder() == nullptr ||
        metaclass->isKindOf(&GStreamable::metaclass_) == nullptr)
        throw UnknownStreamableType_Exception(name.text);
    met.classes.push_back({.builder = metaclass->getBuilder()});
    const auto count = static_cast<std::uint32_t>(met.classes.size());
    met.tagged_classes = std::min(count, zmr::kClassesInTag);
    return count - 1;
}

void* ipstream::read_object(std::uint32_t class_number, const type_info& type)
{
    Graph& met = *graph_;
    if (met.depth >= kMaxDepth)
        refuse("The objects in a stream are nested too deeply.");
    const auto number = static_cast<std::uint32_t>(met.objects.size());
    MetObject& entry =
        met.objects.push_back({.class_number = static_cast<std::uint16_t>(class_number)});
    MetClass& known = met.classes[class_number];
    GRTTIObject* root = known.builder();
    entry.root = root;
    GStreamable* object = Graph::streamable(known, root);

    const std::uint32_t outer = met.current;
    met.current = number;
    ++met.depth;
    try {
        object->read(*this);
    } catch (...) {
        --met.depth;
        met.current = outer;
        met.last = kNobody;
        if (met.give_up(number))
            GStreamable::Destroy(object);
        else
            entry.root = nullptr;
        throw;
    }
    --met.depth;
    met.current = outer;
    entry.reading = 0;

    void* part = Graph::cast(known, root, type);
    if (part == nullptr && met.give_up(number))
        GStreamable::Destroy(object);
    if (outer == kNobody)
        met.forget_order();
    return met.hand_out(number, part);
}

void ipstream::claim()
{
    Graph* met = graph_.get();
    if (met == nullptr || met->last == kNobody)
        return;
    MetObject& object = met->objects[met->last];
    if (object.reading != 0 || object.owned != 0)
        refuse("A stream gives one object to two owners.");
    if (met->current != kNobody)
        met->claim_within(object);
    else
        object.owned = 1;
}
