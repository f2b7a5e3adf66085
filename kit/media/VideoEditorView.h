// SPDX-License-Identifier: MIT
#pragma once

#include "platform/foundation/Result.h"
#include "platform/services/UIVideoEditorController.h"
#include "platform/swiftui/UIViewControllerRepresentable.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace zelk {

// The platform's trimmer of videos as a view, in the kit's tint. It does not go by itself: who presents it dismisses it. One
// of the functions is called, once. Main thread only.
struct VideoEditorView : platform::UIViewControllerRepresentable<VideoEditorView> {
    class Coordinator;

    std::string videoPath;
    std::function<void()> onCancel;
    // The path of a new file, which is the caller's to remove, or why there is none.
    std::function<void(platform::Result<std::string>)> didFinishEditing;

    VideoEditorView(std::string path, std::function<void()> cancelled,
                    std::function<void(platform::Result<std::string>)> finished)
        : videoPath(std::move(path))
        , onCancel(std::move(cancelled))
        , didFinishEditing(std::move(finished))
    {
    }

    using Context = platform::RepresentableContext<Coordinator>;
    std::shared_ptr<Coordinator> makeCoordinator() const;
    std::shared_ptr<platform::UIVideoEditorController> makeUIViewController(const Context& context) const;
    void updateUIViewController(platform::UIVideoEditorController&, const Context& context) const;
};

// Hears the editor and passes on what it hears.
class VideoEditorView::Coordinator : public platform::UIVideoEditorControllerDelegate {
public:
    explicit Coordinator(VideoEditorView view)
        : parent(std::move(view))
    {
    }
    VideoEditorView parent;

    void videoEditorControllerDidSaveEditedVideo(platform::UIVideoEditorController&,
                                                 const std::string& path) override;
    void videoEditorControllerDidFail(platform::UIVideoEditorController&,
                                      const platform::Error& error) override;
    void videoEditorControllerDidCancel(platform::UIVideoEditorController&) override;
    // The button that finishes is called "Next", and does what it did.
    void videoEditorControllerWillShow(platform::UIVideoEditorController&,
                                       platform::UINavigationItem& item) override;
};

} // namespace zelk
