// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class AnyCancellable;
class Completion;
class ObservableObject;
struct Void;

template <class Output>
class AnyPublisher;
template <class Output>
class CurrentValueSubject;
template <class Output>
class PassthroughSubject;
template <class Value>
class Published;

} // namespace platform
