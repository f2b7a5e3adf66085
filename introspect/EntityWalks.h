// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/PlatformEntity.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <vector>

namespace introspect {

// Walks through the hierarchy, one step at a time: who stops early visits nothing more. They hold no entity alive but
// the present one; the hierarchy must not change under them.

// Everything above an entity, nearest first, without the entity itself.
template <class Base>
class Ancestors {
public:
    class Iterator {
    public:
        using iterator_concept = std::input_iterator_tag;
        using value_type = std::shared_ptr<Base>;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        explicit Iterator(std::shared_ptr<Base> present)
            : present_(std::move(present))
        {
        }
        const std::shared_ptr<Base>& operator*() const { return present_; }
        Iterator& operator++()
        {
            present_ = ancestor(*present_);
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(std::default_sentinel_t) const { return !present_; }

    private:
        std::shared_ptr<Base> present_;
    };

    explicit Ancestors(const Base& entity)
        : entity_(&entity)
    {
    }
    Iterator begin() const { return Iterator(ancestor(*entity_)); }
    std::default_sentinel_t end() const { return {}; }

private:
    const Base* entity_;
};

// Everything below an entity, depth first, each before its own descendants, without the entity itself.
template <class Base>
class AllDescendants {
public:
    class Iterator {
    public:
        using iterator_concept = std::input_iterator_tag;
        using value_type = std::shared_ptr<Base>;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        explicit Iterator(const Base& root) { descend(root); }
        Iterator(const Base& root, const Base& first)
        {
            for (const Base* entity = &first; entity != &root;) {
                const auto above = ancestor(*entity);
                if (!above) {
                    trail_.clear();
                    break;
                }
                const auto& siblings = descendants(*above);
                const auto place = std::ranges::find(siblings, entity, &std::shared_ptr<Base>::get);
                trail_.push_back({&siblings, static_cast<std::size_t>(place - siblings.begin())});
                entity = above.get();
            }
            std::ranges::reverse(trail_);
        }
        const std::shared_ptr<Base>& operator*() const
        {
            return (*trail_.back().siblings)[trail_.back().index];
        }
        Iterator& operator++()
        {
            if (descend(***this))
                return *this;
            while (!trail_.empty() && ++trail_.back().index == trail_.back().siblings->size())
                trail_.pop_back();
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(std::default_sentinel_t) const { return trail_.empty(); }

    private:
        struct Step {
            const std::vector<std::shared_ptr<Base>>* siblings;
            std::size_t index;
        };
        bool descend(const Base& entity)
        {
            const auto& below = descendants(entity);
            if (below.empty())
                return false;
            trail_.push_back({&below, 0});
            return true;
        }

        std::vector<Step> trail_; // from the root's children down to the present entity; empty at the end
    };

    explicit AllDescendants(const Base& entity)
        : entity_(&entity)
    {
    }
    // The same walk from `first` on, without visiting what comes before; nothing when that is not below the entity.
    AllDescendants(const Base& entity, const Base& first)
        : entity_(&entity)
        , first_(&first)
    {
    }
    Iterator begin() const { return first_ ? Iterator(*entity_, *first_) : Iterator(*entity_); }
    std::default_sentinel_t end() const { return {}; }

private:
    const Base* entity_;
    const Base* first_ = nullptr;
};

template <PlatformEntity Entity>
Ancestors<PlatformEntityBase<Entity>> ancestors(const Entity& entity)
{
    return Ancestors<PlatformEntityBase<Entity>>(entity);
}

template <PlatformEntity Entity>
AllDescendants<PlatformEntityBase<Entity>> allDescendants(const Entity& entity)
{
    return AllDescendants<PlatformEntityBase<Entity>>(entity);
}

} // namespace introspect
