// SPDX-License-Identifier: MIT
#include "platform/uikit/UILabel.h"

#include "platform/dispatch/RunLoop.h"
#include "platform/graphics/CGContext.h"
#include "platform/uikit/NSLayoutConstraint.h"

#include <QtCore/QChar>
#include <QtCore/QStringDecoder>

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform {

namespace {

constexpr std::string_view ellipsis = "\xe2\x80\xa6";

// The lines that the text itself begins. A line end at the very end begins an empty one.
std::vector<std::string_view> paragraphsOf(std::string_view text)
{
    std::vector<std::string_view> result;
    for (;;) {
        auto end = text.find_first_of("\r\n");
        result.push_back(text.substr(0, end));
        if (end == text.npos)
            return result;
        text.remove_prefix(end + (text.substr(end).starts_with("\r\n") ? 2 : 1));
    }
}

// Whether any character says by itself in which direction it is written.
bool hasDirection(std::string_view text)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    QString decoded = decode(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
    for (qsizetype i = 0; i < decoded.size(); ++i) {
        char32_t character = decoded[i].unicode();
        if (decoded[i].isHighSurrogate() && i + 1 < decoded.size())
            character = QChar::surrogateToUcs4(decoded[i], decoded[i + 1]);
        auto direction = QChar::direction(character);
        if (direction == QChar::DirL || direction == QChar::DirR || direction == QChar::DirAL)
            return true;
    }
    return false;
}

// A wish in whole points: a text must not lose its end because of a rounded frame.
CGFloat roundedUp(CGFloat value)
{
    return std::ceil(value - 1e-6);
}

} // namespace

UILabel::UILabel()
    : textColor_(UIColor::label())
{
    setUserInteractionEnabled(false);
}

UILabel::UILabel(CGRect frame)
    : UILabel()
{
    setFrame(frame);
}

// The labels that have layouts, the last one asked first.
class UILabel::Recent {
public:
    static Recent& shared()
    {
        static auto& recent = *new Recent; // labels may live as long as the process
        return recent;
    }
    void touch(const UILabel& label)
    {
        if (label.recent_) {
            labels_.splice(labels_.begin(), labels_, *label.recent_);
            return;
        }
        labels_.push_front(&label);
        label.recent_ = labels_.begin();
        if (labels_.size() <= limit)
            return;
        auto& oldest = *labels_.back();
        for (auto& entry : oldest.cache_)
            entry.paragraphs = std::vector<Shaped::Paragraph>();
        forget(oldest);
    }
    void forget(const UILabel& label)
    {
        if (auto place = std::exchange(label.recent_, std::nullopt))
            labels_.erase(*place);
    }

private:
    static constexpr std::size_t limit = 500; // more than a screen shows
    std::list<const UILabel*> labels_;
};

UILabel::~UILabel()
{
    Recent::shared().forget(*this);
}

void UILabel::setText(std::string text)
{
    assertOnMainThread();
    if (text_ == text)
        return;
    text_ = std::move(text);
    contentChanged();
}

void UILabel::setFont(UIFont font)
{
    assertOnMainThread();
    fontStyle_.reset();
    if (font_ == font)
        return;
    font_ = std::move(font);
    contentChanged();
}

void UILabel::setPreferredFont(FontTextStyle style, FontDesign design)
{
    assertOnMainThread();
    auto& traits = traitCollection();
    auto font = UIFont::preferredFont(style, traits.preferredContentSizeCategory, traits.textScale, design);
    setFont(std::move(font));
    fontStyle_ = style;
    fontDesign_ = design;
}

void UILabel::setTextColor(UIColor color)
{
    assertOnMainThread();
    if (textColor_ == color)
        return;
    textColor_ = std::move(color);
    setNeedsDisplay();
}

void UILabel::setTextAlignment(TextAlignment alignment)
{
    assertOnMainThread();
    if (std::exchange(textAlignment_, alignment) != alignment)
        contentChanged();
}

void UILabel::setNumberOfLines(int lines)
{
    assertOnMainThread();
    lines = std::max(lines, 0);
    if (std::exchange(numberOfLines_, lines) != lines)
        contentChanged();
}

void UILabel::setLineBreak(LineBreak lineBreak)
{
    assertOnMainThread();
    if (std::exchange(lineBreak_, lineBreak) != lineBreak)
        contentChanged();
}

void UILabel::setPreferredMaxLayoutWidth(CGFloat width)
{
    assertOnMainThread();
    width = std::isfinite(width) ? std::max(width, 0.0) : 0;
    if (std::exchange(preferredMaxLayoutWidth_, width) != width)
        invalidateIntrinsicContentSize();
}

void UILabel::contentChanged()
{
    cache_.clear();
    setNeedsDisplay();
    invalidateIntrinsicContentSize();
}

void UILabel::traitCollectionDidChange(const UITraitCollection& previous)
{
    UIView::traitCollectionDidChange(previous);
    if (fontStyle_)
        setPreferredFont(*fontStyle_, fontDesign_);
    if (previous.layoutDirection != traitCollection().layoutDirection)
        contentChanged();
}

BaseDirection UILabel::baseDirection(std::string_view paragraph) const
{
    auto isRightToLeft =
        effectiveUserInterfaceLayoutDirection() == UIUserInterfaceLayoutDirection::rightToLeft;
    return isRightToLeft && !hasDirection(paragraph) ? BaseDirection::rightToLeft : BaseDirection::automatic;
}

UILabel::Shaped UILabel::shape(CGFloat width, int maxLines) const
{
    Shaped result{.width = width,
                  .maxLines = maxLines,
                  .direction = effectiveUserInterfaceLayoutDirection(),
                  .size = {},
                  .isTruncated = false,
                  .paragraphs = {}};
    auto paragraphs = paragraphsOf(text_);
    auto linesLeft = maxLines;
    for (std::size_t i = 0; i < paragraphs.size() && (maxLines == 0 || linesLeft > 0); ++i) {
        TextStyle style{.font = font_,
                        .alignment = textAlignment_,
                        .baseDirection = baseDirection(paragraphs[i]),
                        .lineBreak = lineBreak_,
                        .maxLines = linesLeft};
        // A text of one line does not wrap before it is cut.
        if (maxLines == 1 && lineBreak_ != LineBreak::truncateTail)
            style.lineBreak = LineBreak::none;
        TextLayout layout(paragraphs[i], style, width);
        auto lines = static_cast<int>(layout.lines().size());
        if (maxLines > 0 && lines >= linesLeft && i + 1 < paragraphs.size()) {
            // What is left out comes after this paragraph, which therefore does not end here.
            result.isTruncated = true;
            if (lineBreak_ == LineBreak::truncateTail && !layout.isTruncated())
                layout = TextLayout(std::string(paragraphs[i]).append(ellipsis), style, width);
        }
        linesLeft -= lines;
        result.isTruncated |= layout.isTruncated();
        auto size = layout.size();
        result.paragraphs.push_back({std::move(layout), result.size.height});
        result.size = {std::max(result.size.width, size.width), result.size.height + size.height};
    }
    return result;
}

UILabel::Shaped& UILabel::remembered(CGFloat width, int maxLines) const
{
    // One for the natural size, one to measure, one on screen.
    constexpr std::size_t cacheLimit = 3;
    width = width > 0 ? width : unlimitedWidth;
    auto direction = effectiveUserInterfaceLayoutDirection();
    for (auto entry = cache_.begin(); entry != cache_.end(); ++entry)
        if (entry->width == width && entry->maxLines == maxLines && entry->direction == direction) {
            std::rotate(cache_.begin(), entry, entry + 1);
            return cache_.front();
        }
    if (cache_.size() == cacheLimit)
        cache_.pop_back();
    cache_.insert(cache_.begin(), shape(width, maxLines));
    Recent::shared().touch(*this);
    return cache_.front();
}

const UILabel::Shaped& UILabel::shaped(CGFloat width, int maxLines) const
{
    auto& entry = remembered(width, maxLines);
    if (entry.paragraphs.empty()) // there is always one
        entry = shape(entry.width, maxLines);
    Recent::shared().touch(*this);
    return entry;
}

const UILabel::Shaped& UILabel::shapedInBounds() const
{
    return shaped(bounds().width(), numberOfLines_);
}

bool UILabel::isTruncated() const
{
    return shapedInBounds().isTruncated;
}

void UILabel::draw(CGContext& context, CGRect)
{
    if (text_.empty() || bounds().isEmpty())
        return;
    auto& shaped = shapedInBounds();
    auto top = bounds().minY() + (bounds().height() - shaped.size.height) / 2;
    for (auto& paragraph : shaped.paragraphs)
        paragraph.layout.draw(context, {bounds().minX(), top + paragraph.y}, textColor_);
}

// The wish of a text of several lines hangs on its width; it is told anew when that has changed.
void UILabel::layoutSubviews()
{
    UIView::layoutSubviews();
    if (numberOfLines_ == 1 || std::exchange(wrappedWidth_, bounds().width()) == bounds().width())
        return;
    setNeedsDisplay();
    if (preferredMaxLayoutWidth_ == 0)
        invalidateIntrinsicContentSize();
}

CGSize UILabel::sizeThatFits(CGSize available) const
{
    if (text_.empty())
        return {};
    auto size = remembered(available.width, numberOfLines_).size;
    return {roundedUp(size.width), roundedUp(size.height)};
}

CGSize UILabel::intrinsicContentSize() const
{
    auto natural = sizeThatFits({unlimitedWidth, 0});
    if (numberOfLines_ == 1)
        return natural;
    if (preferredMaxLayoutWidth_ > 0)
        return sizeThatFits({preferredMaxLayoutWidth_, 0});
    if (!(bounds().width() > 0))
        return natural;
    return {natural.width, sizeThatFits({bounds().width(), 0}).height};
}

UILabel::Baselines UILabel::baselines(CGFloat width) const
{
    auto& paragraphs = shaped(width, numberOfLines_).paragraphs;
    return {paragraphs.front().layout.firstBaseline(),
            paragraphs.back().y + paragraphs.back().layout.lastBaseline()};
}

CGFloat UILabel::firstBaselineOffset() const
{
    auto& shaped = shapedInBounds();
    return shaped.paragraphs.front().layout.firstBaseline();
}

CGFloat UILabel::lastBaselineOffset() const
{
    auto& last = shapedInBounds().paragraphs.back().layout;
    return last.size().height - last.lastBaseline();
}

AccessibilityProperties UILabel::accessibilityNow() const
{
    auto properties = UIView::accessibilityNow();
    if (properties.role == AccessibilityRole::none && !text_.empty())
        properties.role = AccessibilityRole::staticText;
    if (properties.label.empty())
        properties.label = text_;
    return properties;
}

} // namespace platform
