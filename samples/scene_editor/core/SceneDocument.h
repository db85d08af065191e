#pragma once

#include "foundation/GPointer.h"
#include "foundation/OwnedObject.h"
#include "platform/FileDevice.h"
#include "responder/GResponder.h"
#include "scene_interface/SceneRoot.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace editor {

/// Is told of changes of responders, and tells a function. User-interface thread.
class ChangeListener : public GResponder {
public:
    explicit ChangeListener(std::function<void()> changed) : changed_(std::move(changed)) {}

    void handle_event(GEvent& event) override;
    /// Listens to that responder and to no other; null to none.
    void listen_to(GResponder* responder);

private:
    std::function<void()> changed_;
    TGPointer<GResponder> heard_;
};

/// The scene that is edited and the file that it belongs to. The scene is built by the name of its
/// class, which a module brings. User-interface thread.
class SceneDocument {
public:
    /// `changed` is called after every change of the scene, what is selected and seen included, and
    /// when another scene takes its place; by calls of this class, too.
    explicit SceneDocument(std::function<void()> changed,
                           zmr::FileSystemDevice& files = zmr::FileSystemDevice::Real());
    ~SceneDocument();
    SceneDocument(const SceneDocument&) = delete;
    SceneDocument& operator=(const SceneDocument&) = delete;

    /// Begins an empty scene without a file. False, with nothing changed, when no module has
    /// brought the class.
    [[nodiscard]] bool begin_new();
    /// Takes the scene of that file in the place of this one. When that fails nothing changes, and
    /// the reason comes back as a sentence that names the file.
    [[nodiscard]] std::optional<std::string> load(const std::string& file);
    /// Writes the scene to that file, which is then its own. The file is replaced in one step: when
    /// that fails, what it held is still there, and the reason comes back.
    [[nodiscard]] std::optional<std::string> save(const std::string& file);

    /// Null until begin_new or load succeed.
    [[nodiscard]] GResponder* root() const { return root_.get(); }
    [[nodiscard]] scene::SceneRoot* scene() const { return scene_; }
    /// The selected object, or null.
    [[nodiscard]] GResponder* current() const;
    /// Empty for a scene that was never saved.
    [[nodiscard]] const std::string& file() const { return file_; }
    /// The file's name without its directory, or what stands for it.
    [[nodiscard]] std::string name() const;
    [[nodiscard]] bool is_changed() const;

    static constexpr std::string_view kSignature = "ZMRSCENE";  ///< What scene files begin with.

private:
    using OwnedRoot = zmr::OwnedObject<GResponder>;

    [[nodiscard]] OwnedRoot read(const std::string& file) const;
    void take(OwnedRoot root, const std::string& file);

    std::function<void()> changed_;
    zmr::FileSystemDevice& files_;
    OwnedRoot root_;
    scene::SceneRoot* scene_ = nullptr;
    ChangeListener listener_;
    std::string file_;
    std::uint64_t saved_revision_ = 0;
};

}  // namespace editor
