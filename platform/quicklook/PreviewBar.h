// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/TextFinder.h"
#include "platform/uikit/UIView.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

class BarButton;
class DispatchWorkItem;
class UILabel;
class UITextField;

// The slim bar at the top of a preview: the file's name, its encoding, search, and a menu for the rest. Says what the user
// wishes and shows what it is told. Main thread only.
class PreviewBar : public UIView {
public:
    static constexpr CGFloat height = 36; // points

    PreviewBar();
    ~PreviewBar() override;

    struct Encoding {
        std::string name;
        bool isGuess = false;
        std::size_t replacements = 0; // sequences of bytes that had no meaning
    };
    void setName(std::string name);
    void setEncoding(const std::optional<Encoding>& encoding); // none: nothing is said of it
    void setSearchable(bool searchable);
    // Says it in the place of the name, or of the matches' count, to assistive technology too, for as long as it takes to
    // read.
    void showNotice(const std::string& text);
    void setMatches(const TextFinder::Status& matches);
    // Gives the controls their names for assistive technology: after the first frame, which does not wait for that.
    void nameControls();

    bool isSearching() const;
    void beginSearch(); // and when it was begun: the keyboard is in the field, its text selected
    void endSearch();

    const std::shared_ptr<BarButton>& encodingButton() const { return encoding_; }
    const std::shared_ptr<BarButton>& menuButton() const { return menu_; }

    std::function<void(std::string_view)> onSearch; // the text in the field changed
    std::function<void()> onNext, onPrevious;
    std::function<void()> onSearchEnd;
    std::function<void()> onEncodingMenu, onMenu;

    void layoutSubviews() override;
    void draw(CGContext& context, CGRect dirty) override;
    bool pressesBegan(const UIPress& press) override;

private:
    void makeSearch();
    void showSearch(bool isShown);

    void showName();

    std::string fileName_;
    std::shared_ptr<DispatchWorkItem> noticeEnd_; // null while there is no notice
    std::shared_ptr<UILabel> name_;
    std::shared_ptr<BarButton> encoding_, search_, menu_;
    // made when somebody searches
    std::shared_ptr<UITextField> field_;
    std::shared_ptr<UILabel> count_;
    std::shared_ptr<BarButton> previous_, next_, close_;
    Encoding shownEncoding_;
    bool hasEncoding_ = false;
    bool isSearchable_ = true;
};

} // namespace platform
