// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class ViewHost;

// The hosts that bring what was changed so far on screen before changes of another transaction begin. An object announces a
// change when it is made already: when a transaction's body has begun it is too late to show what was before it.
void addTransactionHost(ViewHost& host);
void removeTransactionHost(ViewHost& host);

} // namespace platform
