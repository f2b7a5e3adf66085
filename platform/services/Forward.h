// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class ASAuthorizationAppleIDButton;
class AVPlayerViewController;
class MFMailComposeViewController;
class MKMapView;
class PHAssetChangeRequest;
class PHPhotoLibrary;
class PHPhotosAuthorization;
class PHPhotosQuestion;
class UIFontPickerViewController;
class UIImagePickerController;
class UIVideoEditorController;

} // namespace platform
