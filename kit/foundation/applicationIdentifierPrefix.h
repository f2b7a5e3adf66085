// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace zelk {

// The reverse-DNS prefix of the running application, with which its queues, logs and settings are named: the
// identifier of the main bundle without its last component ("org.zelk" of "org.zelk.Gallery"), the whole
// identifier when it has one component only, "org.zelk" when there is none. Computed once. Any thread.
const std::string& applicationIdentifierPrefix();

} // namespace zelk
