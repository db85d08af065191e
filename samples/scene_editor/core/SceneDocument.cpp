#include "scene_editor/core/SceneDocument.h"

#include "foundation/GException.h"
#include "foundation/GMetaClass.h"
#include "foundation/fpstream.h"
#include "foundation/mpstream.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_interface/SceneEvents.h"

#include <array>
#include <utility>

namespace editor {

namespace {

constexpr const char* kSceneClass = "SceneSpace";

std::string with_stop(std::string text)
{
    if (!text.empty() && text.back() != '.')
        text += '.';
    return text;
}

// Writes the bytes beside `file` and puts them in its place.
zmr::FileError replace_file(zmr::FileSystemDevice& files, const std::string& file,
                            std::span<const unsigned char> bytes)
{
    const std::string beside = file + ".new";
    zmr::FileError error;
    {
        const std::unique_ptr<zmr::FileDevice> device =
            files.open(beside, zmr::FileAccess::ReadWrite, zmr::FileCreate::CreateOrTruncate,
                       zmr::FileShare::None, error);
        if (device == nullptr)
            return error;
        error = device->write_at(0, bytes.data(), bytes.size());
        if (!error)
            error = device->sync();
    }
    if (!error)
        error = files.rename(beside, file);
    if (error) {
        static_cast<void>(files.remove(beside));  // the first failure is the one to tell
        return error;
    }
    return files.sync_directory_of(file);
}

}  // namespace

void ChangeListener::handle_event(GEvent& event)
{
    if (event.what == scene::kChanged)
        changed_();
}

void ChangeListener::listen_to(GResponder* responder)
{
    if (heard_.get() == responder)
        return;
    if (heard_)
        heard_->cancel_notification(this, scene::kChanged, 0);
    heard_ = responder;
    if (responder != nullptr)
        responder->notify_when_modified(this, scene::kChanged, 0);
}

SceneDocument::SceneDocument(std::function<void()> changed, zmr::FileSystemDevice& files)
    : changed_(std::move(changed)), files_(files), listener_([this] { changed_(); })
{
}

SceneDocument::~SceneDocument()
{
    listener_.listen_to(nullptr);
}

bool SceneDocument::begin_new()
{
    const GMetaClass* const type = GMetaClass::FindByName(kSceneClass);
    if (type == nullptr)
        return false;
    OwnedRoot root(zmr::class_cast<GResponder>(type->buildObject()));
    if (dynamic_cast<scene::SceneRoot*>(root.get()) == nullptr)
        return false;
    take(std::move(root), {});
    return true;
}

SceneDocument::OwnedRoot SceneDocument::read(const std::string& file) const
{
    ifpstream in(file.c_str());
    if (!in.good())
        throw GStreamException(in.open_error().text().c_str());
    std::array<char, kSignature.size()> signature{};
    const long size = in.readBytes(signature.data(), static_cast<long>(signature.size()));
    if (std::string_view(signature.data(), static_cast<std::size_t>(size)) != kSignature)
        throw GStreamException("it is no scene");
    OwnedRoot root(in.read_owned<GResponder>());
    if (dynamic_cast<scene::SceneRoot*>(root.get()) == nullptr)
        throw GStreamException("it holds something else than a scene");
    if (in.remaining() > 0)
        throw GStreamException("it goes on behind the scene");
    return root;
}

std::optional<std::string> SceneDocument::load(const std::string& file)
{
    OwnedRoot root;
    try {
        root = read(file);
    } catch (const UnknownStreamableType_Exception& missing) {
        return file + ": it holds objects of the class " + std::string(missing.class_name.view()) +
               ", which is not known here: a module is missing.";
    } catch (const std::exception& failure) {
        return with_stop(file + ": " + failure.what());
    }
    take(std::move(root), file);
    return std::nullopt;
}

std::optional<std::string> SceneDocument::save(const std::string& file)
{
    if (root_ == nullptr)
        return "There is no scene.";
    try {
        // In memory first, so that nothing but the disk can go wrong once there is a file.
        ompstream out;
        out.writeBytes(kSignature.data(), static_cast<long>(kSignature.size()));
        out.writePointer(root_.get());
        if (const zmr::FileError error = replace_file(files_, file, out.bytes()))
            return file + ": the scene can't be saved: " + with_stop(error.text());
    } catch (const std::exception& failure) {
        return file + ": the scene can't be saved: " + with_stop(failure.what());
    }
    file_ = file;
    saved_revision_ = scene_->revision();
    changed_();
    return std::nullopt;
}

void SceneDocument::take(OwnedRoot root, const std::string& file)
{
    listener_.listen_to(nullptr);
    std::swap(root_, root);
    scene_ = dynamic_cast<scene::SceneRoot*>(root_.get());
    root_->set_state(GResponder::state_exposed, 1);
    file_ = file;
    saved_revision_ = scene_->revision();
    listener_.listen_to(root_.get());
    changed_();
}

GResponder* SceneDocument::current() const
{
    GResponder* const current = root_ != nullptr ? root_->get_current() : nullptr;
    return current != nullptr && current->get_owner() == root_.get() ? current : nullptr;
}

std::string SceneDocument::name() const
{
    return file_.empty() ? "Untitled" : std::string(file_part(file_));
}

bool SceneDocument::is_changed() const
{
    return scene_ != nullptr && scene_->revision() != saved_revision_;
}

}  // namespace editor
