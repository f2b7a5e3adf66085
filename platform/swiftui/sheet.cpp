// SPDX-License-Identifier: MIT
#include "platform/swiftui/sheet.h"

#include "platform/swiftui/ViewContainer.h"
#include "platform/swiftui/ViewHost.h"
#include "platform/uikit/UIView.h"

namespace platform {

PresentationNode::PresentationNode(const NodeContext& context, PresentationKind kind)
    : AppearanceNode(context)
    , presenter_(std::make_shared<ModalPresenter>(
          std::static_pointer_cast<UIViewController>(host().controller().weak_from_this().lock()), kind))
{
    // What covers all of the window takes this place off the screen, and stays wanted.
    onAppear_ = [this] {
        hasBeenSeen_ = true;
        follow();
    };
}

PresentationNode::~PresentationNode()
{
    presenter_->wantNothing();
}

void PresentationNode::want(bool isSame, std::function<AnyView()> make, std::function<void()> clear,
                            std::function<void()> onDismiss)
{
    if (!isSame)
        ++identity_;
    auto onClosed = [this, isMounted = std::weak_ptr(isMounted_), clear = std::move(clear)] {
        clear();
        if (isMounted.lock())
            readAfterClosing();
    };
    wish_ = ModalPresenter::Wish{.identity = identity_,
                                 .make = std::move(make),
                                 .surroundings = context().environment,
                                 .onClosed = std::move(onClosed),
                                 .onDismiss = std::move(onDismiss)};
    follow();
}

void PresentationNode::wantNothing()
{
    wish_.reset();
    follow();
}

void PresentationNode::follow()
{
    if (!wish_)
        presenter_->wantNothing();
    else if (hasBeenSeen_)
        presenter_->want(*wish_);
}

void PresentationNode::arrange(CGRect rect, const ProposedSize& proposal)
{
    AppearanceNode::arrange(rect, proposal);
    auto& view = container().containerView();
    presenter_->setAnchor({std::static_pointer_cast<UIView>(view.weak_from_this().lock()), rect});
}

FlagPresentationModifier::Node::Node(const NodeContext& context, const FlagPresentationModifier& modifier)
    : PresentationNode(context, modifier.kind)
    , modifier_(modifier)
{
    read();
}

void FlagPresentationModifier::Node::updateModifier(const FlagPresentationModifier& modifier)
{
    modifier_ = modifier;
    read();
}

void FlagPresentationModifier::Node::readAfterClosing()
{
    wasPresented_ = false; // a binding that keeps its flag up has it presented anew
    read();
}

void FlagPresentationModifier::Node::read()
{
    forgetSources();
    modifier_.isPresented.registerReader(*this);
    bool wasPresented = std::exchange(wasPresented_, modifier_.isPresented.get());
    if (!wasPresented_)
        return wantNothing();
    want(
        wasPresented, modifier_.content, [binding = modifier_.isPresented] { binding.set(false); },
        modifier_.onDismiss);
}

InteractiveDismissModifier::Node::Node(const NodeContext& context, const InteractiveDismissModifier& modifier)
    : ModifierNode(context)
    , guard_(context.environment->value<DismissalGuardKey>(nullptr))
{
    updateModifier(modifier);
}

InteractiveDismissModifier::Node::~Node()
{
    updateModifier({false});
}

void InteractiveDismissModifier::Node::updateModifier(const InteractiveDismissModifier& modifier)
{
    if (guard_ && modifier.isDisabled != isForbidding_)
        guard_->forbidding += modifier.isDisabled ? 1 : -1;
    isForbidding_ = modifier.isDisabled;
}

} // namespace platform
