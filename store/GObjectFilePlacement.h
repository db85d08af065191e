#pragma once

#include "store/GObjectPlacement.h"

class GObjectFileFormat;

/// One object in one file of its own: in the format given, or, without one, as the object's stream
/// behind a head that tells its class (docs/object-file.md).
class ZMR_GV_API GObjectFilePlacement : public GObjectPlacement {
    G_DECLARE_CLASS(GObjectFilePlacement)

public:
    /// With a null `format` and `recognise`, the registered formats are asked for one that knows
    /// the file before the object's stream is tried. `format` must outlive the placement.
    GObjectFilePlacement(const char* file, bool recognise, const GObjectFileFormat* format);
    GObjectFilePlacement(const GObjectFilePlacement&) = default;
    GObjectFilePlacement& operator=(const GObjectFilePlacement&) = default;

    void read(ipstream& in) override;
    void write(opstream& out) override;
    /// A copy that keeps the format, which no stream carries.
    [[nodiscard]] GStreamable* clone(bool deep) override;
    [[nodiscard]] GFile get_filename() const override { return filename_; }
    [[nodiscard]] bool place_exists() const override;
    /// Redirects the name; when the file is still missing, asks s_AskFunction.
    void change_not_exists() override;
    /// Null for a missing, foreign or damaged file.
    [[nodiscard]] GObject* get_object(bool shared) override;
    [[nodiscard]] const GMetaClass* get_object_class_id() const override;
    /// Writes to a new file beside the old one and then takes its place, so that a failure leaves
    /// the former object.
    bool put_object(GObject* object, bool shared) override;
    bool copy_object_from_to(const GObjectPlacement& from, const GObjectPlacement& to,
                             bool& ok) override;
    bool remove_object() override;
    [[nodiscard]] bool compare_items(const GObjectPlacement& other) const override;
    void get_readable_form(GString& text) const override;

    /// Called when a file is missing: may change the name, and returns true when the user gave
    /// another. Null when no user interface has set it.
    static bool (*s_AskFunction)(GFile& file);

protected:
    GObjectFilePlacement() = default;

private:
    [[nodiscard]] const GObjectFileFormat* format_of_file() const;

    GFile filename_;
    bool recognise_ = false;
    const GObjectFileFormat* format_ = nullptr;
};
