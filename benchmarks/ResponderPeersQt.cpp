#include "ResponderPeers.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QEvent>
#include <QObject>
#include <QWidget>

#include <malloc.h>

#include <cstdlib>

namespace {

constexpr int kKind = QEvent::User + 1;

class Receiver : public QObject {
public:
    bool event(QEvent* event) override
    {
        if (event->type() != kKind)
            return QObject::event(event);
        ++g_handled;
        return true;
    }
    void told() { ++g_handled; }
};

class Filter : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == kKind)
            ++g_handled;
        return false;
    }
};

/// Hands an event on to its children.
class Spreading : public QObject {
public:
    bool event(QEvent* event) override
    {
        if (event->type() != kKind)
            return QObject::event(event);
        ++g_handled;
        for (QObject* child : children())
            QCoreApplication::sendEvent(child, event);
        return true;
    }
};

template <class T>
std::vector<T*> make_nodes(const TreeShape& shape)
{
    std::vector<T*> allocated;
    for (int number = 0; number < shape.nodes; ++number)
        allocated.push_back(new T);
    std::vector<T*> nodes;
    for (const int place : places_of(shape))
        nodes.push_back(allocated[static_cast<std::size_t>(place)]);
    return nodes;
}

/// The root, which owns the others.
template <class T>
std::shared_ptr<T> make_tree(const TreeShape& shape)
{
    const std::vector<T*> nodes = make_nodes<T>(shape);
    for (int number = 1; number < shape.nodes; ++number)
        nodes[static_cast<std::size_t>(number)]->setParent(
            nodes[static_cast<std::size_t>(parent_of(number, shape.fan))]);
    return std::shared_ptr<T>(nodes.front());
}

void count(const QObject& object)
{
    ++g_handled;
    for (const QObject* child : object.children())
        count(*child);
}

}  // namespace

void qt::start(int& argc, char** argv)
{
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static QApplication application(argc, argv);
}

Work qt::event(int filters)
{
    auto receiver = std::make_shared<Receiver>();
    auto all = std::make_shared<std::vector<std::unique_ptr<Filter>>>();
    for (int number = 0; number < filters; ++number) {
        all->push_back(std::make_unique<Filter>());
        receiver->installEventFilter(all->back().get());
    }
    return [receiver, all] {
        for (int turn = 0; turn < 1000; ++turn) {
            QEvent event(static_cast<QEvent::Type>(kKind));
            QCoreApplication::sendEvent(receiver.get(), &event);
        }
    };
}

Work qt::broadcast(const TreeShape& shape)
{
    return [root = make_tree<Spreading>(shape)] {
        QEvent event(static_cast<QEvent::Type>(kKind));
        QCoreApplication::sendEvent(root.get(), &event);
    };
}

Work qt::notify(int receivers)
{
    auto sender = std::make_shared<QBuffer>();
    auto all = std::make_shared<std::vector<std::unique_ptr<Receiver>>>();
    for (int number = 0; number < receivers; ++number) {
        all->push_back(std::make_unique<Receiver>());
        QObject::connect(sender.get(), &QIODevice::readyRead, all->back().get(), &Receiver::told);
    }
    return [sender, all] { Q_EMIT sender->readyRead(); };
}

Halves qt::children(int owners, int children)
{
    auto parents = std::make_shared<std::vector<std::unique_ptr<QObject>>>();
    auto all = std::make_shared<std::vector<std::unique_ptr<QObject>>>();
    for (int owner = 0; owner < owners; ++owner)
        parents->push_back(std::make_unique<QObject>());
    for (int child = 0; child < owners * children; ++child)
        all->push_back(std::make_unique<QObject>());
    const auto append = [=] {
        std::size_t next = 0;
        for (const auto& parent : *parents) {
            for (int child = 0; child < children; ++child)
                (*all)[next++]->setParent(parent.get());
        }
    };
    const auto remove = [=, order = removal_order(children)] {
        for (int owner = 0; owner < owners; ++owner) {
            for (const int child : order)
                (*all)[static_cast<std::size_t>(owner * children + child)]->setParent(nullptr);
        }
    };
    return {append, remove, [] {}};
}

Work qt::walk(const TreeShape& shape)
{
    return [root = make_tree<QObject>(shape)] { count(*root); };
}

Halves qt::build_and_end(const TreeShape& shape)
{
    auto root = std::make_shared<QObject*>(nullptr);
    const auto build = [=] {
        std::vector<QObject*> nodes = {new QObject};
        for (int number = 1; number < shape.nodes; ++number)
            nodes.push_back(
                new QObject(nodes[static_cast<std::size_t>(parent_of(number, shape.fan))]));
        *root = nodes.front();
    };
    return {build, [root] { delete *root; }, [] {}};
}

Work qt::state(const TreeShape& shape)
{
    return [root = make_tree<QWidget>(shape), on = true]() mutable {
        on = !on;
        root->setEnabled(on);
    };
}

Work qt::commands(const CommandIds& ids)
{
    auto actions = std::make_shared<std::vector<std::unique_ptr<QAction>>>();
    for (std::size_t number = 0; number < ids.ids.size(); ++number)
        actions->push_back(std::make_unique<QAction>());
    return [actions] {
        long enabled = 0;
        for (const auto& action : *actions)
            enabled += action->isEnabled() ? 1 : 0;
        g_handled += enabled;
    };
}

std::size_t qt::object_bytes()
{
    constexpr std::size_t kObjects = 1000;
    std::vector<std::unique_ptr<QObject>> objects(kObjects);
    const std::size_t before = ::mallinfo2().uordblks;
    for (auto& object : objects)
        object = std::make_unique<QObject>();
    return (::mallinfo2().uordblks - before) / kObjects;
}
