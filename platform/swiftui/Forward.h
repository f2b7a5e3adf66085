// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class AppearanceNode;
class ChangeSource;
class EnvironmentScope;
class ViewContainer;
class ViewHost;
class ViewNode;

struct NodeContext;
struct ProposedSize;
struct Transaction;

} // namespace platform
