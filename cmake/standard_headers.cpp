// SPDX-License-Identifier: MIT
// The precompiled header needs a source to be built with; every other target reuses it.
