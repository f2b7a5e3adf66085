// SPDX-License-Identifier: MIT
// Prints some of the kit's texts in the language of the user, or of the command line:
//   kit-texts
//   LANGUAGE=ar kit-texts
//   kit-texts pt-BR fr
#include "kit/foundation/CommonLocalizations.h"
#include "kit/foundation/ZelkKitBundle.h"
#include "kit/foundation/localized.h"
#include "kit/foundation/zelkKitLocalized.h"

#include "platform/foundation/PreferredLanguagesOverride.h"

#include <cstdio>
#include <optional>

int main(int argumentCount, char** arguments)
{
    std::optional<platform::PreferredLanguagesOverride> languages;
    if (argumentCount > 1)
        languages.emplace(std::vector<std::string>(arguments + 1, arguments + argumentCount));

    using enum zelk::CommonLocalizations;
    for (auto term : {cancel, save, undo, openSettings, anErrorOccurred})
        std::printf("%s\n", zelk::value(term).c_str());
    std::printf("%s\n", zelk::zelkKitLocalized("URL_ERROR_NOT_CONNECTED_TO_INTERNET").c_str());

    // A format without a translation is its own text.
    auto languageName = zelk::zelkKitBundle()->preferredLocalizations().at(0);
    std::printf(
        "%s\n",
        zelk::localizedFormat("(%@: %d texts asked for)", *zelk::zelkKitBundle(), languageName, 6).c_str());
}
