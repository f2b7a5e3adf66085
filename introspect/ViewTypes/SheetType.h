// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/ProbeSelectors.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/uikit/Forward.h"

namespace introspect {

// A sheet over the modified view. Used inside of the sheet.
struct SheetType : IntrospectableViewTypeDefaults {
    static constexpr IntrospectionScope scope = IntrospectionScope::ancestor;

    // The same versions typed as what a sheet is from version 15 on.
    struct iOSSheetRow {
        using Member = iOSVersion::Member;
        using Constant = PlatformViewVersion<iOSVersion, SheetType, platform::UISheetPresentationController>;
        static constexpr Constant v15 =
            Constant::available(Member::v15, catalogue::sheetPresentationControllerSelector);
        static constexpr Constant v16 =
            Constant::available(Member::v16, catalogue::sheetPresentationControllerSelector);
        static constexpr Constant v17 =
            Constant::available(Member::v17, catalogue::sheetPresentationControllerSelector);
    };
    struct iOSRows : catalogue::iOSRow<SheetType, platform::UIPresentationController, iOSVersion::Member::v13,
                                       catalogue::presentationControllerSelector> {
        static constexpr iOSSheetRow asSheet{};
    };

    static constexpr iOSRows iOS{};
    static constexpr catalogue::tvOSRow<SheetType, platform::UIPresentationController,
                                        tvOSVersion::Member::v13, catalogue::presentationControllerSelector>
        tvOS{};
    static constexpr catalogue::visionOSRow<SheetType, platform::UISheetPresentationController,
                                            catalogue::sheetPresentationControllerSelector>
        visionOS{};
};
inline constexpr SheetType sheet;

} // namespace introspect
