#pragma once

#include "odb/ODB_ObjectAttribute.h"

#include <memory>

/// The bytes of an attribute whose class this program does not know, kept so that they can be
/// written back as they were. Never read by class.
class ZMR_GV_API ODB_UnknownAttribute : public ODB_ObjectAttribute {
    G_DECLARE_CLASS(ODB_UnknownAttribute)

public:
    /// Takes over `content`, made by `new unsigned char[]`, of `size` bytes.
    ODB_UnknownAttribute(void* content, long size);
    /// Copies share the bytes.
    ODB_UnknownAttribute(const ODB_UnknownAttribute&) = default;
    ODB_UnknownAttribute& operator=(const ODB_UnknownAttribute&) = default;

    [[nodiscard]] void* get_content() const { return content_.get(); }
    [[nodiscard]] long get_size() const { return size_; }

private:
    std::shared_ptr<unsigned char[]> content_;
    long size_ = 0;
};
