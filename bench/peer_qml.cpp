// SPDX-License-Identifier: MIT
// peer-qml SCENES.qml: the scenes of ComponentsBench in the declarative toolkit that a C++ developer would pick, in software
// and off the screen. Each frame is rendered at once, without waiting for a clock.
#include "bench/FrameTimes.h"

#include <QtGui/QGuiApplication>
#include <QtQml/QQmlContext>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickView>

#include <cstdio>
#include <cstdlib>

namespace {

class Stage {
public:
    explicit Stage(const QUrl& scenes)
    {
        view_.setSource(scenes);
        if (view_.status() != QQuickView::Ready) {
            std::fprintf(stderr, "peer-qml: %s cannot be shown\n", qPrintable(scenes.toString()));
            std::exit(1);
        }
        QObject::connect(
            &view_, &QQuickWindow::afterRendering, &view_, [this] { ++frames_; }, Qt::DirectConnection);
        view_.show();
        QCoreApplication::processEvents();
        frame();
    }

    void set(const char* property, const QVariant& value)
    {
        view_.rootObject()->setProperty(property, value);
    }
    void change(int row, int value)
    {
        QMetaObject::invokeMethod(view_.rootObject(), "change", Q_ARG(QVariant, row), Q_ARG(QVariant, value));
    }
    void changeAll(int value)
    {
        QMetaObject::invokeMethod(view_.rootObject(), "changeAll", Q_ARG(QVariant, value));
    }
    // Brings what changed on screen.
    void frame()
    {
        auto before = frames_;
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&view_, &request);
        if (frames_ != before + 1) {
            std::fprintf(stderr, "peer-qml: a frame was not rendered\n");
            std::exit(1);
        }
    }
    void clear()
    {
        set("scene", QString());
        frame();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

private:
    QQuickView view_;
    int frames_ = 0;
};

void benchRows(Stage& stage, int count)
{
    auto suffix = "-" + std::to_string(count);
    auto before = bench::ownKilobytes();
    std::vector<bench::Taken> mounting;
    for (int turn = 0; turn < 5; ++turn) {
        stage.clear();
        stage.set("count", count);
        mounting.push_back(bench::take([&] {
            stage.set("scene", QStringLiteral("rows"));
            stage.frame();
        }));
        if (turn == 0)
            bench::reportMemory("memory" + suffix, bench::ownKilobytes() - before);
    }
    bench::report("mount" + suffix, mounting);
    bench::measure("change-one" + suffix, 101, [&](int turn) {
        stage.change(turn % 40, 100 + turn);
        stage.frame();
    });
    bench::measure("change-all" + suffix, 7, [&](int turn) {
        stage.changeAll(1000 + turn);
        stage.frame();
    });
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: peer-qml SCENES.qml\n");
        return 2;
    }
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argumentCount, arguments);
    Stage stage(QUrl::fromLocalFile(QString::fromLocal8Bit(arguments[1])));
    benchRows(stage, 1'000);
    benchRows(stage, 10'000);
    bench::measure("scroll-10000", 300, [&](int turn) {
        stage.set("scrolled", 37.0 * (turn + 1));
        stage.frame();
    });
    stage.clear();
    stage.set("scene", QStringLiteral("shimmer"));
    stage.frame();
    bench::measure("shimmer-50", 90, [&](int turn) {
        stage.set("phase", turn / 90.0);
        stage.frame();
    });
    stage.clear();
    stage.set("scene", QStringLiteral("sheet"));
    stage.frame();
    double dragged = 0;
    bench::measure("sheet-drag", 150, [&](int turn) {
        dragged += turn % 100 < 50 ? 3 : -3;
        stage.set("dragged", dragged);
        stage.frame();
    });
    return 0;
}
