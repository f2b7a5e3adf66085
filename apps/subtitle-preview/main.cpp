// SPDX-License-Identifier: MIT
#include "extension/PreviewViewController.h"
#include "platform/quicklook/NSExtensionMain.h"
#include "platform/quicklook/PrincipalClass.h"

int main(int argumentCount, char** arguments)
{
    platform::registerPrincipalClass<preview::PreviewViewController>("PreviewViewController");
    return platform::NSExtensionMain(argumentCount, arguments);
}
