// The clients of a library: who takes over the mediators of one that closes, and which of them are
// held by references of other libraries.
//
// A library that refers to another holds it open, by a client that its references share. Two that
// refer to each other would hold each other open for ever; so when a client closes and none of the
// application is left among those that keep its library open, directly or through others, the
// clients of references in that circle end with it.

#include "odb/ODB_Mediator.h"
#include "odb/ODB_Options.h"
#include "odb/ObjectDatabase.h"
#include "store/ResourceFileServer.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

/// A client that references share, as long as one of them is attached.
struct SharedClient {
    const ResourceFileServer* holder;
    GFile file;
    std::weak_ptr<ObjectDatabase> client;
};

std::vector<SharedClient>& shared_clients()
{
    static auto& all = *new std::vector<SharedClient>;  // libraries may be closed at the very end
    return all;
}

/// Keeps `client` for the holder of the result. Null when it is being destroyed.
std::shared_ptr<ObjectDatabase> keep_shared(const ObjectDatabase* client)
{
    for (const SharedClient& one : shared_clients()) {
        std::shared_ptr<ObjectDatabase> kept = one.client.lock();
        if (kept.get() == client)
            return kept;
    }
    return nullptr;
}

}  // namespace

std::shared_ptr<ObjectDatabase> ObjectDatabase::OpenForReferences(const GFile& file,
                                                                  const ObjectDatabase& holder)
{
    auto& all = shared_clients();
    std::erase_if(all, [](const SharedClient& one) { return one.client.expired(); });
    for (const SharedClient& one : all) {
        std::shared_ptr<ObjectDatabase> client = one.client.lock();
        if (client != nullptr && one.holder == holder.server && one.file.compare(file.text) == 0 &&
            client->server != nullptr && !client->leaving_)
            return client;
    }
    auto client = std::make_shared<ObjectDatabase>(file.text, GIO::OpenRead);
    if (client->server == nullptr)
        return nullptr;
    client->held_for_ = holder.server;
    all.push_back({holder.server, file, client});
    return client;
}

void ObjectDatabase::close()
{
    if (server != nullptr && !closing_) {
        closing_ = true;
        try {
            hand_mediators_over();
        } catch (const std::bad_alloc&) {
            detach_mediators();  // whoever asks for them next attaches them again
        }
        closing_ = false;
        leaving_ = false;
    }
    options_ = nullptr;
    ResourceFile::close();
}

void ObjectDatabase::hand_mediators_over()
{
    if (!leaving_) {
        leaving_ = true;
        end_circle();
    }
    // Loaded mediators outlive this client, because the server holds them.
    const std::vector<ODB_Mediator*> attached = attached_mediators(GResourcePath());
    for (std::size_t i = attached.size(); i > 0; --i)
        attached[i - 1]->set_DB(nullptr);
    if (const std::shared_ptr<ObjectDatabase> heir = find_heir()) {
        for (std::size_t i = attached.size(); i > 0; --i)
            attached[i - 1]->set_DB(heir.get());
    }
}

void ObjectDatabase::detach_mediators()
{
    visit_loaded(
        [](GStreamable* instance, void* user) {
            auto* const mediator = zmr::class_cast<ODB_Mediator>(instance);
            if (mediator == nullptr || mediator->get_DB() != user)
                return;
            try {
                mediator->set_DB(nullptr);
            } catch (const std::bad_alloc&) {
                mediator->ODB_Mediator::set_DB(nullptr);
            }
        },
        this);
}

std::vector<ODB_Mediator*> ObjectDatabase::attached_mediators(const GResourcePath& path) const
{
    std::vector<ODB_Mediator*> attached;
    if (!was_attached_to_)  // a placement's client closes in a library that has all loaded
        return attached;
    for (GStreamable* const instance : loaded_instances(path, MediatorResourceType, true)) {
        auto* const mediator = zmr::class_cast<ODB_Mediator>(instance);
        if (mediator != nullptr && mediator->get_DB() == this)
            attached.push_back(mediator);
    }
    return attached;
}

std::shared_ptr<ObjectDatabase> ObjectDatabase::find_heir() const
{
    GCollection others(0, 4, 0);
    get_all_clients(others, false);
    for (long i = 0; i < others.count; ++i) {
        auto* const client = static_cast<ObjectDatabase*>(others.at(i));
        if (client->held_for_ == nullptr)
            return {std::shared_ptr<void>(), client};  // the application's own
    }
    // Taking a reference over may end the one that holds the heir.
    for (long i = 0; i < others.count; ++i) {
        if (auto client = keep_shared(static_cast<const ObjectDatabase*>(others.at(i))))
            return client;
    }
    return nullptr;
}

void ObjectDatabase::end_circle()
{
    // All the libraries that keep this one open, from the nearest on.
    std::vector<const ResourceFileServer*> keeping = {server};
    std::vector<std::shared_ptr<ObjectDatabase>> held;
    for (std::size_t i = 0; i < keeping.size(); ++i) {
        bool is_needed = false;
        keeping[i]->visit_clients([&](ResourceFile& file) {
            const auto* const client = zmr::class_cast<ObjectDatabase>(&file);
            if (client != nullptr && client->leaving_)
                return;
            is_needed = is_needed || client == nullptr || client->held_for_ == nullptr;
            if (is_needed)
                return;
            if (auto kept = keep_shared(client))
                held.push_back(std::move(kept));
            if (ResourceFileServer::IsOpen(client->held_for_) &&
                std::find(keeping.begin(), keeping.end(), client->held_for_) == keeping.end())
                keeping.push_back(client->held_for_);
        });
        if (is_needed)
            return;  // the application keeps it
    }
    for (const auto& client : held)
        client->leaving_ = true;
    for (const auto& client : held)
        client->close();
}

void ObjectDatabase::get_all_clients(GCollection& clients, bool include_self) const
{
    get_all_clients(server, clients, include_self);
}

void ObjectDatabase::get_all_clients(const ResourceFileServer* of_server, GCollection& clients,
                                     bool include_self) const
{
    clients.empty();
    clients.owns_items = 0;
    if (of_server == nullptr)
        return;
    of_server->visit_clients([&](ResourceFile& client) {
        auto* const database = zmr::class_cast<ObjectDatabase>(&client);
        if (database == nullptr || (database->leaving_ && database != this))
            return;
        if (include_self || database != this)
            clients.v_insert(database);
    });
}
