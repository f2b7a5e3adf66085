// SPDX-License-Identifier: MIT
#include "platform/services/UIFontPickerViewController.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/foundation/NSUserDefaults.h"
#include "platform/services/FontListView.h"
#include "platform/services/PickerBar.h"
#include "platform/services/PickerNotice.h"
#include "platform/services/mediaPickerText_p.h"
#include "platform/uikit/UIButton.h"
#include "platform/uikit/UITextField.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtGui/QFontDatabase>

#include <algorithm>
#include <utility>

namespace platform {

namespace {

constexpr CGFloat margin = 12, searchHeight = 36;
constexpr std::size_t mostRecents = 5;
constexpr std::string_view recentsKey = "org.zelk.fontPicker.recents";

std::vector<std::string> installedFamilies()
{
    std::vector<std::string> families;
    for (const auto& family : QFontDatabase::families()) {
        if (!QFontDatabase::isPrivateFamily(family))
            families.push_back(family.toStdString());
    }
    return families;
}

bool matches(const std::string& family, const QString& wanted)
{
    return wanted.isEmpty() || QString::fromStdString(family).contains(wanted, Qt::CaseInsensitive);
}

} // namespace

UIFontPickerViewController::UIFontPickerViewController()
{
    setTitle(mediaPickerText(MediaPickerText::fonts));
}

UIFontPickerViewController::~UIFontPickerViewController() = default;

void UIFontPickerViewController::setDelegate(std::weak_ptr<UIFontPickerViewControllerDelegate> delegate)
{
    assertOnMainThread();
    delegate_ = std::move(delegate);
}

void UIFontPickerViewController::loadView()
{
    page_ = std::make_shared<PickerPage>();
    setView(page_);
}

void UIFontPickerViewController::viewDidLoad()
{
    UIFont().lineHeight(); // graphics are running from here on, which knows the fonts
    families_ = installedFamilies();
    for (auto& family : NSUserDefaults::standardUserDefaults()
                            ->stringArrayForKey(recentsKey)
                            .value_or(std::vector<std::string>())) {
        if (std::ranges::find(families_, family) != families_.end())
            recents_.push_back(family);
    }
    bar_ = std::make_shared<PickerBar>();
    bar_->setTitle(title());
    search_ = std::make_shared<UITextField>();
    search_->setPlaceholder(mediaPickerText(MediaPickerText::search));
    list_ = std::make_shared<FontListView>();
    list_->accessibility().label = title();
    notice_ = std::make_shared<PickerNotice>();
    for (const auto& view : {std::shared_ptr<UIView>(bar_), std::shared_ptr<UIView>(search_),
                             std::shared_ptr<UIView>(list_), std::shared_ptr<UIView>(notice_)})
        page_->addSubview(view);
    // The views do not outlive the controller's own.
    auto primary = UIControlEvents{UIControlEvents::primaryActionTriggered};
    page_->onEscape = [this] { cancel(); };
    bar_->cancelButton()->addAction([this](UIControl&) { cancel(); }, primary);
    search_->addAction([this](UIControl&) { filter(); }, {UIControlEvents::valueChanged});
    search_->addAction([this](UIControl&) { list_->becomeFirstResponder(); }, primary);
    list_->onPick = [this](const std::string& family) { pick(family); };
    filter();
}

void UIFontPickerViewController::filter()
{
    auto wanted = QString::fromStdString(search_->text()).trimmed();
    std::vector<FontListView::Row> rows;
    auto isNarrowed = !wanted.isEmpty();
    if (!isNarrowed && !recents_.empty()) {
        rows.push_back({mediaPickerText(MediaPickerText::recent), true});
        for (const auto& family : recents_)
            rows.push_back({family});
        rows.push_back({title(), true});
    }
    for (const auto& family : families_) {
        if (matches(family, wanted))
            rows.push_back({family});
    }
    notice_->setText(rows.empty() ? mediaPickerText(MediaPickerText::noFonts) : std::string());
    list_->setHidden(rows.empty());
    list_->setRows(std::move(rows));
}

void UIFontPickerViewController::pick(const std::string& family)
{
    if (std::exchange(isOver_, true))
        return;
    auto kept = shared_from_this();
    selected_ = UIFont().withFamily(family);
    std::vector<std::string> recents{family};
    for (const auto& former : recents_) {
        if (former != family && recents.size() < mostRecents)
            recents.push_back(former);
    }
    recents_ = recents;
    PropertyListArray stored;
    for (auto& each : recents)
        stored.emplace_back(std::move(each));
    NSUserDefaults::standardUserDefaults()->setObject(PropertyListValue(std::move(stored)), recentsKey);
    if (auto told = delegate())
        told->fontPickerViewControllerDidPickFont(*this);
    else
        dismiss(Animated::yes);
}

void UIFontPickerViewController::cancel()
{
    if (std::exchange(isOver_, true))
        return;
    auto kept = shared_from_this();
    if (auto told = delegate())
        told->fontPickerViewControllerDidCancel(*this);
    else
        dismiss(Animated::yes);
}

void UIFontPickerViewController::viewDidAppear(Animated animated)
{
    UIViewController::viewDidAppear(animated);
    isOver_ = false;
    search_->becomeFirstResponder();
}

void UIFontPickerViewController::viewWillLayoutSubviews()
{
    UIViewController::viewWillLayoutSubviews();
    auto area = page_->placeBar(*bar_);
    auto inner = std::max(area.width() - 2 * margin, 0.0);
    search_->setFrame(CGRect::make(area.minX() + margin, area.minY() + margin / 2, inner, searchHeight));
    auto top = search_->frame().maxY() + margin / 2;
    auto below = CGRect::make(area.minX(), top, area.width(), std::max(area.maxY() - top, 0.0));
    list_->setFrame(below);
    notice_->setFrame(below);
}

} // namespace platform
