// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/Closure.h"
#include "platform/swiftui/CompositeNode.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace platform {

// What a GeometryReader tells its content.
struct GeometryProxy {
    CGSize size;        // of the reader
    CGRect globalFrame; // of the reader, in the window's coordinates at that moment
    // What lies beyond the reader's edges to the edges of the hosting view, where the reader reaches to the end of the
    // safe area.
    UIEdgeInsets safeAreaInsets = {};
    bool operator==(const GeometryProxy&) const = default;
};

// The node of a GeometryReader, without the types of its content.
class GeometryNode : public UnaryNode {
public:
    using UnaryNode::UnaryNode;
    bool isRigid(Axis) const override { return false; }
    double layoutPriority() const override { return 0; }
    bool isSpacer() const override { return false; }
    void setStackAxis(std::optional<Axis>) override { }
    CGFloat guide(VerticalAlignment alignment, CGSize size) override
    {
        return alignment < VerticalAlignment::firstTextBaseline ? ViewNode::guide(alignment, size)
                                                                : size.height;
    }
    void refresh() override;

protected:
    CGSize measure(const ProposedSize& proposal) override { return proposal.replacingUnspecified(); }
    void arrange(CGRect rect, const ProposedSize& proposal) override;
    virtual void describe(const GeometryProxy& proxy) = 0;
    bool hasContent() const { return described_.has_value(); }

private:
    std::optional<GeometryProxy> described_;
    bool isOutOfDate_ = false;
};

template <class MakeContent>
class GeometryReaderNode;

// Takes all that is offered and describes its content when it knows how much that is; the content stands at the top where
// reading begins: `GeometryReader{[](const GeometryProxy& proxy) { return bar(proxy.size.width); }}`.
template <class MakeContent>
    requires View<std::invoke_result_t<const MakeContent&, const GeometryProxy&>>
struct GeometryReader {
    Closure<MakeContent> content;
    explicit GeometryReader(MakeContent makeContent)
        : content(std::move(makeContent))
    {
    }
    using Node = GeometryReaderNode<MakeContent>;
};

template <class MakeContent>
class GeometryReaderNode final : public GeometryNode {
    using Content = std::invoke_result_t<const MakeContent&, const GeometryProxy&>;

public:
    GeometryReaderNode(const NodeContext& context, const GeometryReader<MakeContent>& reader)
        : GeometryNode(context)
        , makeContent_(reader.content)
    {
    }
    void update(const GeometryReader<MakeContent>& reader)
    {
        makeContent_ = reader.content;
        refresh();
    }

private:
    void describe(const GeometryProxy& proxy) override
    {
        auto content = evaluate(proxy);
        if (hasContent())
            updateNode<Content>(child(), content);
        else
            setChild(makeNode(context().below(*this), content));
    }
    Content evaluate(const GeometryProxy& proxy)
    {
        ViewHost::Evaluation evaluation(host());
        return makeContent_(proxy);
    }

    Closure<MakeContent> makeContent_;
};

} // namespace platform
