#include "odb/ODB_ObjectDatabaseFormat.h"

#include "odb/ObjectDatabase.h"
#include "store/ResourceFileServer.h"

#include <memory>

unsigned char ODB_ObjectDatabaseFormat::write_object(const char*, GStreamable*) const
{
    return 0;
}

GStreamable* ODB_ObjectDatabaseFormat::read_object(const char* file) const
{
    if (!ResourceFile::IsValidToRead(file))
        return nullptr;
    auto database = std::make_unique<ObjectDatabase>(file, GIO::OpenReadWrite);
    if (database->server == nullptr || database->server->error() != 0)
        return nullptr;
    return database.release();
}

GString ODB_ObjectDatabaseFormat::read_object_class_name(const char* file)
{
    return ResourceFile::IsValidToRead(file) ? ObjectDatabase::metaclass_.name : "";
}
