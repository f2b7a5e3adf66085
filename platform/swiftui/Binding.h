// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/StateCell.h"
#include "platform/swiftui/ViewNode.h"

#include <functional>
#include <memory>
#include <utility>

namespace platform {

// A value that somebody else owns, to read and to write. Copies speak of the same place. Main thread only.
template <class Value>
class Binding {
public:
    // Never changes; what is written is forgotten.
    static Binding constant(Value value)
    {
        Binding binding;
        binding.constant_ = std::make_shared<const Value>(std::move(value));
        return binding;
    }
    explicit Binding(std::shared_ptr<StateCell<Value>> cell)
        : cell_(std::move(cell))
    {
    }
    // Two such bindings never count as equal, so who has one is always updated with its surroundings.
    Binding(std::function<Value()> get, std::function<void(Value)> set)
        : functions_(std::make_shared<Functions>(Functions{std::move(get), std::move(set)}))
    {
    }

    Value get() const
    {
        if (cell_)
            return cell_->value();
        return constant_ ? *constant_ : functions_->get();
    }
    // False for a constant: there is no use in computing what would be written.
    bool isWritable() const { return !constant_; }
    void set(Value value) const
    {
        if (cell_)
            cell_->set(std::move(value));
        else if (functions_)
            functions_->set(std::move(value));
    }

    // As a dynamic property: who holds the binding is updated when the value changes.
    void connect(ViewNode& node, std::shared_ptr<void>&) { registerReader(node); }
    void registerReader(ViewNode& node) const
    {
        if (cell_)
            node.dependOn(cell_);
    }

    friend bool operator==(const Binding& a, const Binding& b)
    {
        if (a.functions_ || b.functions_)
            return a.functions_ == b.functions_;
        if (a.cell_ || b.cell_)
            return a.cell_ == b.cell_;
        return a.constant_ == b.constant_ || *a.constant_ == *b.constant_;
    }

private:
    struct Functions {
        std::function<Value()> get;
        std::function<void(Value)> set;
    };
    Binding() = default;

    // Exactly one is set.
    std::shared_ptr<StateCell<Value>> cell_;
    std::shared_ptr<const Value> constant_;
    std::shared_ptr<Functions> functions_;
};

} // namespace platform
