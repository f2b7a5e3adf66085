// SPDX-License-Identifier: MIT
#pragma once

#include "platform/swiftui/RepresentableContext.h"
#include "platform/swiftui/View.h"

#include <functional>
#include <memory>

namespace platform {

// What needs no type: brings the platform's object up to date, unless its place has gone by then.
class Represented {
protected:
    ~Represented() = default;
    virtual void updateRepresented() = 0;
    // After the subviews are in order, so that an update finds the tree as it is described.
    void updateAfterSync(ViewHost& host);
    std::function<void()> updateIfMounted();

private:
    std::shared_ptr<bool> isMounted_ = std::make_shared<bool>(true);
};

// What the nodes of representable views and controllers share: the record with its properties and coordinator, and when
// the platform's object is brought up to date. `Base` is the node that holds that object.
template <class Record, class Base>
class RepresentableNode : public Base, protected Represented {
public:
    RepresentableNode(const NodeContext& context, const Record& record)
        : Base(context)
        , record_(record)
        , coordinator_(detail::makeCoordinatorOf(record))
    {
        connect();
    }

    void update(const Record& record)
    {
        if (detail::isSameRecord(record, record_))
            return;
        record_ = record;
        this->refresh();
    }
    void refresh() override
    {
        this->forgetSources();
        connect();
        updateAfterSync(this->host());
    }

protected:
    using Coordinator = detail::CoordinatorOf<Record>;
    using Context = RepresentableContext<Coordinator>;

    const Record& record() const { return record_; }
    Coordinator* coordinator() const { return coordinator_.get(); }
    Context representableContext() { return {coordinator_, this->host().transaction(), *this}; }

private:
    void connect() { detail::connectProperties(record_, *this, storage_); }

    Record record_;
    PropertyStorage storage_;
    std::shared_ptr<Coordinator> coordinator_;
};

} // namespace platform
