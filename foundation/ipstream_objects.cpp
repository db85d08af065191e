#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/StreamFormat.h"
#include "foundation/ipstream.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::uint32_t kNobody = 0xFFFFFFFF;

/// A class met in the data, and where the sub-objects lie in its instances: equal for all of them,
/// so that most objects need no cast.
struct MetClass {
    GMetaClass::Builder builder = nullptr;
    const type_info* asked = nullptr;  ///< The class last asked for, and its answer:
    std::ptrdiff_t asked_offset = 0;   ///< from the root sub-object, when `asked_fits`.
    std::ptrdiff_t streamable_offset = 0;
    bool asked_fits = false;
    bool streamable_known = false;
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

[[nodiscard]] std::ptrdiff_t offset_of(GRTTIObject* root, const void* part)
{
    return static_cast<const char*>(part) - reinterpret_cast<const char*>(root);
}

}  // namespace

// The functions on the way of every object are inline here: as members of an exported class they
// would be called through the table by which other modules could replace them.

struct ipstream::Graph {
    std::vector<MetClass> classes;
    std::vector<MetObject> objects;
    std::vector<std::uint32_t> claims;  ///< Made inside objects that are being read, in order.
    std::vector<Reference> references;  ///< The same for pointers handed out.
    std::uint32_t current = kNobody;    ///< The innermost object that is being read.
    std::uint32_t last = kNobody;       ///< What the last readPointer gave.
    int depth = 0;

    /// How long the two lists were when the reading of an object began.
    struct Mark {
        std::size_t claims;
        std::size_t references;
    };

    void* cast(std::uint32_t number, const type_info& type);
    GStreamable* streamable(std::uint32_t number);
    void* hand_out(std::uint32_t number, void* part);
    bool give_up(std::uint32_t number, Mark mark);

private:
    bool doom(std::uint32_t number, Mark mark);
    bool is_held_by_survivor(Mark mark) const;
    void pardon(std::uint32_t number, Mark mark);
    void bury(std::uint32_t number, Mark mark);
};

/// The object as the asked class, or null. Its class has given the same answer before, mostly.
inline void* ipstream::Graph::cast(std::uint32_t number, const type_info& type)
{
    const MetObject& object = objects[number];
    MetClass& known = classes[object.class_number];
    if (known.asked != &type) {
        const void* part = object.root->cast_to_(type);
        known.asked = &type;
        known.asked_fits = part != nullptr;
        known.asked_offset = part == nullptr ? 0 : offset_of(object.root, part);
    }
    return known.asked_fits ? at_offset<void>(object.root, known.asked_offset) : nullptr;
}

inline GStreamable* ipstream::Graph::streamable(std::uint32_t number)
{
    const MetObject& object = objects[number];
    MetClass& known = classes[object.class_number];
    if (!known.streamable_known) {
        known.streamable_offset =
            offset_of(object.root, object.root->cast_to_(GStreamable::gTypeInfo_));
        known.streamable_known = true;
    }
    return at_offset<GStreamable>(object.root, known.streamable_offset);
}

/// Notes that the object that is being read has got the pointer, which may be null.
inline void* ipstream::Graph::hand_out(std::uint32_t number, void* part)
{
    last = part == nullptr ? kNobody : number;
    if (part != nullptr && current != kNobody)
        references.push_back({current, number});
    return part;
}

/// True when the object can be destroyed with all that it owns: then none of these is given out any
/// more. False when that would leave a dangling pointer in an object that lives on.
bool ipstream::Graph::give_up(std::uint32_t number, Mark mark)
{
    const bool all_within = doom(number, mark);
    if (!all_within || is_held_by_survivor(mark)) {
        pardon(number, mark);
        return false;
    }
    bury(number, mark);
    return true;
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
    const unsigned char tag = readByte();
    if (tag == zmr::kNullPointer) {
        if (graph_ != nullptr)
            graph_->last = kNobody;
        return nullptr;
    }
    if (tag == zmr::kKnownObject)
        return read_reference(type);
    return read_object(read_class(tag), type);
}

inline void* ipstream::read_reference(const type_info& type)
{
    Graph& met = graph();
    const std::uint32_t number = read_value<std::uint32_t>();
    if (number >= met.objects.size())
        throw GStreamException("A stream refers to an object that it does not hold.");
    if (met.objects[number].root == nullptr)
        return met.hand_out(number, nullptr);
    return met.hand_out(number, met.cast(number, type));
}

/// The number in this stream of the class of a new object.
inline std::uint32_t ipstream::read_class(unsigned char tag)
{
    Graph& met = graph();
    if (tag != zmr::kNewClass) {
        const std::uint32_t number = tag == zmr::kWideClass
                                         ? read_value<std::uint16_t>()
                                         : std::uint32_t{tag} - zmr::kFirstClassTag;
        if (number >= met.classes.size())
            throw GStreamException("A stream refers to a class that it does not name.");
        return number;
    }
    GString name;
    read_text(name);
    if (name.length() > zmr::kMaxClassNameBytes || met.classes.size() >= zmr::kMaxClasses)
        throw GStreamException("A stream names too many classes, or one by too long a name.");
    const GMetaClass* metaclass =
        name.view().find('\0') == std::string_view::npos ? find_class(name.text) : nullptr;
    if (metaclass == nullptr || metaclass->getBuilder() == nullptr ||
        metaclass->isKindOf(&GStreamable::metaclass_) == nullptr)
        throw UnknownStreamableType_Exception(name.text);
    met.classes.push_back({.builder = metaclass->getBuilder()});
    return static_cast<std::uint32_t>(met.classes.size() - 1);
}

inline void* ipstream::read_object(std::uint32_t class_number, const type_info& type)
{
    Graph& met = *graph_;
    if (met.depth >= kMaxDepth)
        throw GStreamException("The objects in a stream are nested too deeply.");
    const auto number = static_cast<std::uint32_t>(met.objects.size());
    met.objects.push_back({.class_number = static_cast<std::uint16_t>(class_number)});
    met.objects.back().root = met.classes[class_number].builder();
    GStreamable* object = met.streamable(number);

    const std::uint32_t outer = met.current;
    const Graph::Mark mark = {met.claims.size(), met.references.size()};
    met.current = number;
    ++met.depth;
    try {
        object->read(*this);
    } catch (...) {
        --met.depth;
        met.current = outer;
        met.last = kNobody;
        if (met.give_up(number, mark))
            GStreamable::Destroy(object);
        else
            met.objects[number].root = nullptr;
        throw;
    }
    --met.depth;
    met.current = outer;
    met.objects[number].reading = 0;

    void* part = met.cast(number, type);
    if (part == nullptr && met.give_up(number, mark))
        GStreamable::Destroy(object);
    if (met.depth == 0) {
        met.claims.clear();
        met.references.clear();
    }
    return met.hand_out(number, part);
}

void ipstream::claim()
{
    if (graph_ == nullptr || graph_->last == kNobody)
        return;
    Graph& met = *graph_;
    MetObject& object = met.objects[met.last];
    if (object.reading != 0 || object.owned != 0)
        throw GStreamException("A stream gives one object to two owners.");
    if (met.current != kNobody) {
        MetObject& owner = met.objects[met.current];
        const int height = std::max(int{owner.height}, object.height + 1);
        if (height > kMaxDepth)
            throw GStreamException("The objects in a stream are nested too deeply.");
        owner.height = static_cast<std::uint16_t>(height & 0xFFF);
        met.claims.push_back(met.last);
    }
    object.owned = 1;
    object.owner = met.current;
}
