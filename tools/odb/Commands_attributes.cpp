// odb attr and describe: the attributes of one object.
#include "foundation/OwnedObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_ObjectAttribute.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "odb/ObjectDatabase.h"
#include "store/GResourceIterators.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenEntry.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace odb {

namespace {

struct FreeText {
    void operator()(char* text) const { gfreestr(text); }
};

/// What is known of one attribute, its class registered or not.
struct AttributeFacts {
    std::string class_name;
    bool known = false;
    std::uint32_t bytes = 0;
    bool is_text = false;
    std::string text;
};

const ODB_TextDescriptionAttribute* text_in(const zmr::OwnedObject<>& attribute)
{
    return zmr::class_cast<ODB_TextDescriptionAttribute>(attribute.get());
}

/// The attribute that lies under `type`; false when that is something else.
bool look_at(const OpenedEntry& entry, const GString& type, AttributeFacts& facts)
{
    // An attribute's type is its class; what is stored in other ways has types of other forms.
    const GResourceFullName resource = entry.name.of_type(type);
    const std::unique_ptr<char, FreeText> stored(entry.database().read_class_name(resource));
    if (stored == nullptr || !(type == stored.get()))
        return false;
    const zmr::OwnedObject<> attribute(entry.mediator->get_attribute(type));
    const GMetaClass* const metaclass = GMetaClass::FindByName(type.text);
    if (metaclass != nullptr && metaclass->isKindOf(&ODB_ObjectAttribute::metaclass_) == nullptr)
        return false;
    facts.class_name = type.view();
    facts.known = metaclass != nullptr;
    facts.bytes = entry.database().get_resource_block(resource).length;
    if (const auto* const text = text_in(attribute)) {
        facts.is_text = true;
        facts.text = text->get_text().view();
    }
    return true;
}

nlohmann::json to_json(const AttributeFacts& facts)
{
    nlohmann::json fields = {
        {"class", facts.class_name}, {"known", facts.known}, {"bytes", facts.bytes}};
    if (facts.is_text)
        fields["text"] = facts.text;
    return fields;
}

ExitCode list_attributes(const OpenedEntry& entry, Style style)
{
    std::vector<AttributeFacts> all;
    for (GResourceTypeIterator type(entry.database(), entry.name.path); type.index >= 0; --type) {
        AttributeFacts facts;
        if (look_at(entry, type.element(), facts))
            all.push_back(std::move(facts));
    }
    std::ranges::reverse(all);  // into byte order
    JsonArrayPrinter list;
    for (const AttributeFacts& facts : all) {
        if (style == Style::Json)
            list.add(to_json(facts));
        else
            print(fmt::format("{:<32} {:>8} bytes  {}\n", printable(facts.class_name), facts.bytes,
                              facts.known ? printable(facts.text) : "(class not known here)"));
    }
    if (style == Style::Json)
        list.close();
    return ExitCode::Done;
}

ExitCode get_attribute(const AttributeArguments& arguments, const OpenedEntry& entry, Style style)
{
    AttributeFacts facts;
    if (!look_at(entry, GString(arguments.class_name.c_str()), facts))
        return refuse_entry(entry, fmt::format("it has no attribute {}", arguments.class_name));
    if (style == Style::Json)
        print(json_text(to_json(facts)) + "\n");
    else if (facts.is_text)
        print(printable(facts.text) + "\n");
    else
        print(fmt::format("{} bytes\n", facts.bytes));
    return ExitCode::Done;
}

/// A new attribute of the class with the value; null, with the reason, when there can be none.
zmr::OwnedObject<> make_attribute(const AttributeArguments& arguments, std::string& reason)
{
    const GMetaClass* const metaclass = GMetaClass::FindByName(arguments.class_name.c_str());
    if (metaclass == nullptr) {
        reason = fmt::format(
            "the class {} is not known here; --module names the module that has "
            "it",
            arguments.class_name);
        return nullptr;
    }
    zmr::OwnedObject<> attribute;
    if (metaclass->isKindOf(&ODB_ObjectAttribute::metaclass_) != nullptr)
        attribute.reset(zmr::class_cast<ODB_ObjectAttribute>(metaclass->buildObject()));
    if (attribute == nullptr) {
        reason = fmt::format("{} is no class of attributes that can be made", arguments.class_name);
        return nullptr;
    }
    if (text_in(attribute) == nullptr && !arguments.value.empty()) {
        reason = fmt::format("attributes of class {} take no value here", arguments.class_name);
        return nullptr;
    }
    return attribute;
}

void store(const OpenedEntry& entry, ODB_ObjectAttribute& attribute, const std::string& value)
{
    const ResourceFile::CommitScope scope(entry.database());
    entry.mediator->set_attribute(&attribute, false);
    if (auto* const text = zmr::class_cast<ODB_TextDescriptionAttribute>(&attribute))
        text->set_text(value.c_str());
}

ExitCode set_attribute(const AttributeArguments& arguments, const OpenedEntry& entry)
{
    std::string reason;
    const zmr::OwnedObject<> made = make_attribute(arguments, reason);
    if (made == nullptr)
        return refuse_entry(entry, reason);
    store(entry, *zmr::class_cast<ODB_ObjectAttribute>(made.get()), arguments.value);
    return finish_writing(entry.database(), arguments.file, ExitCode::Done);
}

ExitCode remove_attribute(const OpenedEntry& entry, const std::string& class_name)
{
    AttributeFacts facts;
    const GString type(class_name.c_str());
    if (!look_at(entry, type, facts))
        return refuse_entry(entry, fmt::format("it has no attribute {}", class_name));
    entry.mediator->remove_attribute(type);
    return finish_writing(entry.database(), entry.file, ExitCode::Done);
}

}  // namespace

