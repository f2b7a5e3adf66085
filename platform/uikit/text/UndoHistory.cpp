// SPDX-License-Identifier: MIT
#include "platform/uikit/text/UndoHistory.h"

#include "platform/foundation/Precondition.h"

namespace platform {

namespace {

bool isSpace(const TextEdit& edit)
{
    if (edit.inserted.empty())
        return false;
    auto first = edit.inserted.front().bytes().front();
    return first == ' ' || first == '\t' || first == '\n' || first == '\r';
}

} // namespace

bool UndoHistory::joinsLast(const TextEdit& edit, Kind kind) const
{
    if (!isOpen_ || done_.empty() || done_.back().kind != kind || kind == Kind::other)
        return false;
    auto& last = done_.back().edits.back();
    if (kind == Kind::typing) {
        // A word's first letter after a space begins a step: undo goes word by word.
        bool beginsWord = isSpace(last) && !isSpace(edit);
        return edit.removedSize == 0 && edit.at == last.at + last.insertedSize && !beginsWord;
    }
    bool isBackwards = edit.at + edit.removedSize == last.at;
    bool isForwards = edit.at == last.at;
    return edit.insertedSize == 0 && (isBackwards || isForwards);
}

void UndoHistory::record(TextEdit edit, Kind kind, const TextSelection& before, const TextSelection& after)
{
    undone_.clear();
    if (joinsLast(edit, kind)) {
        done_.back().edits.push_back(std::move(edit));
        done_.back().after = after;
        return;
    }
    Step step{.before = before, .after = after, .kind = kind};
    step.edits.push_back(std::move(edit));
    done_.push_back(std::move(step));
    isOpen_ = true;
    if (done_.size() > stepLimit)
        done_.pop_front();
}

void UndoHistory::clear()
{
    done_.clear();
    undone_.clear();
    isOpen_ = false;
}

const UndoHistory::Step& UndoHistory::undo()
{
    precondition(canUndo(), "there is nothing to undo");
    isOpen_ = false;
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    return undone_.back();
}

const UndoHistory::Step& UndoHistory::redo()
{
    precondition(canRedo(), "there is nothing to redo");
    isOpen_ = false;
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    return done_.back();
}

} // namespace platform
