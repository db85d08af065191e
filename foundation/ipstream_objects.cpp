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
    GRTTIObject* root = nullptr;  ///< Null once it is gone.
    std::uint32_t owner = kNobody;
    std::uint16_t class_number = 0;
    std::uint16_t height : 12 = 0;  ///< Of the tree that it owns.
    std::uint16_t reading : 1 = 1;
    std::uint16_t owned : 1 = 0;
    std::uint16_t doomed : 1 = 0;  ///< Goes with the object that is being discarded.
};
static_assert(ipstream::kMaxDepth < 1 << 12);

/// A reference met inside the object that it leads to.
struct InnerReference {
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

struct ipstream::Graph {
    std::vector<MetClass> classes;
    std::vector<MetObject> objects;
    std::vector<std::uint32_t> claims;  ///< Made inside objects that are being read, in order.
    std::vector<InnerReference> inner_references;
    std::uint32_t current = kNobody;  ///< The innermost object that is being read.
    std::uint32_t last = kNobody;     ///< What the last readPointer gave.
    int depth = 0;

    void* cast(std::uint32_t number, const type_info& type);
    GStreamable* streamable(std::uint32_t number);
    void doom(std::uint32_t number, std::size_t first_claim);
    bool is_held_by_survivor(std::uint32_t number, std::size_t first_reference) const;
    void bury(std::uint32_t number, std::size_t first_claim);
    void pardon(std::uint32_t number, std::size_t first_claim);
};

/// The object as the asked class, or null. Its class has given the same answer before, mostly.
void* ipstream::Graph::cast(std::uint32_t number, const type_info& type)
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

GStreamable* ipstream::Graph::streamable(std::uint32_t number)
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

/// Marks the object and what goes with it: all that it owns, through any owner. Claims are looked
/// through backwards, because an object is claimed after what it claimed itself.
void ipstream::Graph::doom(std::uint32_t number, std::size_t first_claim)
{
    objects[number].doomed = 1;
    for (std::size_t at = claims.size(); at > first_claim; --at) {
        MetObject& object = objects[claims[at - 1]];
        if (object.owner != kNobody && objects[object.owner].doomed != 0)
            object.doomed = 1;
    }
}

bool ipstream::Graph::is_held_by_survivor(std::uint32_t number, std::size_t first_reference) const
{
    return std::any_of(inner_references.begin() + static_cast<std::ptrdiff_t>(first_reference),
                       inner_references.end(), [&](const InnerReference& reference) {
                           return reference.to == number && objects[reference.from].doomed == 0;
                       });
}

/// Forgets what is marked: it is gone, or about to go.
void ipstream::Graph::bury(std::uint32_t number, std::size_t first_claim)
{
    objects[number].root = nullptr;
    const auto gone = [this](std::uint32_t claimed) {
        MetObject& object = objects[claimed];
        if (object.doomed == 0)
            return false;
        object.root = nullptr;
        return true;
    };
    const auto first = claims.begin() + static_cast<std::ptrdiff_t>(first_claim);
    claims.erase(std::remove_if(first, claims.end(), gone), claims.end());
}

void ipstream::Graph::pardon(std::uint32_t number, std::size_t first_claim)
{
    objects[number].doomed = 0;
    for (std::size_t at = first_claim; at < claims.size(); ++at)
        objects[claims[at]].doomed = 0;
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

void* ipstream::read_reference(const type_info& type)
{
    Graph& met = graph();
    const std::uint32_t number = read_value<std::uint32_t>();
    if (number >= met.objects.size())
        throw GStreamException("A stream refers to an object that it does not hold.");
    met.last = kNobody;
    const MetObject& object = met.objects[number];
    if (object.root == nullptr)
        return nullptr;
    if (object.reading != 0)
        met.inner_references.push_back({met.current, number});
    void* part = met.cast(number, type);
    if (part != nullptr)
        met.last = number;
    return part;
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
            throw GStreamException("A stream refers to a class that it does not name.");
        return number;
    }
    GString name;
    read_text(name);
    if (name.length() > zmr::kMaxClassNameBytes || met.classes.size() >= zmr::kMaxClasses)
        throw GStreamException("A stream names too many classes, or one by too long a name.");
    const GMetaClass* metaclass = find_class(name.text);
    if (metaclass == nullptr || metaclass->getBuilder() == nullptr ||
        metaclass->isKindOf(&GStreamable::metaclass_) == nullptr)
        throw UnknownStreamableType_Exception(name.text);
    met.classes.push_back({.builder = metaclass->getBuilder()});
    return static_cast<std::uint32_t>(met.classes.size() - 1);
}

void* ipstream::read_object(std::uint32_t class_number, const type_info& type)
{
    Graph& met = *graph_;
    if (met.depth >= kMaxDepth)
        throw GStreamException("The objects in a stream are nested too deeply.");
    const auto number = static_cast<std::uint32_t>(met.objects.size());
    met.objects.push_back({.class_number = static_cast<std::uint16_t>(class_number)});
    met.objects.back().root = met.classes[class_number].builder();
    GStreamable* object = met.streamable(number);

    const std::uint32_t outer = met.current;
    const std::size_t first_claim = met.claims.size();
    const std::size_t first_reference = met.inner_references.size();
    met.current = number;
    ++met.depth;
    try {
        object->read(*this);
    } catch (...) {
        --met.depth;
        met.current = outer;
        met.doom(number, first_claim);
        met.bury(number, first_claim);
        GStreamable::Destroy(object);
        throw;
    }
    --met.depth;
    met.current = outer;
    met.objects[number].reading = 0;

    void* part = met.cast(number, type);
    met.last = part == nullptr ? kNobody : number;
    if (part == nullptr) {
        met.doom(number, first_claim);
        if (met.is_held_by_survivor(number, first_reference)) {
            met.pardon(number, first_claim);
        } else {
            met.bury(number, first_claim);
            GStreamable::Destroy(object);
        }
    }
    if (met.depth == 0) {
        met.claims.clear();
        met.inner_references.clear();
    }
    return part;
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
