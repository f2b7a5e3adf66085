// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class AVAsset;
class AVAssetReader;
class AVAssetReaderOutput;
class AVAssetReaderTrackOutput;
class AVAssetTrack;
class AVComposition;
class AVCompositionTrack;
class AVMutableComposition;
class AVMutableCompositionTrack;
class AVURLAsset;
class CMFormatDescription;
class CVPixelBuffer;
struct AVMetadataItem;
struct AudioSettings;
struct CMSampleBuffer;

} // namespace platform
