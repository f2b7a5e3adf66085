// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Binding.h"

#include <any>
#include <concepts>
#include <optional>
#include <utility>

namespace platform {

// The row of a list that is chosen, by what rows are known by. Main thread only.
class RowSelection {
public:
    virtual ~RowSelection() = default;
    virtual bool isChosen(const std::any& identity) const = 0;
    virtual void choose(const std::any& identity) const = 0; // may be refused
    virtual void registerReader(ViewNode& node) const = 0;
};

template <std::equality_comparable Identity>
class BoundRowSelection final : public RowSelection {
public:
    explicit BoundRowSelection(Binding<std::optional<Identity>> binding)
        : binding_(std::move(binding))
    {
    }
    bool isChosen(const std::any& identity) const override
    {
        auto* each = std::any_cast<Identity>(&identity);
        return each && binding_.get() == *each;
    }
    void choose(const std::any& identity) const override
    {
        if (auto* each = std::any_cast<Identity>(&identity); each && binding_.get() != *each)
            binding_.set(*each);
    }
    void registerReader(ViewNode& node) const override { binding_.registerReader(node); }

private:
    Binding<std::optional<Identity>> binding_;
};

} // namespace platform
