#pragma once

#include "foundation/GString.h"
#include "odb/ODB_ContentsFilter.h"

/// Wants the entries whose object is of a class or, with `related`, of one of that class's bases:
/// what an object of the filter's class could stand in for. Entries of derived classes are refused.
/// Where either class is not registered in this process, equal class names decide.
class ZMR_GV_API ODB_ClassFilter : public ODB_ContentsFilter {
    G_DECLARE_CLASS(ODB_ClassFilter)

public:
    ODB_ClassFilter(const char* class_name, unsigned char related);
    /// A null class is that of the empty name.
    ODB_ClassFilter(const GMetaClass* class_identifier, unsigned char related);
    explicit ODB_ClassFilter(StreamableInit) {}
    ODB_ClassFilter(const ODB_ClassFilter&) = default;
    ODB_ClassFilter& operator=(const ODB_ClassFilter&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;
    unsigned char accept(const ODB_Mediator& mediator) override;

    /// Null when the class was not registered as the filter was made or read.
    [[nodiscard]] const GMetaClass* get_class_identifier() const { return class_identifier_; }
    [[nodiscard]] const GString& get_class_name() const { return class_name_; }
    [[nodiscard]] unsigned char get_related() const { return related_; }

private:
    const GMetaClass* class_identifier_ = nullptr;
    GString class_name_;
    unsigned char related_ = 0;
};
