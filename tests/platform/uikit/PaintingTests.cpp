// SPDX-License-Identifier: MIT
// What is painted must not depend on how it was come by: after any changes, in pieces or as a whole.
#include "platform/uikit/ViewPainter.h"

#include "platform/dispatch/VirtualClock.h"
#include "platform/graphics/CGContext_p.h"
#include "platform/uikit/GradientMask.h"
#include "platform/uikit/OutlineMask.h"
#include "platform/uikit/UIViewController.h"
#include "platform/uikit/UIWindow.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <array>

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace platform;
using namespace std::chrono_literals;

// Larger than what is painted in pieces, smaller than what makes the test slow.
constexpr CGSize size{340, 260};

struct Drawn : UIView {
    void draw(CGContext& context, CGRect) override
    {
        context.stroke(UIBezierPath::oval(bounds().insetBy(3, 3)), UIColor(0.1, 0.4, 0.2), {.lineWidth = 5});
    }
};

struct RoundMask : UIView, OutlineMask {
    CGFloat radius = 12;
    UIBezierPath outlineNow() const override
    {
        return UIBezierPath::roundedRect(bounds(), radius, UIRectCorner::topLeft | UIRectCorner::bottomRight);
    }
    void draw(CGContext& context, CGRect) override { context.fill(outlineNow(), UIColor::black()); }
};

struct SweepMask : UIView, GradientMask {
    LinearGradientLine gradientNow() override
    {
        return {{{0.2, UIColor::gray(0, 0.2)}, {0.5, UIColor::black()}, {0.9, UIColor::clear()}},
                bounds().origin,
                {bounds().maxX(), bounds().midY()}};
    }
    void draw(CGContext& context, CGRect) override
    {
        auto [stops, start, end] = gradientNow();
        context.clip(bounds());
        context.drawLinearGradient(stops, start, end);
    }
};

class Scene {
public:
    Scene(unsigned seed, double scale)
        : random_(seed)
        , scale_(scale)
        , window_(std::make_shared<UIWindow>(CGRect{{}, size}))
    {
        UITraitCollection traits;
        traits.displayScale = scale;
        window_->setBaseTraits(traits);
        auto controller = std::make_shared<UIViewController>();
        root_ = std::make_shared<UIView>(CGRect{{}, size});
        root_->setBackgroundColor(UIColor::white());
        controller->setView(root_);
        window_->setRootViewController(controller);
        window_->showOffscreen();
        for (int i = 0; i < 40; ++i)
            change();
        kept_ = empty();
    }
    ~Scene() { window_->close(); }

    // Changes a few things, and brings the kept picture up to date as a window does.
    void step()
    {
        for (int count = number(1, 4); count > 0; --count) {
            if (number(0, 3) == 0)
                UIView::animate(AnimationTiming::linear(0.2), [this] { change(); });
            else
                change();
        }
        if (number(0, 1))
            clock_.advance(50ms);
        clock_.settle();
        window_->layoutNow();
        QPainter painter(&kept_);
        auto dirty = window_->takeDirtyRegion();
        for (const auto& rect : dirty.rects())
            paint(painter, rect);
    }
    const QImage& kept() const { return kept_; }
    QImage painted(CGSize tile)
    {
        auto image = empty();
        QPainter painter(&image);
        for (double y = 0; y < size.height; y += tile.height) {
            for (double x = 0; x < size.width; x += tile.width)
                paint(painter, CGRect{{x, y}, tile}.intersection({{}, size}));
        }
        return image;
    }

private:
    int number(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }
    QImage empty() const
    {
        QImage image((QSizeF(size.width, size.height) * scale_).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale_);
        image.fill(Qt::magenta);
        return image;
    }
    void paint(QPainter& painter, CGRect rect)
    {
        painter.setClipRect(QRectF(rect.minX(), rect.minY(), rect.width(), rect.height()));
        auto context = contextOver(painter);
        window_->paint(context, rect);
    }
    UIColor color(bool isOpaque)
    {
        return {number(0, 9) / 9.0, number(0, 9) / 9.0, number(0, 9) / 9.0, isOpaque ? 1 : 0.4};
    }
    CGRect frame()
    {
        auto isLarge = number(0, 2) == 0;
        auto fraction = number(0, 3) == 0 ? 0.3 : 0;
        return CGRect::make(number(-30, isLarge ? 60 : 250) + fraction,
                            number(-30, isLarge ? 40 : 200) + fraction,
                            isLarge ? number(180, 400) : number(0, 70),
                            isLarge ? number(140, 300) + fraction : number(0, 70));
    }
    std::shared_ptr<UIView> someView()
    {
        auto view = root_;
        while (!view->subviews().empty() && number(0, 4) > 0)
            view = view->subviews()[size_t(number(0, int(view->subviews().size()) - 1))];
        return view;
    }
    std::shared_ptr<UIView> newView()
    {
        std::shared_ptr<UIView> view = number(0, 1) ? std::make_shared<Drawn>() : std::make_shared<UIView>();
        view->setFrame(frame());
        if (number(0, 2))
            view->setBackgroundColor(color(number(0, 3) > 0));
        return view;
    }
    std::shared_ptr<UIView> newMask(const UIView& view)
    {
        std::shared_ptr<UIView> mask;
        switch (number(0, 3)) {
        case 0:
            mask = std::make_shared<RoundMask>();
            break;
        case 1:
            mask = std::make_shared<SweepMask>();
            break;
        case 2:
            mask = newView();
            break;
        default:
            return nullptr;
        }
        mask->setFrame(number(0, 2) ? view.bounds() : frame());
        return mask;
    }
    void change()
    {
        auto view = someView();
        if (view == root_ || number(0, 5) == 0)
            return view->addSubview(newView());
        switch (number(0, 14)) {
        case 0:
            return view->setFrame(frame());
        case 1:
            return view->setCenter({view->center().x + number(-9, 9), view->center().y + number(-9, 9)});
        case 2:
            return view->setBounds(
                {{CGFloat(number(-20, 20)), CGFloat(number(-20, 20))}, view->bounds().size});
        case 3:
            return view->setTransform(number(0, 1)       ? CGAffineTransform{}
                                          : number(0, 1) ? CGAffineTransform::rotation(number(1, 6))
                                                         : CGAffineTransform::scale(number(0, 3) * 0.5, 1));
        case 4:
            return view->setAlpha(number(0, 3) / 3.0);
        case 5:
            return view->setHidden(!view->isHidden());
        case 6:
            return view->setBackgroundColor(number(0, 3) ? std::optional(color(number(0, 2) > 0))
                                                         : std::nullopt);
        case 7:
            return view->setClipsToBounds(!view->clipsToBounds());
        case 8:
            return view->setCornerRadius(number(0, 2) * 8.5);
        case 9:
            return view->setMaskedCorners(UIRectCorner(number(0, 15)));
        case 10:
            return view->setShadow(number(0, 1) ? std::optional(UIViewShadow{.radius = CGFloat(number(0, 3))})
                                                : std::nullopt);
        case 11:
            return view->setMask(newMask(*view));
        case 12:
            return view->setZPosition(number(-1, 1));
        case 13:
            return view->superview()->bringSubviewToFront(*view);
        default:
            return view->removeFromSuperview();
        }
    }