ExitCode attribute(const AttributeArguments& arguments, Style style)
{
    const bool writes = arguments.action == "set" || arguments.action == "remove";
    if (!arguments.action.empty() && arguments.class_name.empty()) {
        complain(fmt::format("attr {}: the attribute's class is missing", arguments.action));
        return ExitCode::WrongUsage;
    }
    if (arguments.action != "set" && !arguments.value.empty()) {
        complain(fmt::format("attr {}: it takes no value", arguments.action));
        return ExitCode::WrongUsage;
    }
    const OpenedEntry entry = writes ? open_entry_to_write(arguments.file, arguments.name)
                                     : open_entry_to_read(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    if (arguments.action.empty())
        return list_attributes(entry, style);
    if (arguments.action == "get")
        return get_attribute(arguments, entry, style);
    if (arguments.action == "set")
        return set_attribute(arguments, entry);
    return remove_attribute(entry, arguments.class_name);
}

ExitCode describe(const DescribeArguments& arguments, Style style)
{
    const bool writes = arguments.sets || arguments.removes;
    const OpenedEntry entry = writes ? open_entry_to_write(arguments.file, arguments.name)
                                     : open_entry_to_read(arguments.file, arguments.name);
    if (!entry)
        return entry.code;
    const GMetaClass& text_class = ODB_TextDescriptionAttribute::metaclass_;
    if (arguments.removes)
        return remove_attribute(entry, text_class.name);
    if (arguments.sets) {
        ODB_TextDescriptionAttribute text;
        store(entry, text, arguments.text);
        return finish_writing(entry.database(), arguments.file, ExitCode::Done);
    }
    const zmr::OwnedObject<> attribute(entry.mediator->get_attribute(&text_class));
    const auto* const text = text_in(attribute);
    if (text == nullptr)
        return refuse_entry(entry, "it has no description");
    if (style == Style::Json)
        print(json_text(
                  {{"path", entry.name.text()}, {"text", std::string(text->get_text().view())}}) +
              "\n");
    else
        print(printable(text->get_text().view()) + "\n");
    return ExitCode::Done;
}

}  // namespace odb
