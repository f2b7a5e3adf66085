// SPDX-License-Identifier: MIT
#include "apps/zelk-gallery/pages/pages.h"

#include <algorithm>

namespace gallery {

// Each in the file of its name.
Page colorsPage();
Page tokensPage();
Page textPage();
Page symbolsPage();
Page controlsPage();
Page datesPage();
Page layoutStackPage();
Page listsPage();
Page scrollViewPage();
Page alertsPage();
Page accessoryAlertsPage();
Page presentationPage();
Page bottomSheetPage();
Page sharingPage();
Page feedbackPage();
Page playerPage();
Page pickersPage();
Page cachedImagePage();
Page shimmerPage();
Page particlesPage();
Page gesturesPage();
Page animationsPage();

const std::vector<Page>& allPages()
{
    static const std::vector<Page> pages{
        colorsPage(),          tokensPage(),       textPage(),        symbolsPage(),    controlsPage(),
        datesPage(),           layoutStackPage(),  listsPage(),       scrollViewPage(), alertsPage(),
        accessoryAlertsPage(), presentationPage(), bottomSheetPage(), sharingPage(),    feedbackPage(),
        playerPage(),          pickersPage(),      cachedImagePage(), shimmerPage(),    particlesPage(),
        gesturesPage(),        animationsPage(),
    };
    return pages;
}

const Page* pageNamed(std::string_view name)
{
    auto found = std::ranges::find(allPages(), name, &Page::name);
    return found == allPages().end() ? nullptr : &*found;
}

} // namespace gallery
