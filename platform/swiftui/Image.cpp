// SPDX-License-Identifier: MIT
#include "platform/swiftui/Image.h"

#include "platform/graphics/CGContext.h"
#include "platform/swiftui/EnvironmentValues.h"
#include "platform/swiftui/imageScale.h"
#include "platform/uikit/UIImageView.h"

namespace platform {

namespace {

bool isMoving(const UIView& view)
{
    for (auto* each = &view; each; each = each->superview().get()) {
        if (each->isAnimating())
            return true;
    }
    return false;
}

} // namespace

// Draws a symbol in whatever size it has, or else its picture.
class Image::Node::ImageView : public UIImageView {
public:
    struct Symbol {
        std::string name;
        SymbolConfiguration configuration;
        SymbolDirection direction = SymbolDirection::leftToRight;
        UIFont font;
        bool operator==(const Symbol&) const = default;
    };

    const Symbol& symbol() const { return symbol_; }
    // Whether its size may be another one now.
    bool setSymbol(Symbol symbol)
    {
        if (symbol == symbol_)
            return false;
        auto before = naturalSize();
        symbol_ = std::move(symbol);
        setNeedsDisplay();
        return naturalSize() != before;
    }
    CGSize naturalSize() const
    {
        return symbol_.name.empty() ? image().size() : symbolSize(symbol_.name, symbol_.configuration);
    }

    void draw(CGContext& context, CGRect dirty) override
    {
        if (symbol_.name.empty())
            return UIImageView::draw(context, dirty);
        drawSymbol(context, symbol_.name, presentationBounds(), tintColor(),
                   {.weight = symbol_.configuration.weight,
                    .direction = symbol_.direction,
                    .isSharp = !isMoving(*this)});
    }
    CGSize sizeThatFits(CGSize) const override { return naturalSize(); }
    CGSize intrinsicContentSize() const override { return naturalSize(); }
    void tintColorDidChange() override
    {
        if (!symbol_.name.empty())
            setNeedsDisplay();
        UIImageView::tintColorDidChange();
    }

private:
    Symbol symbol_;
};

Image::Node::Node(const NodeContext& context, const Image& view)
    : PlatformViewNode(context)
    , record_(view)
    , imageView_(std::make_shared<ImageView>())
{
    show();
    setPlatformView(imageView_);
}

void Image::Node::update(const Image& view)
{
    if (view == record_)
        return;
    auto changesSize = view.isResizable != record_.isResizable || view.image.size() != record_.image.size();
    record_ = view;
    show();
    if (changesSize)
        invalidateLayout();
}

void Image::Node::refresh()
{
    forgetSources();
    show();
}

void Image::Node::show()
{
    imageView_->setTintColor(environment<ForegroundColorKey>().value_or(UIColor::label()));
    ImageView::Symbol symbol;
    if (!record_.systemName.empty()) {
        symbol.name = record_.systemName;
        symbol.font = environment<FontKey>()
                          .value_or(Font::body())
                          .resolved(environment<SizeCategoryKey>(), environment<TextScaleKey>());
        symbol.configuration = {.pointSize = symbol.font.pointSize(),
                                .weight = symbol.font.weight(),
                                .scale = environment<ImageScaleKey>()};
        symbol.direction = environment<LayoutDirectionKey>() == LayoutDirection::rightToLeft
            ? SymbolDirection::rightToLeft
            : SymbolDirection::leftToRight;
    }
    imageView_->setImage(record_.image);
    if (imageView_->setSymbol(std::move(symbol)))
        invalidateLayout();
}

CGSize Image::Node::measure(const ProposedSize& proposal)
{
    auto natural = imageView_->naturalSize();
    return record_.isResizable ? proposal.replacingUnspecified(natural) : natural;
}

CGFloat Image::Node::guide(VerticalAlignment alignment, CGSize size)
{
    auto& symbol = imageView_->symbol();
    if (alignment < VerticalAlignment::firstTextBaseline || symbol.name.empty() || record_.isResizable)
        return ViewNode::guide(alignment, size);
    return symbolBaseline(size, symbol.font);
}

} // namespace platform
