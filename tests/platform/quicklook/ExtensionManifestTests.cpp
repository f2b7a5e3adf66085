// SPDX-License-Identifier: MIT
#include "platform/foundation/Bundle.h"
#include "platform/quicklook/ExtensionManifest.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

// The manifest as it ships, with one piece replaced.
std::string manifestWith(std::string_view piece, std::string_view replacement)
{
    std::ifstream stream(ZELK_SOURCE_DIR "/extension/Info.plist");
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (!piece.empty()) {
        auto at = text.find(piece);
        EXPECT_NE(at, std::string::npos) << piece;
        text.replace(at, piece.size(), replacement);
    }
    return text;
}

Result<ExtensionManifest> read(const std::string& text)
{
    ::tests::TemporaryDirectory folder;
    folder.file("Info.plist", text);
    auto bundle = Bundle::open(URL::fileURL(folder.path()));
    if (!bundle)
        return std::unexpected(bundle.error());
    return ExtensionManifest::read(**bundle);
}

TEST(ExtensionManifest, thePreviewsOwnManifestNamesItsPointClassAndContentType)
{
    auto manifest = read(manifestWith("", ""));
    ASSERT_TRUE(manifest) << manifest.error().localizedDescription();
    EXPECT_EQ(manifest->extensionPoint, QLPreviewExtensionPoint);
    EXPECT_EQ(manifest->principalClass, "PreviewViewController");
    EXPECT_EQ(manifest->supportedContentTypes, std::vector<std::string>{"application/x-subrip"});
}

TEST(ExtensionManifest, oneThatCannotBeUsedIsRefusedWithTheKeyNamed)
{
    struct Case {
        std::string_view piece, replacement, mentions;
    };
    const Case cases[] = {
        {"NSExtensionPrincipalClass", "NSExtensionOtherClass", "NSExtensionPrincipalClass"},
        {"<string>PreviewViewController</string>", "<integer>1</integer>", "NSExtensionPrincipalClass"},
        {"<string>PreviewViewController</string>", "<string></string>", "NSExtensionPrincipalClass"},
        {"org.zelk.quicklook.preview", "org.zelk.other", "org.zelk.other"},
        {"<string>application/x-subrip</string>", "<true/>", "QLSupportedContentTypes"},
        {"<string>application/x-subrip</string>", "", "QLSupportedContentTypes"},
        {"<key>NSExtension</key>", "<key>Extension</key>", "NSExtensionPointIdentifier"},
        {"</plist>", "", "line"},
    };
    for (auto& each : cases) {
        auto manifest = read(manifestWith(each.piece, each.replacement));
        ASSERT_FALSE(manifest) << each.replacement;
        auto& error = manifest.error().bridged();
        EXPECT_EQ(error.code(), static_cast<long>(NSCocoaError::propertyListReadCorrupt));
        EXPECT_NE(error.localizedFailureReason().find(each.mentions), std::string::npos)
            << error.localizedFailureReason();
    }
}

} // namespace
} // namespace platform
