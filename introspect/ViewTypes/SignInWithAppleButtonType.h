// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/IntrospectableViewType.h"
#include "introspect/ViewTypes/VersionRows.h"
#include "platform/services/Forward.h"

namespace introspect {

// The button that signs in with the platform maker's account.
struct SignInWithAppleButtonType : IntrospectableViewTypeDefaults {
    static constexpr catalogue::iOSRow<SignInWithAppleButtonType, platform::ASAuthorizationAppleIDButton,
                                       iOSVersion::Member::v14>
        iOS{};
    static constexpr catalogue::tvOSRow<SignInWithAppleButtonType, platform::ASAuthorizationAppleIDButton,
                                        tvOSVersion::Member::v14>
        tvOS{};
    static constexpr catalogue::macOSRow<SignInWithAppleButtonType, platform::ASAuthorizationAppleIDButton,
                                         macOSVersion::Member::v11>
        macOS{};
    static constexpr catalogue::visionOSRow<SignInWithAppleButtonType, platform::ASAuthorizationAppleIDButton>
        visionOS{};
};
inline constexpr SignInWithAppleButtonType signInWithAppleButton;

} // namespace introspect
