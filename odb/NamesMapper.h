#pragma once

#include "foundation/GMetaClass.h"
#include "platform/CString.h"

/// Translates class names into names for people and sorts classes into categories, by texts that
/// modules contribute as they load. docs/odb.md tells the texts' form; what was contributed first
/// answers first. Cost of a question: one look-up. Any thread.
class ZMR_GV_API NamesMapper {
public:
    static const CString globalShadersCategory;  ///< "Global Shaders"
    /// "HIDDEN": classes of this category are never offered to people.
    static const CString hiddenClassesCategory;

    /// Takes the program's texts from number `first_id` on, up to the first that is of neither
    /// form.
    static void Initialize(unsigned int first_id);
    /// The same from the string table of `module`.
    static void InitializeFromBEM(HINSTANCE module, unsigned int first_id);
    /// Takes one text: of names when a "=(" first occurs behind its first letter, of categories
    /// when a "]:" does; it may be of both. Any other text is ignored.
    static void Initialize(const CString& text);

    /// The name for people; the class's own name when none is known; empty for null.
    [[nodiscard]] static CString user_name_for(const GMetaClass& metaclass);
    [[nodiscard]] static CString user_name_for(const GMetaClass* metaclass);
    [[nodiscard]] static CString category_name_for(const GMetaClass& metaclass);
    [[nodiscard]] static CString category_name_for(const GMetaClass* metaclass);
    /// The category of a class, or of a category, by its name; empty when there is none.
    [[nodiscard]] static CString category_name_for(const CString& name);
    /// Always empty: there is no way back from a name for people.
    [[nodiscard]] static CString ClassNameFor(const char* user_name);
};
