// SPDX-License-Identifier: MIT
#pragma once

#include "platform/uikit/UITextField.h"
#include "platform/uikit/UIView.h"

#include <memory>
#include <string>

namespace platform {

class UIButton;
class UISearchBar;

// Told of what happens in a search bar. Each call may remove it. Main thread only.
class UISearchBarDelegate {
public:
    virtual ~UISearchBarDelegate() = default;
    virtual void searchBarTextDidChange(UISearchBar&, const std::string& /*text*/) { } // by the user
    virtual void searchBarSearchButtonClicked(UISearchBar&) { }                        // Return
    virtual void searchBarCancelButtonClicked(UISearchBar&) { } // the button, or Escape
};

// The field of a search: a lens, the text, a button that empties it while there is one and, if it is wanted, one that
// ends the search. Escape empties the field, and ends the search where it is empty. Main thread only.
class UISearchBar : public UIView {
public:
    UISearchBar();
    explicit UISearchBar(CGRect frame);
    ~UISearchBar() override;

    const std::shared_ptr<UITextField>& searchTextField() const { return field_; }
    std::string text() const { return field_->text(); }
    void setText(std::string_view text); // tells nobody
    const std::string& placeholder() const { return field_->placeholder(); }
    void setPlaceholder(std::string text) { field_->setPlaceholder(std::move(text)); }
    bool showsCancelButton() const;
    void setShowsCancelButton(bool shows); // default no
    void setDelegate(std::weak_ptr<UISearchBarDelegate> delegate) { delegate_ = std::move(delegate); }

    void layoutSubviews() override;
    CGSize intrinsicContentSize() const override;
    CGSize sizeThatFits(CGSize available) const override;
    bool pressesBegan(const UIPress& press) override;

private:
    class Lens;
    class ClearButton;
    void setUp();
    void clear();
    void textChanged();
    void cancel();

    std::shared_ptr<UITextField> field_;
    std::shared_ptr<Lens> lens_;
    std::shared_ptr<ClearButton> clear_;
    std::shared_ptr<UIButton> cancel_;
    std::weak_ptr<UISearchBarDelegate> delegate_;
};

} // namespace platform
