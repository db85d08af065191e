#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"

#include <atomic>
#include <string>

/// An object to put into resource files: a text.
class StoredText : public GStreamable {
    G_DECLARE_CLASS(StoredText)

public:
    StoredText() { ++alive; }
    explicit StoredText(const std::string& source) : text(source) { ++alive; }
    ~StoredText() override { --alive; }

    void read(ipstream& in) override;
    void write(opstream& out) override;

    static std::atomic<int> alive;
    GString text;
};
