// The options record and the conversions of ObjectDatabase.

#include "foundation/GLock.h"
#include "foundation/TGCollection.h"
#include "odb/ODB_Options.h"
#include "odb/ObjectDatabase.h"
#include "store/ResourceFileServer.h"

#include <memory>

namespace {

const GString kOptions(".ODB options");  // both the name and the type of the record

using Conversions = TGCollection<ObjectDatabase::ConversionObject>;

std::unique_ptr<Conversions>& conversions()
{
    static std::unique_ptr<Conversions> all;  // released, with its items, as the library unloads
    return all;
}

}  // namespace

ObjectDatabase::ConversionObject::~ConversionObject() = default;

void ObjectDatabase::ConversionObject::prepare_to_loading(ObjectDatabase&, const GResourceFullName&)
{
}

void ObjectDatabase::AddConversion(ConversionObject* conversion)
{
    if (conversion == nullptr)
        return;
    if (conversions() == nullptr)
        conversions() = std::make_unique<Conversions>(0, 2, 1);
    conversions()->v_insert(conversion);
}

void ObjectDatabase::prepare_conversions(const GResourceFullName& name)
{
    const Conversions* const all = conversions().get();
    if (all == nullptr)
        return;
    const GSingleLock locked(server->lock);
    for (long i = all->count - 1; i >= 0; --i)
        all->at(i)->prepare_to_loading(*this, name);
}

GStreamable* ObjectDatabase::convert(GStreamable* object, const GResourceFullName& name)
{
    const Conversions* const all = conversions().get();
    if (all == nullptr)
        return object;
    const GSingleLock locked(server->lock);
    for (long i = all->count - 1; i >= 0; --i)
        object = all->at(i)->convert_after_loading(object, *this, name);
    return object;
}

ODB_Options* ObjectDatabase::get_DB_options() const
{
    if (options_)
        return options_.get();
    auto* const self = const_cast<ObjectDatabase*>(this);  // reading fills a cache
    options_ = zmr::class_cast<ODB_Options>(self->ResourceFile::get(kOptions, kOptions, true));
    if (!options_) {
        options_ = new ODB_Options;
        self->update_DB_options();
    }
    return options_.get();
}

void ObjectDatabase::update_DB_options()
{
    ResourceFile::put(options_.get(), kOptions, kOptions, true);
}

const GMetaClass* ObjectDatabase::get_default_mediator() const
{
    if (server == nullptr)
        return ODB_Options().default_mediator;
    return get_DB_options()->default_mediator;
}

void ObjectDatabase::set_default_mediator(const GMetaClass* mediator_class)
{
    if (server == nullptr)
        return;
    get_DB_options()->default_mediator = mediator_class;
    update_DB_options();
}
