// SPDX-License-Identifier: MIT
#include "platform/graphics/GraphicsRuntime_p.h"

#include "platform/graphics/DisplayProbe_p.h"

#include <QtCore/QByteArray>
#include <QtGui/QGuiApplication>

#include <cstdio>
#include <dlfcn.h>
#include <latch>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace platform {

namespace {

// Notes of the library about the surroundings (no runtime directory, no session bus) are not the person's
// business. Whoever looks for a fault asks for them.
void keepErrorsOnly(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qUtf8Printable(message));
}

// Counted down when the thread that reads the font configuration is done; null when there is none.
std::shared_ptr<std::latch>& fontConfigurationIsRead()
{
    static std::shared_ptr<std::latch> isRead;
    return isRead;
}

// Reading the font configuration takes 4 ms. It needs nothing of ours, so it goes on while the window system is being
// talked to and the file is read; the first font waits for it, for the library would otherwise read all of it a
// second time. The function is looked up at run time: where text is shaped with something else, there is nothing
// to warm.
void warmFontConfiguration()
{
    using Initialise = int (*)();
    auto initialise = reinterpret_cast<Initialise>(::dlsym(RTLD_DEFAULT, "FcInit"));
    if (!initialise)
        return;
    auto isRead = std::make_shared<std::latch>(1);
    fontConfigurationIsRead() = isRead;
    // Touches no other object of this program, so it may outlive main.
    std::thread([initialise, isRead] {
        initialise();
        isRead->count_down();
    }).detach();
}

struct Runtime {
    // The library keeps references to both for as long as the application object lives.
    std::vector<QByteArray> words;
    std::vector<char*> arguments;
    int argumentCount = 0;
    std::unique_ptr<QGuiApplication> application;

    explicit Runtime(DisplayMode mode)
    {
        if (qEnvironmentVariableIsEmpty("QT_LOGGING_RULES")
            && qEnvironmentVariableIsEmpty("QT_DEBUG_PLUGINS"))
            qInstallMessageHandler(keepErrorsOnly);
        warmFontConfiguration();

        // Our own words: the program's arguments are its own, and the environment is left to its children.
        words = {"zelk"};
        if (mode == DisplayMode::offscreen)
            words.insert(words.end(), {"-platform", "offscreen"});
        // A desktop's theme module can bring a whole second toolkit into the process.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORMTHEME"))
            words.insert(words.end(), {"-platformtheme", "generic"});
        for (auto& word : words)
            arguments.push_back(word.data());
        argumentCount = static_cast<int>(arguments.size());
        arguments.push_back(nullptr);

        QGuiApplication::setAttribute(Qt::AA_DisableSessionManager);
        QGuiApplication::setDesktopSettingsAware(false);
        application = std::make_unique<QGuiApplication>(argumentCount, arguments.data());
        releaseProbedDisplay();
    }
};

// Never destroyed by itself: at exit the library's own globals may be gone before it.
Runtime*& runtime()
{
    static Runtime* instance = nullptr;
    return instance;
}

} // namespace

void startGraphics(DisplayMode mode)
{
    if (!graphicsIsStarted())
        runtime() = new Runtime(mode);
}

void stopGraphics()
{
    delete std::exchange(runtime(), nullptr);
}

bool graphicsIsStarted()
{
    return runtime() != nullptr;
}

void awaitFontConfiguration()
{
    if (auto isRead = std::exchange(fontConfigurationIsRead(), nullptr))
        isRead->wait();
}

QGuiApplication& guiApplication()
{
    startGraphics(DisplayMode::offscreen);
    return *runtime()->application;
}

} // namespace platform
