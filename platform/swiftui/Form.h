// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/LazyListNode.h"
#include "platform/swiftui/LazyRows.h"
#include "platform/swiftui/Section.h"

#include <tuple>
#include <utility>

namespace platform {

// Controls in groups, as settings have them: `Form{Section{"Sound", toggle, slider}}`. Looks like an inset list of groups
// unless a listStyle says otherwise, and is lazy as a List is.
template <View... Views>
struct Form {
    std::tuple<Views...> views;

    explicit Form(Views... each)
        : views(std::move(each)...)
    {
    }

    class Node final : public LazyListNode {
    public:
        Node(const NodeContext& context, const Form& form)
            : LazyListNode(context, ListKind::form, rowsOf(form))
        {
        }
        void update(const Form& form) { setRows(rowsOf(form)); }

    private:
        static RowSources rowsOf(const Form& form)
        {
            RowSources rows;
            appendEach(rows, form.views);
            return rows;
        }
    };
};

} // namespace platform
