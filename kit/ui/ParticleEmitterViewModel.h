// SPDX-License-Identifier: MIT
#pragma once

#include "platform/combine/AnyCancellable.h"
#include "platform/combine/Published.h"
#include "platform/foundation/RandomNumberGenerator.h"
#include "platform/foundation/UUID.h"
#include "platform/graphics/Geometry.h"
#include "platform/swiftui/Color.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace zelk {

// What rises in a ParticleEmitterView, and when. Held by std::shared_ptr: what it has scheduled keeps it alive. Main thread
// only.
class ParticleEmitterViewModel : public platform::ObservableObject {
public:
    struct Particle {
        platform::UUID id;
        platform::Color color;
        platform::CGPoint position; // of its centre, from the view's top left
        std::string systemImageName;
        bool operator==(const Particle&) const = default;
    };

    static constexpr double travelDuration = 30; // seconds, from below the bottom to above the top
    static constexpr std::chrono::seconds lifetime{31};
    static constexpr std::chrono::milliseconds emissionInterval{3500};

    // `random` outlives the model.
    explicit ParticleEmitterViewModel(
        std::vector<std::string> systemImageNames,
        platform::RandomNumberGenerator& random = platform::SystemRandomNumberGenerator::shared());

    // Five particles within three seconds, then one every three and a half. Each call emits its five and starts the
    // interval anew; nothing but clearing `timerCancellable` ends it.
    void start();
    // One particle, at once. Nothing happens before the view's size is known, and without names.
    void emit();
    // Ends the repeated emission and takes all particles away. Those of the first three seconds still come.
    void stop();

    platform::Published<std::vector<Particle>> particles{this, {}};
    platform::CGSize viewSize;
    bool isRunning = false;
    platform::AnyCancellable timerCancellable;
    const std::vector<std::string> systemImageNames;

private:
    std::shared_ptr<ParticleEmitterViewModel> self();
    double randomIn(double from, double to); // both included

    platform::RandomNumberGenerator& random_;
};

} // namespace zelk
