// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Error.h"

namespace zelk {

// What an error means, by the domain and the code of the platform error that it bridges to: an error under it is not
// looked at, and an unknown domain means nothing. Any thread.

// The photo library refused access. From system 15 on only the library's own codes count, before it only the generic
// one that it gave then.
bool isPhotosPermissionsError(const platform::Error& error);
// Any of the conditions known for a full disk.
bool isDiskOutOfSpace(const platform::Error& error);
bool isNotConnectedToInternetError(const platform::Error& error);
// The user cancelled, whatever it was. Callers stay silent then.
bool isUserCancelled(const platform::Error& error);
// A URL load was cancelled. That is not isUserCancelled().
bool isURLCancelled(const platform::Error& error);
// The photo library has no space. Split by system version as isPhotosPermissionsError() is.
bool isPhotosDiskIsFull(const platform::Error& error);
// Media could not be written for lack of space.
bool isAVFoundationDiskIsFull(const platform::Error& error);

// What reports that the user cancelled, so that isUserCancelled() recognises it.
platform::NSError userCancelled();

} // namespace zelk
