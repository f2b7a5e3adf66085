// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AppearanceNode.h"

#include <concepts>
#include <functional>
#include <stop_token>
#include <utility>

namespace platform {

// Work that lives as long as its view is on screen. Started on the main thread when the content appears; what it sets going
// asks the token, on any thread, whether it is still wanted. The token is stopped when the content disappears.
using TaskBody = std::function<void(std::stop_token)>;

// The same for each value of `id`: a new value stops the present work and starts it anew after the update.
template <std::equality_comparable Id>
struct TaskModifier {
    Id id;
    TaskBody body;
    class Node;
};

class TaskNode : public AppearanceNode {
public:
    explicit TaskNode(const NodeContext& context);
    ~TaskNode() override;

protected:
    void setBody(TaskBody body) { body_ = std::move(body); }
    void restart();

private:
    void start();
    TaskBody body_;
    std::stop_source source_{std::nostopstate};
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

template <std::equality_comparable Id>
class TaskModifier<Id>::Node : public TaskNode {
public:
    Node(const NodeContext& context, const TaskModifier& modifier)
        : TaskNode(context)
        , id_(modifier.id)
    {
        setBody(modifier.body);
    }

protected:
    void updateModifier(const TaskModifier& modifier)
    {
        setBody(modifier.body);
        if (modifier.id == id_)
            return;
        id_ = modifier.id;
        restart();
    }

private:
    Id id_;
};

template <std::equality_comparable Id>
auto task(Id id, TaskBody body)
{
    return TaskModifier<Id>{std::move(id), std::move(body)};
}
inline auto task(TaskBody body)
{
    return task(0, std::move(body));
}

} // namespace platform
