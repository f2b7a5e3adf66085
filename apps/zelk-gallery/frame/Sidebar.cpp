// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/frame/Sidebar.h"

#include "apps/zelk-gallery/pages/pages.h"

#include "kit/theme/CornerRadius.h"
#include "kit/theme/GridSize.h"
#include "kit/theme/Spacing.h"
#include "platform/swiftui/swiftui.h"

#include <limits>

namespace gallery {

using namespace platform;
using zelk::CornerRadius;
using zelk::GridSize;
using zelk::Spacing;

namespace {

constexpr auto infinity = std::numeric_limits<CGFloat>::infinity();

struct PageRow {
    std::string name, title, symbol;
    EnvironmentObject<GallerySettings> settings;
    Environment<TintKey> tint;

    auto dynamicProperties() { return std::tie(settings, tint); }
    auto body() const
    {
        auto object = settings.object();
        auto isOpen = object->page.get() == name;
        auto ground = isOpen ? object->tintColor() : UIColor::clear();
        auto row = HStack{{.spacing = Spacing::_100},
                          Image{.systemName = symbol}
                              | foregroundColor(isOpen ? object->colorOnTint() : object->tintColor())
                              | frame({.width = GridSize::_150}) | accessibilityHidden(),
                          Text{title} | lineLimit(1)
                              | foregroundColor(isOpen ? object->colorOnTint() : UIColor::label())};
        auto label = row
            | font(Font::subheadline().weight(isOpen ? FontWeight::semibold : FontWeight::regular))
            | flexibleFrame({.maxWidth = infinity, .alignment = Alignment::leading()})
            | padding(EdgeSet::horizontal, Spacing::_100) | padding(EdgeSet::vertical, Spacing::_75)
            | background(RoundedRectangle{CornerRadius::_100} | fill(ground)) | contentShape();
        return Button{[object, chosen = name] {
                          object->page.set(chosen);
                          object->showsPages.set(false);
                      },
                      label}
        | accessibilityLabel(title)
            | accessibilityAddTraits(isOpen ? AccessibilityTraits::isSelected : AccessibilityTraits{});
    }
    bool operator==(const PageRow&) const = default;
};

struct Group {
    std::string title;
    std::vector<PageRow> rows;
    bool operator==(const Group&) const = default;
};

std::vector<Group> groups()
{
    std::vector<Group> list;
    for (const auto& page : allPages()) {
        if (list.empty() || list.back().title != page.group)
            list.push_back({page.group, {}});
        list.back().rows.push_back({page.name, page.title, page.symbol, {}, {}});
    }
    return list;
}

struct GroupView {
    Group group;

    auto body() const
    {
        return VStack{{.alignment = HorizontalAlignment::leading, .spacing = Spacing::_25},
                      Text{group.title} | font(Font::caption().weight(FontWeight::semibold))
                          | foregroundColor(UIColor::secondaryLabel())
                          | padding({.top = Spacing::_200, .leading = Spacing::_150, .bottom = Spacing::_50})
                          | accessibilityAddTraits(AccessibilityTraits::isHeader),
                      ForEach{group.rows, &PageRow::name, [](const PageRow& row) { return row; }}};
    }
    bool operator==(const GroupView&) const = default;
};

struct Sidebar {
    auto body() const
    {
        return ScrollView{
            VStack{{.alignment = HorizontalAlignment::leading, .spacing = 0},
                   ForEach{groups(), &Group::title, [](const Group& group) { return GroupView{group}; }}}
            | padding({.leading = Spacing::_150, .bottom = Spacing::_200, .trailing = Spacing::_150})
            | flexibleFrame({.maxWidth = infinity, .alignment = Alignment::topLeading()})};
    }
    bool operator==(const Sidebar&) const = default;
};

} // namespace

AnyView sidebar()
{
    return AnyView(Sidebar{});
}

} // namespace gallery
