// SPDX-License-Identifier: MIT
#pragma once

#include "introspect/ViewTypes/TextEditorType.h"
#include "introspect/introspect.h"
#include "platform/foundation/String.h"
#include "platform/swiftui/Binding.h"
#include "platform/swiftui/Font.h"
#include "platform/swiftui/TextEditor.h"
#include "platform/swiftui/environment.h"
#include "platform/uikit/UITextView.h"

#include <utility>

namespace preview {

// A text that can be scrolled through, selected and copied, but not changed: a text editor over a constant
// binding, set in the monospaced body font, whose platform text view is made not editable. It is found on
// the systems 14 to 17; on later ones the editor takes typing, which the constant binding forgets.
inline auto readOnlyTextView(platform::String text)
{
    using introspect::textEditor;
    return platform::TextEditor{platform::Binding<platform::String>::constant(std::move(text))}
    | introspect::introspect(textEditor,
                             introspect::iOS(textEditor.iOS.v14, textEditor.iOS.v15, textEditor.iOS.v16,
                                             textEditor.iOS.v17),
                             [](platform::UITextView& textView) { textView.setEditable(false); })
        | platform::font(platform::Font::body().monospaced());
}

using ReadOnlyTextView = decltype(readOnlyTextView(platform::String()));

} // namespace preview
