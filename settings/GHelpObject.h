#pragma once

#include "platform/Export.h"
#include "platform/Windows.h"

#include <cstdint>
#include <optional>

/// Makes the numbers of a module's help topics. A module whose version resource has a number as its
/// "SpecialBuild" text gets topics of its own, so that those of several modules are not mixed up:
/// it is a tag that protects nothing.
class ZMR_GV_API GHelpObject {
public:
    /// Of no module: the plain topic 10031.
    GHelpObject() : GHelpObject(nullptr, kDefaultHelpId) {}
    /// `module` is where the module's handle will be found, so the object may be made before it is
    /// known; borrowed. Null stands for no module.
    GHelpObject(HINSTANCE* module, unsigned long helpId) : module_(module), help_id_(helpId) {}

    /// The topic's number: the help id, with the module's number from bit 20 on where it has one.
    /// Reads the version resource at each call.
    [[nodiscard]] unsigned long GetHelpID() const;

private:
    [[nodiscard]] HINSTANCE getHInst() const { return module_ != nullptr ? *module_ : nullptr; }
    [[nodiscard]] unsigned long helpID() const { return help_id_; }
    [[nodiscard]] std::optional<std::uint32_t> get_special_build() const;

    static constexpr unsigned long kDefaultHelpId = 10031;

    HINSTANCE* module_;
    unsigned long help_id_;
};
