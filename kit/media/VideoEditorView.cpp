// SPDX-License-Identifier: MIT
#include "kit/media/VideoEditorView.h"

#include "kit/theme/ThemeManager.h"

#include "platform/uikit/UIView.h"

namespace zelk {

std::shared_ptr<VideoEditorView::Coordinator> VideoEditorView::makeCoordinator() const
{
    return std::make_shared<Coordinator>(*this);
}

std::shared_ptr<platform::UIVideoEditorController>
VideoEditorView::makeUIViewController(const Context& context) const
{
    auto editor = std::make_shared<platform::UIVideoEditorController>();
    editor->videoMaximumDuration = 0;
    editor->videoPath = videoPath;
    editor->videoQuality = platform::UIImagePickerControllerQualityType::high;
    editor->setDelegate(context.coordinator);
    editor->view()->setTintColor(ThemeManager::defaultTintUIColor());
    return editor;
}

void VideoEditorView::updateUIViewController(platform::UIVideoEditorController&, const Context& context) const
{
    context.coordinator->parent = *this;
}

void VideoEditorView::Coordinator::videoEditorControllerDidSaveEditedVideo(platform::UIVideoEditorController&,
                                                                           const std::string& path)
{
    if (auto finish = parent.didFinishEditing)
        finish(path);
}

void VideoEditorView::Coordinator::videoEditorControllerDidFail(platform::UIVideoEditorController&,
                                                                const platform::Error& error)
{
    if (auto finish = parent.didFinishEditing)
        finish(std::unexpected(error));
}

void VideoEditorView::Coordinator::videoEditorControllerDidCancel(platform::UIVideoEditorController&)
{
    if (auto cancel = parent.onCancel)
        cancel();
}

void VideoEditorView::Coordinator::videoEditorControllerWillShow(platform::UIVideoEditorController&,
                                                                 platform::UINavigationItem& item)
{
    item.title = "Trim Video";
    auto action = item.rightBarButtonItem ? item.rightBarButtonItem->action : nullptr;
    item.rightBarButtonItem = platform::UIBarButtonItem{
        .title = "Next", .style = platform::UIBarButtonItem::Style::done, .action = std::move(action)};
}

} // namespace zelk
