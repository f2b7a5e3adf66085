// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QBasicTimer>
#include <QtCore/QObject>

#include <atomic>

namespace platform {

// Makes the window system's event loop take the turns of RunLoop::main(): one after each event that gave work, one at each
// deadline, none while there is nothing to do. Lives as long as the application runs; main thread only.
class RunLoopPump : public QObject {
public:
    RunLoopPump();
    ~RunLoopPump() override;

protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void wakeUp(); // any thread
    void takeTurn();

    std::atomic<bool> isPosted_ = false;
    // main thread only
    QBasicTimer timer_;
};

} // namespace platform
