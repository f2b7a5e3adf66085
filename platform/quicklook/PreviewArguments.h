// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"
#include "platform/graphics/TextRows.h"
#include "platform/uikit/UITraitCollection.h"

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace platform {

enum class PreviewAction { window, snapshot, text, help, version };

// What a preview program was asked on its command line.
struct PreviewArguments {
    PreviewAction action = PreviewAction::window;
    std::string file; // a path or a file: URL, as given
    std::string snapshotPath;
    std::optional<CGSize> size; // points; the text's own size when absent
    double scale = 1;           // pixels a point
    UIUserInterfaceStyle appearance = UIUserInterfaceStyle::unspecified; // the desktop's
    std::optional<TerminalPane> pane; // to lay the text out for; exactly as it is when absent
    bool operator==(const PreviewArguments&) const = default;
};

// `arguments` without the program's name. The unexpected value is one line that says what is wrong.
std::expected<PreviewArguments, std::string>
parsePreviewArguments(std::span<const std::string_view> arguments);

// What --help prints.
std::string previewUsage(std::string_view program);

} // namespace platform
