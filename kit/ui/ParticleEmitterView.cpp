// SPDX-License-Identifier: MIT
#include "kit/ui/ParticleEmitterView.h"

#include "kit/theme/GridSize.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/swiftui/ForEach.h"
#include "platform/swiftui/GeometryReader.h"
#include "platform/swiftui/Image.h"
#include "platform/swiftui/ZStack.h"
#include "platform/swiftui/appearance.h"
#include "platform/swiftui/environment.h"
#include "platform/swiftui/frame.h"
#include "platform/swiftui/interaction.h"
#include "platform/swiftui/placement.h"

namespace zelk {

using namespace platform;

namespace {

using Particle = ParticleEmitterViewModel::Particle;

auto pictureOf(const Particle& particle)
{
    return Image{.isResizable = true, .systemName = particle.systemImageName}
    | frame({.width = GridSize::_250, .height = GridSize::_250}) | foregroundColor(particle.color.color)
        | position(particle.position);
}

} // namespace

ParticleEmitterView::ParticleEmitterView(std::vector<std::string> systemImageNames)
    : viewModel(
          [names = std::move(systemImageNames)] { return std::make_shared<ParticleEmitterViewModel>(names); })
{
}

AnyView ParticleEmitterView::body() const
{
    auto model = viewModel.object();
    return AnyView{GeometryReader{[model](const GeometryProxy& proxy) {
                       auto begin = [model, size = proxy.size] {
                           DispatchQueue::main()->async([model, size] {
                               model->viewSize = size;
                               model->start();
                           });
                       };
                       return ZStack{ForEach{model->particles.get(), pictureOf}} | onAppear(begin)
                           | onDisappear([model] { model->stop(); });
                   }}
                   | allowsHitTesting(HitTesting::disallowed)};
}

} // namespace zelk
