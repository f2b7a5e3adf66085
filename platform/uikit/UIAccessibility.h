// SPDX-License-Identifier: MIT
#pragma once

#include "platform/graphics/Geometry.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace platform {

// What a view is to assistive technology.
enum class AccessibilityRole {
    none, // not an element of its own; its children stand in its place
    group,
    staticText,
    textView,
    textField,
    button,
    image,
    header,
    slider,
    toggle,
    progress,
    list,
    listItem,
    link,
    dialog,
    alert, // a dialog that interrupts
    window,
    scrollArea,
    spinButton,  // a number that goes up and down by steps
    radioButton, // one of several of which one is chosen
    menuButton,
    menu,
    menuItem,
    tab,
    tabList,
    separator,
};

// A number in a range, as sliders, steppers and progress have one. Requires: minimum <= value <= maximum.
struct AccessibilityRange {
    double minimum = 0;
    double maximum = 1;
    double value = 0;
    double step = 0; // the smallest that a user can make; 0: any
    bool operator==(const AccessibilityRange&) const = default;
};

// What the accessibility bus is told of a view.
struct AccessibilityProperties {
    AccessibilityRole role = AccessibilityRole::none;
    std::string label;
    std::string value;
    std::string hint;
    std::string identifier; // for tests; not spoken
    bool isHidden = false;  // with everything below
    bool isEnabled = true;
    bool isSelected = false;
    bool isReadOnly = false;
    bool isMultiLine = false;
    bool isModal = false;
    bool isBusy = false;
    bool isExpanded = false;                 // of a menu button: its menu is open
    std::optional<AccessibilityRange> range; // besides `value`, which is what is spoken
    bool operator==(const AccessibilityProperties&) const = default;
};

// The text of a view as assistive technology asks for it. Offsets count UTF-16 units, as the bus bridge does;
// an offset past the end counts as the end. Main thread only.
class AccessibleText {
public:
    enum class Boundary { character, word, line, paragraph, document };
    struct Range {
        std::size_t start = 0;
        std::size_t end = 0;
    };

    virtual ~AccessibleText() = default;
    virtual std::size_t characterCount() const = 0;
    virtual std::u16string text(Range range) const = 0;
    virtual std::size_t caretOffset() const = 0;
    virtual void setCaretOffset(std::size_t offset) = 0;
    virtual Range selection() const = 0; // empty range: nothing selected
    virtual void setSelection(Range range) = 0;
    // The unit of `boundary` that holds the offset.
    virtual Range rangeAround(std::size_t offset, Boundary boundary) const = 0;
    virtual CGRect characterRect(std::size_t offset) const = 0; // window coordinates; null when out of sight
    virtual std::optional<std::size_t> offsetAt(CGPoint windowPoint) const = 0;
    virtual void scrollTo(Range range) = 0;
};

} // namespace platform
