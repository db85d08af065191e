#pragma once

#include "foundation/GCollection.h"
#include "foundation/GString.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <cstdint>
#include <vector>

// Small classes for the tests of the object model and the streams.

/// An object with a name, a child that it owns and a peer that it does not own.
class SampleNode : public GStreamable {
    G_DECLARE_CLASS(SampleNode)

public:
    SampleNode();
    explicit SampleNode(const char* text);
    SampleNode(const SampleNode& other);
    SampleNode& operator=(const SampleNode& other) = default;
    ~SampleNode() override;
    /// Ends the nodes that were made after the first `count` and that no node owns: what data from
    /// outside made peers of nobody's.
    static void end_orphans_beyond(std::size_t count);

    void shut_down() override;
    void read(ipstream& in) override;
    void write(opstream& out) override;

    GString name;
    SampleNode* child = nullptr;
    SampleNode* peer = nullptr;
    int shut_downs = 0;
    bool has_owner = false;

    static inline int alive = 0;
    static inline std::vector<SampleNode*> living;  ///< In the order of their making.
    static constexpr unsigned char kVersion = 1;
};

/// A node whose class is another one.
class SampleLeaf : public SampleNode {
    G_DECLARE_CLASS(SampleLeaf)

public:
    void read(ipstream& in) override;
    void write(opstream& out) override;

    std::int32_t value = 0;
};

/// An object with peers only, none of which it owns.
class SampleWatcher : public GStreamable {
    G_DECLARE_CLASS(SampleWatcher)

public:
    SampleWatcher() { ++alive; }
    ~SampleWatcher() override { --alive; }
    void read(ipstream& in) override;
    void write(opstream& out) override;

    std::vector<GStreamable*> watched;
    static inline int alive = 0;
};

/// Owns its children, which may be of any class.
class SampleGroup : public GStreamable {
    G_DECLARE_CLASS(SampleGroup)

public:
    ~SampleGroup() override;
    void read(ipstream& in) override;
    void write(opstream& out) override;

    std::vector<GStreamable*> children;
};

/// Throws in the middle of reading.
class SampleThrower : public SampleNode {
    G_DECLARE_CLASS(SampleThrower)

public:
    void read(ipstream& in) override;
};

/// A second line of descent, without data in the streams.
class SampleTag : public GStreamable {
    G_DECLARE_CLASS(SampleTag)
    using NotBuiltByName = SampleTag;

public:
    int tag = 77;
};

/// Two bases, each with a root of its own.
class SampleTagged : public SampleLeaf, public SampleTag {
    G_DECLARE_CLASS(SampleTagged)

public:
    void shut_down() override { SampleLeaf::shut_down(); }
    void read(ipstream& in) override { SampleLeaf::read(in); }
    void write(opstream& out) override { SampleLeaf::write(out); }
    void enableSmartPointers(bool enable) override { SampleLeaf::enableSmartPointers(enable); }
    GStreamable* clone(bool deep) override { return SampleLeaf::clone(deep); }
};
