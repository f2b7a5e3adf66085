// SPDX-License-Identifier: MIT
#include "platform/network/NetworkThread_p.h"

#include "platform/foundation/Precondition.h"
#include "platform/network/ProxyEnvironment_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtNetwork/QHostInfo>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkProxy>
#include <QtNetwork/QNetworkReply>

#include <atomic>
#include <cstdlib>
#include <deque>
#include <latch>
#include <mutex>
#include <vector>

namespace platform {

namespace {

// Runs what was given, a batch an event.
class Mailbox final : public QObject {
public:
    void post(NetworkThread::Work work)
    {
        {
            std::lock_guard lock(mutex_);
            waiting_.push_back(std::move(work));
            if (waiting_.size() > 1)
                return; // an event is on its way
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

private:
    void customEvent(QEvent*) override
    {
        std::deque<NetworkThread::Work> due;
        {
            std::lock_guard lock(mutex_);
            due.swap(waiting_);
        }
        for (auto& work : due)
            std::exchange(work, nullptr)();
    }

    std::mutex mutex_;
    std::deque<NetworkThread::Work> waiting_; // guarded by mutex_
};

class Thread final : public QThread {
public:
    explicit Thread(std::function<void()> body)
        : body_(std::move(body))
    {
    }

private:
    void run() override { body_(); }
    std::function<void()> body_;
};

class EnvironmentProxies final : public QNetworkProxyFactory {
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override
    {
        auto scheme = query.url().scheme();
        auto address =
            proxyFromEnvironment(scheme.toStdString(), query.url().host().toStdString(),
                                 [](const std::string& name) -> std::optional<std::string> {
                                     auto* value = std::getenv(name.c_str());
                                     return value ? std::optional<std::string>(value) : std::nullopt;
                                 });
        if (!address)
            return {QNetworkProxy(QNetworkProxy::NoProxy)};
        auto kind =
            scheme == QLatin1String("http") ? QNetworkProxy::HttpCachingProxy : QNetworkProxy::HttpProxy;
        if (address->kind == ProxyAddress::Kind::socks5)
            kind = QNetworkProxy::Socks5Proxy;
        return {QNetworkProxy(kind, QString::fromStdString(address->host), address->port,
                              QString::fromStdString(address->user),
                              QString::fromStdString(address->password))};
    }
};

// What the library makes at first use and unmakes when the process ends: made before the thread's end is arranged for, it
// outlives the thread, which may be in the middle of a connection then.
void makeLibraryGlobals()
{
    QNetworkAccessManager();
    QNetworkProxy::applicationProxy();
    QHostInfo::abortHostLookup(-1);
}

std::atomic<bool> hasStopped = false;

// The managers there are; network thread only. Never destroyed, as that thread may be there to the end.
std::vector<QPointer<QNetworkAccessManager>>& managers()
{
    static auto& instance = *new std::vector<QPointer<QNetworkAccessManager>>;
    return instance;
}

// Each manager has a thread of its own for its connections, which ends with it. What the replies belong to keeps them.
void endConnections()
{
    for (auto& manager : managers()) {
        if (!manager)
            continue;
        for (auto* reply : manager->findChildren<QNetworkReply*>(Qt::FindDirectChildrenOnly))
            reply->setParent(nullptr);
        delete manager.data();
    }
}

} // namespace

struct NetworkThread::State {
    // fixed once the thread runs
    Mailbox* mailbox = nullptr;
    std::unique_ptr<Thread> thread;
};

struct NetworkThread::StopAtExit {
    NetworkThread& thread;
    ~StopAtExit() { thread.stop(); }
};

NetworkThread& NetworkThread::shared()
{
    // Never destroyed, as anybody may still hold its address; only stopped.
    static auto& instance = *new NetworkThread;
    static const StopAtExit stop{instance};
    return instance;
}

NetworkThread::NetworkThread()
    : state_(std::make_unique<State>())
{
    std::latch isRunning(1);
    state_->thread = std::make_unique<Thread>([this, &isRunning] {
        // The library wants an application object. A program with windows has made one; should it make one later, that one
        // takes this one's place. Never destroyed: it has no say over the main thread.
        if (!QCoreApplication::instance()) {
            static int argumentCount = 1;
            static char name[] = "zelk";
            static char* arguments[] = {name, nullptr};
            // That this is not the main thread is meant, and not worth the warning.
            auto* handler =
                qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) { });
            new QCoreApplication(argumentCount, arguments);
            qInstallMessageHandler(handler);
        }
        state_->mailbox = new Mailbox;
        makeLibraryGlobals();
        isRunning.count_down();
        static_cast<void>(QEventLoop().exec());
        endConnections();
    });
    state_->thread->setObjectName("zelk-network");
    state_->thread->start();
    isRunning.wait();
}

void NetworkThread::stop()
{
    hasStopped = true;
    state_->thread->quit();
    state_->thread->wait();
}

void NetworkThread::perform(Work work)
{
    state_->mailbox->post(std::move(work));
}

void NetworkThread::assertIsCurrent() const
{
    precondition(QThread::currentThread() == state_->thread.get(),
                 "a load is touched off the network thread");
}

std::shared_ptr<QNetworkAccessManager> makeNetworkAccess()
{
    // Let go of on any thread, or by the last of its own replies: it is deleted in its own time.
    std::shared_ptr<QNetworkAccessManager> result(new QNetworkAccessManager,
                                                  [](QNetworkAccessManager* access) {
                                                      if (!hasStopped) // else it is gone
                                                          access->deleteLater();
                                                  });
    std::erase_if(managers(), [](auto& manager) { return !manager; });
    managers().emplace_back(result.get());
    result->setProxyFactory(new EnvironmentProxies); // the manager owns it
    result->setAutoDeleteReplies(false);
    return result;
}

} // namespace platform