    VirtualClock clock_;
    std::mt19937 random_;
    double scale_;
    std::shared_ptr<UIWindow> window_;
    std::shared_ptr<UIView> root_;
    QImage kept_;
};

// Pixels that differ by more than what rounding explains.
int differences(const QImage& a, const QImage& b)
{
    constexpr int rounding = 4;
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        auto *one = reinterpret_cast<const QRgb*>(a.constScanLine(y)),
             *other = reinterpret_cast<const QRgb*>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            auto isFar = [&](int (*channel)(QRgb)) {
                return std::abs(channel(one[x]) - channel(other[x])) > rounding;
            };
            count += isFar(qRed) || isFar(qGreen) || isFar(qBlue) ? 1 : 0;
        }
    }
    return count;
}

TEST(Painting, is_the_same_after_any_changes_in_tiles_and_as_a_whole)
{
    constexpr int few = 3; // where the outlines of turned views meet the edges of tiles
    for (unsigned seed = 0; seed < 16; ++seed) {
        auto scale = std::array{1.0, 1.5, 2.0}[seed % 3];
        Scene scene(seed, scale);
        for (int step = 0; step < 12; ++step) {
            scene.step();
            MaskedPicture::anythingMayChange(); // nothing kept is used for the first ones
            auto whole = scene.painted(size);
            EXPECT_LE(differences(scene.kept(), whole), few) << "kept, seed " << seed << " step " << step;
            EXPECT_LE(differences(scene.painted({60, 50}), whole), few)
                << "tiles, seed " << seed << " step " << step;
            if (HasFailure())
                return;
        }
    }
}

TEST(Painting, of_one_among_ten_thousand_draws_no_other)
{
    struct Counted : UIView {
        int* drawn;
        void draw(CGContext&, CGRect) override { ++*drawn; }
    };
    VirtualClock clock;
    int drawn = 0;
    auto list = std::make_shared<UIView>(CGRect{{}, size});
    std::vector<std::shared_ptr<UIView>> rows;
    for (int i = 0; i < 10'000; ++i) {
        auto row = std::make_shared<Counted>();
        row->drawn = &drawn;
        row->setFrame(CGRect::make(0, i * 20, 300, 20));
        rows.push_back(row);
    }
    list->setSubviews(rows);
    auto count = [&](CGRect dirty) {
        drawn = 0;
        QImage image(int(size.width), int(size.height), QImage::Format_RGB32);
        QPainter painter(&image);
        auto context = contextOver(painter);
        ViewPainter(context).paint(*list, dirty);
        return drawn;
    };
    EXPECT_EQ(count(CGRect::make(0, 41, 100, 10)), 1);
    EXPECT_EQ(count({{}, size}), 13);
    rows[9'999]->setCenter({150, 50}); // to where the third is
    EXPECT_EQ(count(CGRect::make(0, 41, 100, 10)), 2);
    rows[2]->setHidden(true);
    rows[9'999]->setTransform(CGAffineTransform::translation(0, 40));
    EXPECT_EQ(count(CGRect::make(0, 41, 100, 10)), 0);
    rows[5'000]->removeFromSuperview();
    list->insertSubview(rows[5'000], 0);
    rows[5'000]->setCenter({150, 50});
    EXPECT_EQ(count(CGRect::make(0, 41, 100, 10)), 1);
}

} // namespace
