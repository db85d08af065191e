#pragma once

#include "foundation/GString.h"

/// One type of picture files with its texts for users and file dialogs. A plain value.
class ZMR_GV_API ImageFileFilter {
public:
    /// `patterns` are split by ";", the usual one first.
    ImageFileFilter(const char* name, const char* patterns);
    virtual ~ImageFileFilter();

    /// "PNG".
    [[nodiscard]] const GString& get_name() const { return name_; }
    /// "JPEG (*.jpg;*.jpeg)".
    [[nodiscard]] GString get_display_string() const;
    /// "*.jpg;*.jpeg".
    [[nodiscard]] const GString& get_patterns() const { return patterns_; }
    /// The display text and the patterns as file dialogs take them: "PNG (*.png)|*.png|".
    [[nodiscard]] GString get_dialog_string() const;
    /// The usual extension without its dot: "jpg".
    [[nodiscard]] GString get_default_extension() const;

private:
    GString name_;
    GString patterns_;
};
