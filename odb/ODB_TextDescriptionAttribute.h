#pragma once

#include "foundation/GString.h"
#include "odb/ODB_ObjectAttribute.h"

/// A text that describes an entry to people.
class ZMR_GV_API ODB_TextDescriptionAttribute : public ODB_ObjectAttribute {
    G_DECLARE_CLASS(ODB_TextDescriptionAttribute)

public:
    ODB_TextDescriptionAttribute() = default;
    explicit ODB_TextDescriptionAttribute(const char* text) : text_(text) {}
    ODB_TextDescriptionAttribute(const ODB_TextDescriptionAttribute&) = default;
    ODB_TextDescriptionAttribute& operator=(const ODB_TextDescriptionAttribute&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;

    [[nodiscard]] const GString& get_text() const { return text_; }
    /// Takes the text and writes the attribute back by `modified`: it must belong to an entry.
    void set_text(const char* text);

private:
    GString text_;
};
