#pragma once

#include "odb/ODB_ContentsFilter.h"
#include "store/RegularExpression.h"

/// Wants the entries whose name, as a whole, matches a pattern. Directory and class play no part. A
/// pattern that RegularExpression refuses matches no entry.
class ZMR_GV_API ODB_RegularExpressionFilter : public ODB_ContentsFilter {
    G_DECLARE_CLASS(ODB_RegularExpressionFilter)

public:
    explicit ODB_RegularExpressionFilter(const char* pattern) : expression_(pattern) {}
    explicit ODB_RegularExpressionFilter(StreamableInit) {}
    ODB_RegularExpressionFilter(const ODB_RegularExpressionFilter&) = default;
    ODB_RegularExpressionFilter& operator=(const ODB_RegularExpressionFilter&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;
    unsigned char accept(const ODB_Mediator& mediator) override;

    [[nodiscard]] const RegularExpression& get_expression() const { return expression_; }

private:
    RegularExpression expression_;
};
