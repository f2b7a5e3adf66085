// SPDX-License-Identifier: MIT
#include "kit/ui/ParticleEmitterViewModel.h"

#include "kit/theme/GridSize.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/dispatch/RunLoop.h"
#include "platform/dispatch/Timer.h"
#include "platform/foundation/ProcessInfo.h"
#include "platform/swiftui/Animation.h"
#include "platform/swiftui/Transaction.h"

#include <cmath>

namespace zelk {

using platform::AnyCancellable;
using platform::Color;
using platform::DispatchQueue;
using platform::Timer;
using platform::UIColor;

namespace {

constexpr auto particleSize = GridSize::_250;

std::vector<UIColor> palette()
{
    std::vector colors{UIColor::systemBlue(),  UIColor::systemIndigo(), UIColor::systemTeal(),
                       UIColor::systemGreen(), UIColor::systemOrange(), UIColor::systemYellow(),
                       UIColor::systemPink(),  UIColor::systemRed(),    UIColor::systemPurple(),
                       UIColor::systemBrown()};
    if (platform::ProcessInfo::processInfo().isOperatingSystemAtLeast({15, 0, 0})) {
        colors.push_back(UIColor::systemMint());
        colors.push_back(UIColor::systemCyan());
    }
    return colors;
}

} // namespace

ParticleEmitterViewModel::ParticleEmitterViewModel(std::vector<std::string> names,
                                                   platform::RandomNumberGenerator& random)
    : systemImageNames(std::move(names))
    , random_(random)
{
}

std::shared_ptr<ParticleEmitterViewModel> ParticleEmitterViewModel::self()
{
    return std::static_pointer_cast<ParticleEmitterViewModel>(shared_from_this());
}

void ParticleEmitterViewModel::start()
{
    platform::assertOnMainThread();
    if (isRunning)
        return; // nobody sets it: each call begins anew, beside what the last one scheduled
    constexpr std::chrono::milliseconds bursts[]{
        std::chrono::milliseconds{0}, std::chrono::milliseconds{750}, std::chrono::milliseconds{1500},
        std::chrono::milliseconds{2250}, std::chrono::milliseconds{3000}};
    for (auto delay : bursts)
        DispatchQueue::main()->asyncAfter(delay, [model = self()] { model->emit(); });
    auto timer =
        Timer::scheduledTimer(emissionInterval, Timer::Repeats::yes, [weak = std::weak_ptr(self())](Timer&) {
            if (auto model = weak.lock())
                model->emit();
        });
    timerCancellable = AnyCancellable([timer] { timer->invalidate(); });
}

double ParticleEmitterViewModel::randomIn(double from, double to)
{
    constexpr auto steps = std::uint64_t{1} << 53;
    auto step = random_.next(steps + 1);
    return step == steps ? to : from + (to - from) * static_cast<double>(step) * 0x1p-53;
}

void ParticleEmitterViewModel::emit()
{
    platform::assertOnMainThread();
    auto [width, height] = viewSize;
    if (!(width > 0) || height == 0 || !std::isfinite(width * height))
        return;
    auto startX = randomIn(0, width);
    auto endX = randomIn(-0.2 * width, 1.2 * width);
    auto colors = palette();
    if (systemImageNames.empty())
        return;
    auto& color = colors[random_.next(colors.size())];
    auto& name = systemImageNames[random_.next(systemImageNames.size())];
    Particle particle{
        .color = {color}, .position = {startX, height + particleSize / 2}, .systemImageName = name};
    auto id = particle.id;
    auto model = self(); // an observer may let go of it
    particles.modify([&](auto& all) { all.push_back(std::move(particle)); });
    platform::withAnimation(platform::Animation::linear(travelDuration), [&] {
        particles.modify([&](auto& all) {
            for (auto& each : all) {
                if (each.id == id)
                    each.position = {endX, -particleSize / 2};
            }
        });
    });
    DispatchQueue::main()->asyncAfter(lifetime, [model, id] {
        model->particles.modify(
            [&](auto& all) { std::erase_if(all, [&](auto& each) { return each.id == id; }); });
    });
}

void ParticleEmitterViewModel::stop()
{
    timerCancellable = {};
    particles = {};
}

} // namespace zelk
