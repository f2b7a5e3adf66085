// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/AnyView.h"
#include "platform/swiftui/ControlNode.h"
#include "platform/swiftui/Environment.h"
#include "platform/swiftui/controlStyles.h"

#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

namespace platform {

class UIActivityIndicatorView;
class UIProgressView;

// The bar of a progress view, alone. No part: nobody knows how much is done.
struct ProgressBar {
    std::optional<double> part; // 0...1
    std::string name;           // to assistive technology
    class Node;
    bool operator==(const ProgressBar&) const = default;
};

class ProgressBar::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const ProgressBar& view);
    void update(const ProgressBar& view);
    bool isRigid(Axis axis) const override { return axis == Axis::vertical; }

protected:
    CGSize measure(const ProposedSize& proposal) override;
    void readSources() override;

private:
    ProgressBar record_;
    std::shared_ptr<UIProgressView> bar_;
};

// The turning wheel of a progress view, alone.
struct ProgressWheel {
    std::string name; // to assistive technology
    class Node;
    bool operator==(const ProgressWheel&) const = default;
};

class ProgressWheel::Node final : public ControlNode {
public:
    Node(const NodeContext& context, const ProgressWheel& view);
    void update(const ProgressWheel& view);
    bool isRigid(Axis) const override { return true; }

protected:
    void readSources() override;

private:
    ProgressWheel record_;
    std::shared_ptr<UIActivityIndicatorView> wheel_;
};

// How much of a task is done: `ProgressView{}` turns, `ProgressView{done, total}` fills a bar, and a title in front of
// either says what it is about. What is not a number, or of nothing, is unknown.
struct ProgressView {
    std::string title;
    std::optional<double> part; // 0...1
    Environment<ProgressViewStyleKey> style{};
    Environment<LabelsVisibilityKey> labels{};

    ProgressView() = default;
    explicit ProgressView(std::string label)
        : title(std::move(label))
    {
    }
    explicit ProgressView(std::optional<double> value, double total = 1)
        : ProgressView(std::string(), value, total)
    {
    }
    ProgressView(std::string label, std::optional<double> value, double total = 1)
        : title(std::move(label))
        , part(partOf(value, total))
    {
    }

    auto dynamicProperties() { return std::tie(style, labels); }
    AnyView body() const;
    bool operator==(const ProgressView&) const = default;

private:
    static std::optional<double> partOf(std::optional<double> value, double total);
};

} // namespace platform
