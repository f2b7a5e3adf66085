// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ui/ParticleEmitterViewModel.h"
#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/ObservedObject.h"

#include <string>
#include <tuple>
#include <vector>

namespace zelk {

// Symbols that rise slowly from below the bottom edge to above the top one, each in a colour of its own: decoration, which
// takes all that is offered and no touches. A name that is no symbol's rises unseen.
//
//     ZStack{ParticleEmitterView{{"star.fill", "heart.fill"}}, content}
struct ParticleEmitterView {
    explicit ParticleEmitterView(std::vector<std::string> systemImageNames);

    platform::StateObject<ParticleEmitterViewModel> viewModel;

    platform::AnyView body() const;
    auto dynamicProperties() { return std::tie(viewModel); }
};

} // namespace zelk
