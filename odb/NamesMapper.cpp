#include "odb/NamesMapper.h"

#include "foundation/GString.h"
#include "foundation/Immortal.h"
#include "odb/NamesText.h"

#include <mutex>

namespace {

/// A table has no more texts; behind its end some systems begin with the first one again.
constexpr unsigned kMaxTexts = 65536;

/// All that was contributed in this process.
struct Contributions {
    std::mutex mutex;
    zmr::NamesText texts;
};

Contributions& contributions()
{
    static zmr::Immortal<Contributions> all;  // modules may ask while they unload
    return *all;
}

bool contribute(std::string_view text)
{
    Contributions& all = contributions();
    const std::lock_guard locked(all.mutex);
    return all.texts.add(text);
}

/// Contributes what `load` gives for `first_id` and the numbers behind it, up to the first that it
/// has not or that is of neither form.
template <class Text, class Load>
void contribute_table(unsigned first_id, const Load& load)
{
    unsigned id = first_id;
    for (unsigned done = 0; done < kMaxTexts; ++done, ++id) {
        Text text;
        if (!load(text, id) || !contribute(static_cast<const char*>(text)))
            return;
    }
}

CString user_name_of(std::string_view class_name)
{
    Contributions& all = contributions();
    const std::lock_guard locked(all.mutex);
    return all.texts.user_name_for(class_name);
}

CString category_of(std::string_view name)
{
    Contributions& all = contributions();
    const std::lock_guard locked(all.mutex);
    return all.texts.category_name_for(name);
}

}  // namespace

const CString NamesMapper::globalShadersCategory("Global Shaders");
const CString NamesMapper::hiddenClassesCategory("HIDDEN");

void NamesMapper::Initialize(unsigned int first_id)
{
    contribute_table<CString>(first_id,
                              [](CString& text, unsigned id) { return text.LoadString(id) != 0; });
}

void NamesMapper::InitializeFromBEM(HINSTANCE module, unsigned int first_id)
{
    contribute_table<GString>(
        first_id, [module](GString& text, unsigned id) { return text.loadString(module, id); });
}

void NamesMapper::Initialize(const CString& text)
{
    contribute(text.view());
}

CString NamesMapper::user_name_for(const GMetaClass& metaclass)
{
    return user_name_of(metaclass.name);
}

CString NamesMapper::user_name_for(const GMetaClass* metaclass)
{
    return metaclass == nullptr ? CString() : user_name_of(metaclass->name);
}

CString NamesMapper::category_name_for(const GMetaClass& metaclass)
{
    return category_of(metaclass.name);
}

CString NamesMapper::category_name_for(const GMetaClass* metaclass)
{
    return metaclass == nullptr ? CString() : category_of(metaclass->name);
}

CString NamesMapper::category_name_for(const CString& name)
{
    return category_of(name.view());
}

CString NamesMapper::ClassNameFor(const char*)
{
    return {};
}
