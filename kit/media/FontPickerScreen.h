// SPDX-License-Identifier: MIT
#pragma once

#include "platform/services/UIFontPickerViewController.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"

#include <functional>
#include <memory>
#include <utility>

namespace zelk {

// The platform's picker of fonts as a view. It does not go by itself: who presents it dismisses it. One of the functions is
// called, once. Main thread only.
struct FontPickerScreen : platform::UIViewControllerRepresentable<FontPickerScreen> {
    class Coordinator;

    std::function<void(const platform::UIFont&)> didPickFont;
    std::function<void()> didCancel;

    FontPickerScreen(std::function<void(const platform::UIFont&)> picked, std::function<void()> cancelled)
        : didPickFont(std::move(picked))
        , didCancel(std::move(cancelled))
    {
    }

    using Context = platform::RepresentableContext<Coordinator>;
    std::shared_ptr<Coordinator> makeCoordinator() const;
    std::shared_ptr<platform::UIFontPickerViewController> makeUIViewController(const Context& context) const;
    void updateUIViewController(platform::UIFontPickerViewController&, const Context& context) const;
};

// Hears the picker and passes on what it hears.
class FontPickerScreen::Coordinator : public platform::UIFontPickerViewControllerDelegate {
public:
    explicit Coordinator(FontPickerScreen screen)
        : parent(std::move(screen))
    {
    }
    FontPickerScreen parent;

    void fontPickerViewControllerDidPickFont(platform::UIFontPickerViewController& picker) override;
    void fontPickerViewControllerDidCancel(platform::UIFontPickerViewController&) override;
};

} // namespace zelk
