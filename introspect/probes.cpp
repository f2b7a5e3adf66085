// SPDX-License-Identifier: MIT
#include "introspect/probes.h"

#include "introspect/Weak.h"
#include "platform/dispatch/DispatchQueue.h"
#include "platform/foundation/ProcessInfo.h"

namespace introspect {

namespace {

using Probe = IntrospectionPlatformViewController;
using WeakProbe = std::shared_ptr<Weak<Probe>>;

// The probe keeps its handler, so the handler must not keep the probe.
Probe::Handler handlerOf(WeakProbe weakProbe, IntrospectionAttempt attempt)
{
    return [weakProbe = std::move(weakProbe), attempt = std::move(attempt)] {
        const auto probe = weakProbe->wrappedValue();
        return probe ? attempt(*probe) : Probe::Outcome::failed;
    };
}

} // namespace

std::shared_ptr<Probe> makeProbe(const platform::UUID& id, IntrospectionAttempt attempt)
{
    const auto weakProbe = std::make_shared<Weak<Probe>>();
    auto probe = Probe::make(id, handlerOf(weakProbe, std::move(attempt)));
    weakProbe->setWrappedValue(probe);
    if (!platform::ProcessInfo::processInfo().isOperatingSystemAtLeast({14, 0, 0})) {
        platform::DispatchQueue::main()->async([weakProbe] {
            if (const auto made = weakProbe->wrappedValue())
                made->runHandler();
        });
    }
    return probe;
}

void renewProbe(Probe& probe, IntrospectionAttempt attempt)
{
    if (!probe.hasHandler())
        return;
    const auto shared = std::static_pointer_cast<Probe>(probe.shared_from_this());
    probe.replaceHandler(handlerOf(std::make_shared<Weak<Probe>>(shared), std::move(attempt)));
}

} // namespace introspect
