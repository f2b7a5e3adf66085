// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class Clock;
class DispatchQueue;
class DispatchWorkItem;
class DisplayLink;
class DisplayLinkDriver;
class RunLoop;
class SystemClock;
class Timer;
class Token;
class VirtualClock;

} // namespace platform
