// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/LazyRows.h"
#include "platform/swiftui/Text.h"

#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace platform {

// Rows of a list or a form that belong together, under a title: `Section{"Colours", rows...}`. Without a title:
// `Section{SectionTitles{}, rows...}`. Outside of a list title and rows stand in the surrounding stack.
struct SectionTitles {
    std::optional<std::string> header;
    std::optional<std::string> footer; // explains the rows above
    bool operator==(const SectionTitles&) const = default;
};

template <View... Views>
struct Section {
    SectionTitles titles;
    TupleView<Views...> rows;

    Section(SectionTitles sectionTitles, Views... each)
        : titles(std::move(sectionTitles))
        , rows{{std::move(each)...}}
    {
    }
    Section(std::string header, Views... each)
        : Section(SectionTitles{std::move(header), {}}, std::move(each)...)
    {
    }

    auto body() const
    {
        auto title = [](const std::optional<std::string>& text) {
            return when(text.has_value(), [&] { return Text{*text}; });
        };
        return Group{title(titles.header), rows, title(titles.footer)};
    }
    friend bool operator==(const Section& a, const Section& b)
        requires(std::equality_comparable<Views> && ...)
    = default;
};
template <View... Views>
Section(const char*, Views...) -> Section<Views...>;
template <View... Views>
Section(SectionTitles, Views...) -> Section<Views...>;

template <View... Views>
void appendRows(RowSources& rows, const Section<Views...>& section)
{
    auto title = [&](std::size_t place, const std::optional<std::string>& text, RowKind kind) {
        if (text)
            rows.within(place, [&] { rows.add(std::make_shared<SingleRow<Text>>(Text{*text}), kind); });
    };
    ++rows.section;
    title(0, section.titles.header, RowKind::header);
    rows.within(1, [&] { appendRows(rows, section.rows); });
    title(2, section.titles.footer, RowKind::footer);
    ++rows.section;
}

} // namespace platform
