// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class Bundle;
class Error;
class Logger;
class NSError;
class NSObject;
class ProcessInfo;
class String;
class URL;
class UUID;
struct LocalizedError;
struct OperatingSystemVersion;
struct TextSurvey;

} // namespace platform
